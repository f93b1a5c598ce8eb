// Tests of conflicts: lines of PPDs whose options exclude each other, as many as are asked for.
#pragma once

#include <QByteArray>
#include <QByteArrayList>

namespace labelcut::test {

/// The first of the choices is the default.
inline QByteArray optionLines(const QByteArray& keyword, const QByteArrayList& choices) {
    QByteArray lines = "*OpenUI *" + keyword + "/" + keyword + ": PickOne\n*Default" + keyword +
                       ": " + choices.front() + '\n';
    for (const QByteArray& choice : choices)
        lines += "*" + keyword + " " + choice + ": \"\"\n";
    return lines + "*CloseUI: *" + keyword + '\n';
}

/// O0, O1 and so on, each OFF or ON.
inline QByteArray switches(int count) {
    QByteArray lines;
    for (int i = 0; i < count; ++i)
        lines += optionLines("O" + QByteArray::number(i), {"OFF", "ON"});
    return lines;
}

/// Switches, every one against the next, each with a way out that breaks the one after.
inline QByteArray circle(int count) {
    QByteArray lines = switches(count);
    for (int i = 0; i < count; ++i) {
        const QByteArray number = QByteArray::number(i);
        const QByteArray next = "O" + QByteArray::number((i + 1) % count);
        lines += "*cupsUIConstraints R" + number + ": \"*O" + number + " ON *" + next +
                 " ON\"\n*cupsUIResolver R" + number + ": \"*" + next + " ON\"\n";
    }
    return lines;
}

/// The same, but each way out has to be held against thousands of constraints first: with all on,
/// and from a hundred switches, the search for a way out goes to its limit.
inline QByteArray longSearch(int count) {
    return QByteArray("*cupsUIConstraints: \"*O0 OFF *O1 OFF\"\n").repeated(5'000) + circle(count);
}

} // namespace labelcut::test
