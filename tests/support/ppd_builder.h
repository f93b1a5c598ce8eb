// Test support: PPDs made to measure, as text and opened by libcups.
#pragma once

#include <QByteArray>
#include <QByteArrayList>

#include "host/settings/ppd_calls.h"

namespace labelcut::test {

/// Writes a PPD that libcups accepts. Bytes are written as they are given, so that undecodable
/// texts can be made too.
class PpdBuilder {
public:
    /// A main keyword with a quoted value: `*Name: "value"`.
    PpdBuilder& attribute(const QByteArray& name, const QByteArray& value);
    /// A main keyword with nothing behind the colon.
    PpdBuilder& bareAttribute(const QByteArray& name);
    /// A PickOne option.
    /// @param choices  "NAME" or "NAME/Text".
    /// @param defaultChoice  what the *Default line names; an empty array: no such line.
    PpdBuilder& option(const QByteArray& keyword, const QByteArray& text,
                       const QByteArrayList& choices, const QByteArray& defaultChoice);
    /// An option with the choices OFF and ON.
    PpdBuilder& onOff(const QByteArray& keyword, const QByteArray& defaultChoice = "OFF",
                      const QByteArray& text = {});
    /// KvCutLabel with consecutive counts.
    PpdBuilder& counts(int first, int last, const QByteArray& defaultChoice,
                       const QByteArray& text = "Cut every");
    /// A page size, in points.
    PpdBuilder& size(const QByteArray& name, int width, int height);
    /// *LanguageEncoding; "None" lets bytes through as they are.
    PpdBuilder& encoding(const QByteArray& name);

    QByteArray text() const;
    /// Opened, nothing marked. Fails the running test when libcups refuses it.
    ppd::File open() const;

    /// The eight options' keywords, and the two natural printers.
    static PpdBuilder rollPrinter();
    static PpdBuilder tapePrinter();

private:
    QByteArray mEncoding = "None";
    QByteArray mBody;
    QByteArray mSizes;
};

} // namespace labelcut::test
