// Test support: printers of every shape, and interface files cut down.
#include "tests/plugins/cut_options/options/panel_fixtures.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

namespace labelcut::test {

QString keywordOf(const PDEChoice* selection) {
    return selection ? QString::fromUtf8(selection->choice()->choice) : QString();
}

QString markedIn(const FakeHost& host, OptionIndex option) {
    const ppd_choice_t* choice = ppd::findMarkedChoice(host.ppd.get(), kKeywords[option]);
    return choice ? QString::fromUtf8(choice->choice) : QString();
}

PpdBuilder printerOffering(unsigned offers, bool isRV, bool autoCutShown) {
    PpdBuilder ppd;
    ppd.attribute("KvTapeType", isRV ? "RV" : "SG");
    if (autoCutShown)
        ppd.attribute("KvAutoCutObjHidden", "False");
    if ((offers & offer(CutLabel)) != 0)
        ppd.counts(1, 12, "1");
    for (int option = CutAtEnd; option < kOptionCount; ++option) {
        if ((offers & (1U << option)) != 0)
            ppd.onOff(kKeywords[static_cast<std::size_t>(option)]);
    }
    return ppd.size("W62", 176, 283).size("DC24", 68, 68).size("AV100", 176, 283);
}

CutDownBundle::CutDownBundle(const QStringList& removedWidgets, Pictures pictures) {
    const QString built = QStringLiteral(LABELCUT_BUNDLE_DIR);
    EXPECT_TRUE(QFile::copy(built + QStringLiteral("/OptionPDE.ui"),
                            root() + QStringLiteral("/OptionPDE.ui")));
    if (pictures == Pictures::All) {
        for (const QString& name : QDir(built).entryList({QStringLiteral("*.svg")}))
            EXPECT_TRUE(QFile::link(built + u'/' + name, root() + u'/' + name));
    }
    QByteArray text = read();
    for (const QString& name : removedWidgets) {
        const QByteArray tag = "name=\"" + name.toUtf8() + "\">";
        const qsizetype start = text.lastIndexOf("<widget ", text.indexOf(tag));
        const qsizetype end = text.indexOf("</widget>", start);
        EXPECT_TRUE(text.contains(tag) && start > 0 && end > start) << name.toStdString();
        text.remove(start, end + 9 - start);
        text.replace("<tabstop>" + name.toUtf8() + "</tabstop>", "");
        text.replace("<property name=\"field\" stdset=\"0\"><string notr=\"true\">" +
                         name.toUtf8() + "</string></property>",
                     "");
    }
    write(text);
}

QByteArray CutDownBundle::read() const {
    QFile file(root() + QStringLiteral("/OptionPDE.ui"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

void CutDownBundle::write(const QByteArray& interfaceFile) {
    QFile file(root() + QStringLiteral("/OptionPDE.ui"));
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(interfaceFile);
}

void CutDownBundle::replace(const QByteArray& old, const QByteArray& fresh) {
    QByteArray text = read();
    ASSERT_TRUE(text.contains(old)) << old.toStdString();
    write(text.replace(old, fresh));
}

void CutDownBundle::remove(const QString& file) {
    ASSERT_TRUE(QFile::remove(root() + u'/' + file)) << file.toStdString();
}

} // namespace labelcut::test
