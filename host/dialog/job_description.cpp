// The dialog without its widgets: what is chosen, told as a summary, a sentence, and commands.
#include <QRegularExpression>

#include "host/core/harmless_text.h"
#include "host/dialog/job_model.h"
#include "host/dialog/length.h"
#include "host/texts/host_text.h"

namespace labelcut {

namespace {

constexpr char kPageSize[] = "PageSize";

/// A character that a terminal would act on when a command is pasted, as the shell makes it itself.
QString printed(QChar character) {
    QString octal;
    for (const char byte : QString(character).toUtf8())
        octal +=
            QStringLiteral("\\%1").arg(static_cast<unsigned char>(byte), 3, 8, QLatin1Char('0'));
    return QStringLiteral("\"$(printf '%1')\"").arg(octal);
}

/// A word as a POSIX shell reads it back unchanged.
QString shellWord(const QString& word) {
    // Some shells take a word that begins with "=" for a command's path.
    static const QRegularExpression plain(
        QStringLiteral("\\A[A-Za-z0-9_@%+:,./-][A-Za-z0-9_@%+=:,./-]*\\z"));
    if (plain.match(word).hasMatch())
        return word;
    QString quoted;
    for (const QChar c : word) {
        if (c == u'\'')
            quoted += QStringLiteral("'\\''");
        else if (c != u'\n' && isActedOn(c))
            quoted += u'\'' + printed(c) + u'\'';
        else
            quoted += c;
    }
    return u'\'' + quoted + u'\'';
}

/// A file's name where it could be taken for a switch or for standard input.
QString fileWord(const QString& file) {
    return file.startsWith(u'-') ? QStringLiteral("./") + file : file;
}

QStringList fileWords(const QStringList& files) {
    QStringList words;
    for (const QString& file : files)
        words << fileWord(file);
    return words;
}

QString measureOf(const ppd_size_t& size) {
    return measureForUser(static_cast<double>(size.width), static_cast<double>(size.length));
}

/// A title as it stands within a sentence: German keeps its capitals, abbreviations do everywhere.
QString withinSentence(QString title) {
    static const bool keeps = hostText("SentenceKeepsCapitals") == QLatin1String("yes");
    const bool isWord = title.size() > 1 && title[0].isUpper() && title[1].isLower();
    if (!keeps && isWord)
        title[0] = title[0].toLower();
    return title;
}

QString commandLine(const QStringList& words) {
    QStringList quoted;
    for (const QString& word : words)
        quoted.append(shellWord(word));
    return quoted.join(u' ');
}

} // namespace

std::vector<JobModel::SummaryEntry> JobModel::summary() const {
    std::vector<SummaryEntry> entries;
    for (const PanelSet::Entry& entry : panels()) {
        const std::optional<QVariantMap> info = entry.panel->summaryInfo();
        if (!info)
            continue;
        const QString panel = entry.panel->panelName();
        for (const QString& title : info->value(QLatin1String(kSummaryDisplayOrder)).toStringList())
            entries.push_back({panel, title, info->value(title).toString()});
    }
    return entries;
}

JobModel::SummaryGroup JobModel::jobSummary() const {
    const ppd_size_t* size = ppd::markedPageSize(ppd());
    const QString measure = size ? measureOf(*size) : QString();
    const QString paper = paperText();
    SummaryGroup job{hostText("SummaryJob"), {{hostText("SummaryPrinter"), mPrinter.title}}};
    if (size)
        job.lines.emplace_back(
            hostText("SummaryPaper"),
            paper == measure ? paper : hostText("SummaryPaperMeasure").arg(paper, measure));
    job.lines.emplace_back(hostText("SummaryLabels"),
                           mPages.isEverything() ? hostText("SummaryAllLabels") : toString(mPages));
    job.lines.emplace_back(hostText("SummaryCopies"), QString::number(mCopies));
    return job;
}

JobModel::SummaryGroup JobModel::featuresSummary() const {
    SummaryGroup features{hostText("TabFeatures"), {}};
    const QStringList elsewhere = panelKeywords() + QStringList{QLatin1String(kPageSize)};
    const Marks changed = changedMarks();
    for (auto mark = changed.cbegin(); mark != changed.cend(); ++mark) {
        if (!elsewhere.contains(mark.key()))
            features.lines.emplace_back(titleOf(mark.key()), titleOf(mark.key(), mark.value()));
    }
    return features;
}

std::vector<JobModel::SummaryGroup> JobModel::wholeSummary() const {
    if (!hasPrinter())
        return {};
    std::vector<SummaryGroup> groups{jobSummary()};
    for (const SummaryEntry& entry : summary()) {
        if (groups.size() == 1 || groups.back().heading != entry.panel)
            groups.push_back({entry.panel, {}});
        groups.back().lines.emplace_back(entry.title, entry.value);
    }
    groups.push_back(featuresSummary());
    std::erase_if(groups, [](const SummaryGroup& group) { return group.lines.empty(); });
    return groups;
}

/// What a summary's entry adds to the sentence: its title for yes, nothing for no, both otherwise.
QString JobModel::entryForSentence(const SummaryEntry& entry) const {
    for (const PanelSet::Entry& panel : panels()) {
        if (panel.panel->panelName() != entry.panel)
            continue;
        if (entry.value == panel.bundle->localizedStringForKey(QStringLiteral("RS_STitle_Yes")))
            return entry.title;
        if (entry.value == panel.bundle->localizedStringForKey(QStringLiteral("RS_STitle_No")))
            return {};
    }
    return entry.title + u' ' + entry.value;
}

/// The paper's title; of a size that the user gave, its measures.
QString JobModel::paperText() const {
    const QString key = QLatin1String(kPageSize);
    const QString name = choice(key).value_or(QString());
    const ppd_size_t* size = ppd::markedPageSize(ppd());
    if (!name.startsWith(QLatin1String("Custom.")) || !size)
        return titleOf(key, name);
    return measureOf(*size);
}

QString JobModel::sentence() const {
    if (!hasPrinter())
        return {};
    const int labels = labelCount();
    QStringList parts;
    const QString paper = paperText();
    const QString amount =
        labels > 0 ? hostText("OneLabel", "ManyLabels", labels) : hostText("SomeLabels");
    parts.append(paper.isEmpty() ? amount : hostText("LabelsOnPaper").arg(amount, paper));
    for (const SummaryEntry& entry : summary()) {
        const QString part = withinSentence(entryForSentence(entry));
        if (!part.isEmpty())
            parts.append(part);
    }
    if (parts.size() == 1 && !panelKeywords().isEmpty())
        parts.append(hostText("NoCutOptions"));
    return parts.join(hostText("SentenceSeparator"));
}

std::vector<OptionChoice> JobModel::jobChoices() const {
    std::vector<OptionChoice> choices;
    QStringList keys{QLatin1String(kPageSize)};
    keys += panelKeywords();
    keys += mWantedKeys;
    keys += changedMarks().keys();
    keys.removeDuplicates();
    for (const QString& key : keys) {
        if (const std::optional<QString> marked = choice(key))
            choices.push_back({key, *marked});
    }
    return choices;
}

QString JobModel::labelcutCommand() const {
    QStringList words{QStringLiteral("labelcut"), QStringLiteral("print")};
    words += mPrinter.isQueue() ? QStringList{QStringLiteral("--printer"), mPrinter.queue}
                                : QStringList{QStringLiteral("--ppd"), mPrinter.ppdPath};
    for (const OptionChoice& option : jobChoices()) {
        if (option.key == QLatin1String(kPageSize))
            words += {QStringLiteral("--page-size"), option.choice};
        else
            words += {QStringLiteral("--set"), option.key + u'=' + option.choice};
    }
    if (mCopies != 1)
        words += {QStringLiteral("--copies"), QString::number(mCopies)};
    if (!mPages.isEverything())
        words += {QStringLiteral("--pages"), toString(mPages)};
    if (!mPrinter.isQueue())
        words += {QStringLiteral("-o"), QStringLiteral("labels.ps")};
    words += QStringLiteral("--");
    return commandLine(words + fileWords(mFiles));
}

QString JobModel::lpCommand() const {
    if (!mPrinter.isQueue())
        return {};
    QStringList words{QStringLiteral("lp"), QStringLiteral("-d"), mPrinter.queue};
    if (mCopies != 1)
        words += {QStringLiteral("-n"), QString::number(mCopies)};
    if (!mPages.isEverything())
        words += {QStringLiteral("-P"), toString(mPages)};
    for (const OptionChoice& option : jobChoices())
        words += {QStringLiteral("-o"), option.key + u'=' + option.choice};
    words += QStringLiteral("--");
    return commandLine(words + fileWords(mFiles));
}

} // namespace labelcut
