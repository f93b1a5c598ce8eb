// Fuzzing: the print-settings ticket's bytes through the property list reader, the host's settings,
// the tape information, and the panel's reading of the paper.
#include <QDateTime>

#include <algorithm>
#include <cmath>

#include "host/panels/host_objects.h"
#include "platform/toolkit/property_list.h"
#include "plugins/cut_options/frame/tape_info.h"
#include "tests/support/panel_under_test.h"
#include "tools/fuzzing/support/application.h"
#include "tools/fuzzing/support/bytes.h"
#include "tools/fuzzing/support/property.h"

using namespace labelcut;
using fuzz::Bytes;
using fuzz::require;

namespace {

/// Equal in type and value; two NaN are equal here.
bool areSame(const QVariant& a, const QVariant& b) {
    if (a.typeId() != b.typeId())
        return false;
    if (a.typeId() == QMetaType::Double)
        return a.toDouble() == b.toDouble() ||
               (std::isnan(a.toDouble()) && std::isnan(b.toDouble()));
    if (a.typeId() == QMetaType::QVariantList)
        return std::ranges::equal(a.toList(), b.toList(), areSame);
    if (a.typeId() == QMetaType::QVariantMap)
        return a.toMap().keys() == b.toMap().keys() &&
               std::ranges::equal(a.toMap().values(), b.toMap().values(), areSame);
    return a == b;
}

int depthOf(const QVariant& value) {
    int deepest = 0;
    if (value.typeId() == QMetaType::QVariantList) {
        for (const QVariant& element : value.toList())
            deepest = std::max(deepest, depthOf(element));
        return deepest + 1;
    }
    if (value.typeId() == QMetaType::QVariantMap) {
        for (const QVariant& element : value.toMap().values())
            deepest = std::max(deepest, depthOf(element));
        return deepest + 1;
    }
    return 0;
}

void checkList(const QByteArray& xml, const QVariant& value) {
    require(xml.size() <= kPropertyListMaxBytes, "a list is no longer than the limit");
    require(depthOf(value) <= kPropertyListMaxDepth, "a list is no deeper than the limit");
    const std::optional<QVariant> normal = propertyListValue(value);
    require(normal.has_value(), "what was read can be held");
    if (value.typeId() != QMetaType::QVariantMap)
        return;
    const QByteArray written = propertyListToXml(value.toMap());
    // Written, a short list may be longer than the limit; inputs are too small for that.
    require(!written.isEmpty(), "what was read can be written");
    const std::optional<QVariant> again = propertyListFromXml(written);
    require(again && areSame(*again, *normal), "what was written is read back the same");
    require(propertyListToXml(again->toMap()) == written, "a list is written the same again");
}

void checkHostSettings(const QByteArray& xml, const std::optional<QVariant>& value) {
    HostPrintSettings settings;
    require(settings.setValue(QLatin1String(kTicketKey), xml, false) == noErr,
            "a ticket of any bytes is kept");
    if (value)
        settings.setValue(QStringLiteral("org.labelcut.fuzz"), *value, true);
    QByteArray kept;
    if (settings.dataRepresentation(PMDataFormat::XMLDefault, &kept) != noErr)
        return;
    const std::optional<HostPrintSettings> again = HostPrintSettings::fromDataRepresentation(kept);
    require(again.has_value(), "settings that were written can be read");
    QByteArray keptAgain;
    again->dataRepresentation(PMDataFormat::XMLDefault, &keptAgain);
    require(keptAgain == kept, "settings survive their representation");
    HostPrintSettings::fromDataRepresentation(xml);
}

std::optional<QString> paperNameIn(const std::optional<QVariant>& ticket) {
    if (!ticket || ticket->typeId() != QMetaType::QVariantMap)
        return std::nullopt;
    const QVariant name = ticket->toMap().value(QLatin1String(kTicketPaperName));
    return name.typeId() == QMetaType::QString ? std::optional(name.toString()) : std::nullopt;
}

test::PanelOnHost& tapePanel() {
    static auto* const stage = [] {
        auto* made = new test::PanelOnHost(
            ppd::openFile(QStringLiteral(LABELCUT_SAMPLES "/tape.ppd"), nullptr));
        made->show();
        return made;
    }();
    return *stage;
}

void checkPanel(const QByteArray& xml, const std::optional<QVariant>& ticket, Bytes& bytes) {
    test::PanelOnHost& stage = tapePanel();
    test::FakeHost& host = *stage.host;
    test::PanelUnderTest& panel = *stage.panel;
    host.settings.values = {{QLatin1String(kTicketKey), xml}};
    host.format.status = bytes.below(8) == 7 ? kPMGeneralError : noErr;
    host.format.chosen.reset();
    if (bytes.flag())
        host.format.choose(bytes.flag() ? bytes.string() : QString(),
                           static_cast<double>(bytes.below(65536)));

    TapeInfo tape;
    const OSStatus status =
        GetTapeInfo(&host.session, &host.settings, &host.format, host.ppd.get(), &tape);
    require(status == host.format.status, "only the page format's status is passed on");
    require(tape.tapeState == 0 || tape.tapeState == 1, "the tape's state is 0 or 1");
    require(std::isfinite(tape.height) && tape.height > 0, "the tape has a height");
    require(tape.tapeState == 0 ||
                (tape.paperName && isFixedLengthPaper(tape.paperName->toUtf8().constData())),
            "only a paper of fixed length fixes the tape");
    TapeInfo ofTicket;
    require(GetTapeInfo2(nullptr, &host.settings, &ofTicket) == noErr, "a ticket is no failure");
    require(ofTicket.paperName == paperNameIn(ticket), "the paper's name is the ticket's text");

    panel.enabledCheck_OP();
    panel.saveSetting_RemoveBlkSpace();
    require(panel.getTapeState() == tape.tapeState, "the panel knows the tape's state");
    require(panel.mRemoveBlkSpaceChkBx.isEnabled() == (tape.tapeState == 0),
            "a tape of fixed length forbids to remove blanks");
    host.takeSent();
    host.asked.clear();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::application();
    Bytes bytes(data, size);
    const QByteArray xml = bytes.head();
    const std::optional<QVariant> value = propertyListFromXml(xml);
    if (value)
        checkList(xml, *value);
    checkHostSettings(xml, value);
    checkPanel(xml, value, bytes);
    return 0;
}
