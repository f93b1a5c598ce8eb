// Presets: which printer they are for, and what they may be called.
#include "host/presets/preset.h"

#include <QCryptographicHash>

#include <algorithm>

#include "host/texts/host_text.h"

namespace labelcut {

namespace {

constexpr qsizetype kMaxReadablePart = 40;
constexpr qsizetype kHashDigits = 16;

bool isAsciiLetterOrDigit(QChar c) {
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9');
}

QString withSmallAscii(QString text) {
    for (QChar& c : text)
        if (c >= u'A' && c <= u'Z')
            c = c.toLower();
    return text;
}

bool isControl(QChar c) {
    const QChar::Category category = c.category();
    return category == QChar::Other_Control || category == QChar::Separator_Line ||
           category == QChar::Separator_Paragraph;
}

} // namespace

PrinterIdentity::PrinterIdentity(QString title, QString key)
    : mTitle(std::move(title))
    , mKey(std::move(key)) {}

PrinterIdentity PrinterIdentity::forQueue(const QString& name) {
    return {name, QStringLiteral("queue:") + name};
}

PrinterIdentity PrinterIdentity::forPpd(const ppd_file_t* ppd) {
    const QString nickName = QString::fromUtf8(ppd && ppd->nickname ? ppd->nickname : "");
    const QString fileName = QString::fromUtf8(ppd && ppd->pcfilename ? ppd->pcfilename : "");
    const QString title = nickName.isEmpty() ? fileName : nickName;
    return {title, QStringLiteral("ppd:%1:%2").arg(nickName, fileName)};
}

QString PrinterIdentity::fileName() const {
    const bool isQueue = mKey.startsWith(QStringLiteral("queue:"));
    QString readable;
    for (const QChar c : mTitle.left(kMaxReadablePart))
        readable += isAsciiLetterOrDigit(c) ? c.toLower() : QChar(u'-');
    const QString same = isQueue ? withSmallAscii(mKey) : mKey;
    const QByteArray hash =
        QCryptographicHash::hash(same.toUtf8(), QCryptographicHash::Sha256).toHex();
    return QStringLiteral("%1-%2-%3.json")
        .arg(isQueue ? QStringLiteral("queue") : QStringLiteral("ppd"), readable,
             QString::fromLatin1(hash.left(kHashDigits)));
}

bool PrinterIdentity::operator==(const PrinterIdentity& other) const {
    return fileName() == other.fileName();
}

PrinterIdentity identityOf(const OpenedPrinter& printer) {
    if (const QString* queue = queueName(printer.ref()))
        return PrinterIdentity::forQueue(*queue);
    return PrinterIdentity::forPpd(printer.ppd());
}

Preset Preset::of(const QString& name, const Settings& settings, const Handling& handling) {
    Preset preset{handling, name, {}, {}};
    for (const Setting& setting : settings) {
        if (setting.keyword == kPageSize)
            preset.pageSize = setting.choice;
        else
            preset.options.insert(setting.keyword, setting.choice);
    }
    return preset;
}

Settings Preset::settings() const {
    Settings all;
    if (!pageSize.isEmpty())
        all.push_back({kPageSize, pageSize});
    for (auto option = options.begin(); option != options.end(); ++option)
        all.push_back({option.key(), option.value()});
    return all;
}

std::optional<QString> presetNameProblem(const QString& name) {
    if (name.trimmed().isEmpty())
        return hostText("PresetNeedsName");
    if (name != name.trimmed())
        return hostText("PresetNameSpaced").arg(name.trimmed());
    if (!name.isValidUtf16() || std::any_of(name.begin(), name.end(), isControl))
        return hostText("PresetNameControl");
    if (name.toUcs4().size() > Preset::kMaxNameLength)
        return hostText("PresetNameLong")
            .arg(QString::number(Preset::kMaxNameLength), name.left(20));
    return std::nullopt;
}

} // namespace labelcut
