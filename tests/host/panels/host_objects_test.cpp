// The print objects that a host holds: what they keep, what they refuse, and with which status.
#include "host/panels/host_objects.h"

#include <gtest/gtest.h>

#include <QDateTime>
#include <QPoint>

#include "host/settings/ppd_calls.h"
#include "platform/toolkit/property_list.h"

namespace labelcut {

namespace {

const QString kKey = QStringLiteral("some key");

std::uint32_t firstPage(const PMPrintSettings& settings) {
    std::uint32_t page = 12345;
    EXPECT_EQ(PMGetFirstPage(&settings, &page), noErr);
    return page;
}

std::uint32_t lastPage(const PMPrintSettings& settings) {
    std::uint32_t page = 12345;
    EXPECT_EQ(PMGetLastPage(&settings, &page), noErr);
    return page;
}

QVariant valueOf(const PMPrintSettings& settings, const QString& key) {
    QVariant value;
    const OSStatus status = PMPrintSettingsGetValue(&settings, key, &value);
    EXPECT_EQ(status, value.isValid() ? noErr : kPMKeyNotFound);
    return value;
}

QByteArray represented(const PMPrintSettings& settings) {
    QByteArray bytes;
    EXPECT_EQ(PMPrintSettingsCreateDataRepresentation(&settings, PMDataFormat::XMLDefault, &bytes),
              noErr);
    return bytes;
}

ppd::File openTiny() {
    return ppd::openFile(QStringLiteral(LABELCUT_TEST_DATA "/tiny_tape.ppd"), nullptr);
}

struct PaperFacts {
    QString name = QStringLiteral("untouched");
    double height = -1;
};

PaperFacts factsOf(const PMPaper& paper) {
    PaperFacts facts;
    EXPECT_EQ(PMPaperGetPPDPaperName(&paper, &facts.name), noErr);
    EXPECT_EQ(PMPaperGetHeight(&paper, &facts.height), noErr);
    return facts;
}

} // namespace

TEST(HostPrinter, hasNoDeviceUriUntilItIsGiven) {
    HostPrinter printer;
    PMURL uri(QStringLiteral("untouched:"));
    EXPECT_EQ(PMPrinterCopyDeviceURI(&printer, &uri), kPMKeyNotFound);
    EXPECT_EQ(CFURLGetString(uri), QStringLiteral("untouched:"));

    printer.setDeviceUri(QStringLiteral("KVSGUSB://Tape?serial=1"));
    ASSERT_EQ(PMPrinterCopyDeviceURI(&printer, &uri), noErr);
    EXPECT_EQ(CFURLGetString(uri), QStringLiteral("KVSGUSB://Tape?serial=1"));
    EXPECT_EQ(CFURLCopyScheme(uri), QStringLiteral("KVSGUSB"));

    printer.setDeviceUri(std::nullopt);
    EXPECT_EQ(PMPrinterCopyDeviceURI(&printer, &uri), kPMKeyNotFound);
}

TEST(HostPrinter, tellsItsState) {
    HostPrinter printer;
    PMPrinterState state = PMPrinterState::Stopped;
    ASSERT_EQ(PMPrinterGetState(&printer, &state), noErr);
    EXPECT_EQ(state, PMPrinterState::Idle);
    EXPECT_TRUE(printer.isAccepting());
    EXPECT_TRUE(printer.stateReasons().isEmpty());

    printer.setState(PMPrinterState::Stopped);
    printer.setAccepting(false);
    printer.setStateReasons({QStringLiteral("paused")});
    ASSERT_EQ(PMPrinterGetState(&printer, &state), noErr);
    EXPECT_EQ(state, PMPrinterState::Stopped);
    EXPECT_FALSE(printer.isAccepting());
    EXPECT_EQ(printer.stateReasons(), QStringList({QStringLiteral("paused")}));
}

TEST(HostPrintSession, keepsDataUnderKeys) {
    HostPrintSession session;
    QVariant value = 1;
    EXPECT_EQ(PMSessionGetDataFromSession(&session, kKey, &value), noErr);
    EXPECT_FALSE(value.isValid());

    EXPECT_EQ(PMSessionSetDataInSession(&session, kKey, 42), noErr);
    EXPECT_EQ(PMSessionGetDataFromSession(&session, kKey, &value), noErr);
    EXPECT_EQ(value, QVariant(42));
    EXPECT_EQ(PMSessionSetDataInSession(&session, kKey, QPoint(1, 2)), noErr);
    EXPECT_EQ(PMSessionGetDataFromSession(&session, kKey, &value), noErr);
    EXPECT_EQ(value, QVariant(QPoint(1, 2)));

    EXPECT_EQ(PMSessionSetDataInSession(&session, kKey, {}), noErr);
    EXPECT_EQ(PMSessionGetDataFromSession(&session, kKey, &value), noErr);
    EXPECT_FALSE(value.isValid());
    EXPECT_EQ(PMSessionSetDataInSession(&session, {}, 42), kPMInvalidParameter);
}

TEST(HostPrintSettings, keepsTypedValues) {
    HostPrintSettings settings;
    QVariant untouched = 7;
    EXPECT_EQ(PMPrintSettingsGetValue(&settings, kKey, &untouched), kPMKeyNotFound);
    EXPECT_EQ(untouched, QVariant(7));

    struct Row {
        QVariant given, kept;
    };
    const Row rows[] = {
        {QStringLiteral("text"), QStringLiteral("text")},
        {3, 3LL},
        {2.5, 2.5},
        {true, true},
        {QByteArray("\0\xff", 2), QByteArray("\0\xff", 2)},
        {QStringList({QStringLiteral("a")}), QVariantList({QStringLiteral("a")})},
        {QString(QChar(1)), QString(QChar(0xFFFD))},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(PMPrintSettingsSetValue(&settings, kKey, row.given, false), noErr);
        const QVariant value = valueOf(settings, kKey);
        EXPECT_EQ(value, row.kept);
        EXPECT_EQ(value.typeId(), row.kept.typeId());
    }
    EXPECT_EQ(settings.keys(), QStringList({kKey}));
    EXPECT_EQ(PMPrintSettingsSetValue(&settings, kKey, {}, false), noErr);
    EXPECT_FALSE(valueOf(settings, kKey).isValid());
    EXPECT_EQ(PMPrintSettingsSetValue(&settings, kKey, {}, false), noErr);
}

TEST(HostPrintSettings, refusesWhatItCouldNotRepresent) {
    HostPrintSettings settings;
    QVariant deep = 1;
    for (int i = 0; i < kPropertyListMaxDepth - 2; ++i)
        deep = QVariantList({deep});
    EXPECT_EQ(settings.setValue(kKey, deep, false), noErr);
    EXPECT_FALSE(represented(settings).isEmpty());

    EXPECT_EQ(settings.setValue(kKey, QVariantList({deep}), false), kPMInvalidParameter);
    EXPECT_EQ(settings.setValue(kKey, QPoint(), false), kPMInvalidParameter);
    EXPECT_EQ(settings.setValue(kKey, QDateTime(), false), kPMInvalidParameter);
    EXPECT_EQ(settings.setValue({}, 1, false), kPMInvalidParameter);
    EXPECT_EQ(settings.setValue(QString(QChar(1)), 1, false), kPMInvalidParameter);
    EXPECT_EQ(valueOf(settings, kKey), deep);

    QByteArray untouched = "untouched";
    EXPECT_EQ(settings.dataRepresentation(static_cast<PMDataFormat>(1), &untouched),
              kPMInvalidParameter);
    EXPECT_EQ(settings.setValue(kKey, QByteArray(kPropertyListMaxBytes, 'a'), false), noErr);
    EXPECT_EQ(settings.dataRepresentation(PMDataFormat::XMLDefault, &untouched), kPMGeneralError);
    EXPECT_EQ(untouched, "untouched");
}

TEST(HostPrintSettings, guardsLockedValues) {
    HostPrintSettings settings;
    EXPECT_FALSE(settings.isLocked(kKey));
    ASSERT_EQ(settings.setValue(kKey, 1, true), noErr);
    EXPECT_TRUE(settings.isLocked(kKey));

    EXPECT_EQ(settings.setValue(kKey, 2, false), kPMItemLocked);
    EXPECT_EQ(settings.setValue(kKey, 1.0, false), kPMItemLocked);
    EXPECT_EQ(settings.setValue(kKey, {}, false), kPMItemLocked);
    EXPECT_EQ(valueOf(settings, kKey), QVariant(1LL));

    EXPECT_EQ(settings.setValue(kKey, 1, false), noErr) << "nothing changes";
    EXPECT_TRUE(settings.isLocked(kKey));
    EXPECT_EQ(settings.setValue(kKey, 3, true), noErr);
    EXPECT_EQ(valueOf(settings, kKey), QVariant(3LL));

    settings.unlock(kKey);
    EXPECT_EQ(settings.setValue(kKey, 4, false), noErr);
    EXPECT_EQ(settings.setValue(kKey, 4, true), noErr);
    EXPECT_EQ(settings.setValue(kKey, {}, true), noErr);
    EXPECT_FALSE(settings.isLocked(kKey));
    EXPECT_EQ(settings.setValue(kKey, 5, false), noErr);
}

TEST(HostPrintSettings, checksThePageRange) {
    HostPrintSettings settings;
    EXPECT_EQ(firstPage(settings), 1U);
    EXPECT_EQ(lastPage(settings), kLastPageOfAll);

    EXPECT_EQ(PMSetFirstPage(&settings, 0, false), kPMValueOutOfRange);
    EXPECT_EQ(PMSetLastPage(&settings, 0, false), kPMValueOutOfRange);
    EXPECT_EQ(PMSetLastPage(&settings, 5, false), noErr);
    EXPECT_EQ(PMSetFirstPage(&settings, 6, false), kPMValueOutOfRange);
    EXPECT_EQ(PMSetFirstPage(&settings, 5, false), noErr);
    EXPECT_EQ(PMSetLastPage(&settings, 4, false), kPMValueOutOfRange);
    EXPECT_EQ(PMSetLastPage(&settings, kLastPageOfAll, false), noErr);
    EXPECT_EQ(firstPage(settings), 5U);
    EXPECT_EQ(lastPage(settings), kLastPageOfAll);

    EXPECT_EQ(settings.setPageRange(3, 2, false), kPMValueOutOfRange);
    EXPECT_EQ(settings.setPageRange(0, 2, false), kPMValueOutOfRange);
    EXPECT_EQ(settings.setPageRange(1, 2, false), noErr);
    EXPECT_EQ(settings.setPageRange(8, 9, false), noErr);
    EXPECT_EQ(firstPage(settings), 8U);
    EXPECT_EQ(lastPage(settings), 9U);
}

TEST(HostPrintSettings, locksThePageRange) {
    HostPrintSettings settings;
    ASSERT_EQ(PMSetFirstPage(&settings, 2, true), noErr);
    EXPECT_EQ(PMSetFirstPage(&settings, 3, false), kPMItemLocked);
    EXPECT_EQ(PMSetFirstPage(&settings, 2, false), noErr);
    EXPECT_EQ(settings.setPageRange(3, 4, false), kPMItemLocked);
    EXPECT_EQ(lastPage(settings), kLastPageOfAll);
    EXPECT_EQ(settings.setPageRange(2, 4, false), noErr);
    EXPECT_EQ(settings.setPageRange(3, 4, true), noErr);
    EXPECT_EQ(PMSetLastPage(&settings, 5, false), kPMItemLocked);
    EXPECT_EQ(firstPage(settings), 3U);
    EXPECT_EQ(lastPage(settings), 4U);
}

TEST(HostPrintSettings, checksThePageRangeWrittenAsValues) {
    const QString first = QLatin1String(kFirstPageKey);
    const QString last = QLatin1String(kLastPageKey);
    HostPrintSettings settings;
    EXPECT_FALSE(valueOf(settings, first).isValid());
    EXPECT_EQ(settings.setValue(first, 4, false), noErr);
    EXPECT_EQ(firstPage(settings), 4U);
    for (const QVariant& value : {QVariant(QStringLiteral("5")), QVariant(5.0), QVariant(3),
                                  QVariant(-1), QVariant(0x100000000LL), QVariant(true)})
        EXPECT_EQ(settings.setValue(last, value, false), kPMValueOutOfRange) << value.typeName();
    EXPECT_EQ(settings.setValue(last, 4U, false), noErr);
    EXPECT_EQ(lastPage(settings), 4U);
    EXPECT_EQ(settings.setValue(last, {}, false), noErr);
    EXPECT_EQ(lastPage(settings), kLastPageOfAll);
}

TEST(HostPrintSettings, readsItsRepresentationBackEqual) {
    HostPrintSettings settings;
    EXPECT_EQ(HostPrintSettings::fromDataRepresentation(represented(settings)), settings);

    settings.setValue(QStringLiteral("text"), QStringLiteral("Größe <24> \r\n"), true);
    settings.setValue(QStringLiteral("integer"), 1, false);
    settings.setValue(QStringLiteral("real"), 1.0, false);
    settings.setValue(QStringLiteral("truth"), true, true);
    settings.setValue(QStringLiteral("bytes"), QByteArray("\0\1", 2), false);
    settings.setValue(QStringLiteral("date"), QDateTime::currentDateTime(), false);
    settings.setValue(QStringLiteral("map"), QVariantMap{{kKey, QVariantList({1, 2.5})}}, false);
    settings.setPageRange(2, 7, true);
    settings.setTicketPaperName(QStringLiteral("DC24"));
    const auto back = HostPrintSettings::fromDataRepresentation(represented(settings));
    ASSERT_TRUE(back);
    EXPECT_EQ(*back, settings);
    EXPECT_EQ(firstPage(*back), 2U);
    EXPECT_TRUE(back->isLocked(QStringLiteral("truth")));
    EXPECT_FALSE(back->isLocked(QStringLiteral("real")));

    HostPrintSettings other = *back;
    other.setValue(QStringLiteral("integer"), 1.0, false);
    EXPECT_FALSE(other == settings) << "the type counts";
    other = *back;
    other.unlock(QStringLiteral("text"));
    EXPECT_FALSE(other == settings) << "locks count";
}

TEST(HostPrintSettings, refusesRepresentationsOfSomethingElse) {
    const QVariantMap none;
    const QVariantMap good{{QStringLiteral("version"), 1},
                           {QStringLiteral("values"), QVariantMap{{kKey, 1}}},
                           {QStringLiteral("locked"), QVariantList{kKey}}};
    ASSERT_TRUE(HostPrintSettings::fromDataRepresentation(propertyListToXml(good)));

    struct Row {
        const char* key;
        QVariant value;
    };
    const Row rows[] = {
        {"version", 2},
        {"version", QStringLiteral("one")},
        {"values", 1},
        {"values", QVariantMap{{QString(), 1}}},
        {"values", none},
        {"values", QVariantMap{{kKey, 1}, {QLatin1String(kFirstPageKey), 0}}},
        {"values", QVariantMap{{kKey, 1}, {QLatin1String(kLastPageKey), QStringLiteral("9")}}},
        {"values", QVariantMap{{kKey, 1},
                               {QLatin1String(kFirstPageKey), 3},
                               {QLatin1String(kLastPageKey), 2}}},
        {"locked", none},
        {"locked", QVariantList{1}},
        {"locked", QVariantList{QStringLiteral("absent")}},
    };
    for (const Row& row : rows) {
        QVariantMap bad = good;
        bad.insert(QLatin1String(row.key), row.value);
        EXPECT_FALSE(HostPrintSettings::fromDataRepresentation(propertyListToXml(bad))) << row.key;
        bad.remove(QLatin1String(row.key));
        EXPECT_FALSE(HostPrintSettings::fromDataRepresentation(propertyListToXml(bad))) << row.key;
    }
    EXPECT_FALSE(HostPrintSettings::fromDataRepresentation({}));
    EXPECT_FALSE(HostPrintSettings::fromDataRepresentation("<plist><array/></plist>"));
}

TEST(HostPrintSettings, carriesTheTicketsPaperName) {
    const QString key = QStringLiteral("org.labelcut.print.PrintSettingsTicket.SgE5");
    HostPrintSettings settings;
    ASSERT_EQ(settings.setTicketPaperName(QStringLiteral("DC24")), noErr);
    const QVariant ticket = valueOf(settings, key);
    ASSERT_EQ(ticket.typeId(), QMetaType::QByteArray);
    const auto list = propertyListFromXml(ticket.toByteArray());
    ASSERT_TRUE(list);
    EXPECT_EQ(*list,
              QVariant(QVariantMap{{QStringLiteral("SgPaperName2"), QStringLiteral("DC24")}}));

    ASSERT_EQ(settings.setTicketPaperName(std::nullopt), noErr);
    EXPECT_FALSE(valueOf(settings, key).isValid());
}

TEST(HostPaper, takesNameAndLengthFromEverySizeOfThePpd) {
    const ppd::File file = openTiny();
    ASSERT_TRUE(file);
    ASSERT_EQ(file->num_sizes, 4);
    const PaperFacts first = factsOf(HostPaper::fromPpdSize(file->sizes[0]));
    EXPECT_EQ(first.name, QStringLiteral("DC24"));
    EXPECT_NEAR(first.height, 283.4646, 1e-4);
    const PaperFacts second = factsOf(HostPaper::fromPpdSize(file->sizes[1]));
    EXPECT_EQ(second.name, QStringLiteral("DC12"));
    EXPECT_NEAR(second.height, 141.7323, 1e-4);
}

TEST(HostPaper, followsTheMarkedPageSize) {
    const ppd::File file = openTiny();
    ASSERT_TRUE(file);
    EXPECT_FALSE(HostPaper::fromMarkedPageSize(nullptr));
    EXPECT_FALSE(HostPaper::fromMarkedPageSize(file.get())) << "nothing is marked yet";

    ppd::markDefaults(file.get());
    auto paper = HostPaper::fromMarkedPageSize(file.get());
    ASSERT_TRUE(paper);
    EXPECT_EQ(factsOf(*paper).name, QStringLiteral("DC24"));

    ASSERT_TRUE(ppd::markOption(file.get(), "PageSize", "DC12"));
    paper = HostPaper::fromMarkedPageSize(file.get());
    ASSERT_TRUE(paper);
    EXPECT_EQ(factsOf(*paper).name, QStringLiteral("DC12"));
    EXPECT_NEAR(factsOf(*paper).height, 141.7323, 1e-4);

    ASSERT_TRUE(ppd::markOption(file.get(), "PageSize", "Custom.50x500"));
    paper = HostPaper::fromMarkedPageSize(file.get());
    ASSERT_TRUE(paper);
    EXPECT_EQ(factsOf(*paper).name, QStringLiteral("Custom"));
    EXPECT_NEAR(factsOf(*paper).height, 500, 1e-4);
}

TEST(HostPaper, mayHaveNoPpdName) {
    const PaperFacts facts = factsOf(HostPaper(std::nullopt, 100));
    EXPECT_TRUE(facts.name.isNull());
    EXPECT_EQ(facts.height, 100);
}

TEST(HostPageFormat, lendsItsPaper) {
    HostPageFormat format;
    const HostPaper other(std::nullopt, 1);
    const PMPaper* paper = &other;
    EXPECT_EQ(PMGetPageFormatPaper(&format, &paper), noErr);
    EXPECT_EQ(paper, nullptr);

    format.setPaper(HostPaper(QStringLiteral("DC24"), 283));
    ASSERT_EQ(PMGetPageFormatPaper(&format, &paper), noErr);
    ASSERT_NE(paper, nullptr);
    EXPECT_EQ(factsOf(*paper).name, QStringLiteral("DC24"));

    format.setPaper(std::nullopt);
    EXPECT_EQ(PMGetPageFormatPaper(&format, &paper), noErr);
    EXPECT_EQ(paper, nullptr);
}

} // namespace labelcut
