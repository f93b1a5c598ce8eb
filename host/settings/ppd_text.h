// Settings: the text of a PPD, looked through before libcups makes a record of it.
//
// libcups takes a text that ends anywhere, and looks for names in lists, so that its time grows
// with the square of their number. One walk over the text, in proportion to its length, says
// whether it is whole and within limits that keep libcups' time to about a second.
#pragma once

#include <QString>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace labelcut::ppd {

/// Why a PPD could not be opened: libcups' own words or such as fit in their place, and the line
/// (0 when there is none).
struct OpenError {
    QString reason;
    int line = 0;
};

/// What is read of one PPD; those of real printers have at most a tenth of any.
inline constexpr std::int64_t kMaxTextBytes = std::int64_t{16} * 1024 * 1024;
inline constexpr int kMaxOptions = 10'000;
/// Of all options together.
inline constexpr int kMaxChoices = 100'000;
inline constexpr int kMaxConstraints = 50'000;
/// How many names libcups compares while it reads; options alone may take nearly as many.
inline constexpr std::int64_t kMaxComparisons = 150'000'000;

/// Walks over a text that comes in pieces, as libcups reads it: statements end with a line unless a
/// quoted value goes on, and lines end with CR, LF or both.
class TextWalk {
public:
    /// @return false: nothing is taken any more.
    bool take(std::string_view piece);
    /// The limit that the text so far goes beyond; nothing when it goes beyond none. Goes through
    /// all keywords.
    std::optional<OpenError> excess() const;
    /// How many names libcups would compare to read the text so far, at most.
    std::int64_t comparisons() const;
    /// Ends the text. @return what it ends in the middle of; nothing when it is whole. That the
    /// last line has no end is no fault.
    std::optional<OpenError> end();

private:
    struct Opened {
        std::string name;
        int line = 0;
    };

    /// What the text has of one keyword, the languages' own statements beside the others.
    struct OfKeyword {
        std::int64_t statements = 0;
        std::int64_t choices = 0;
        std::int64_t translations = 0;
    };

    void takeByte(char c);
    void addToStatement(char c);
    void endLine();
    void endStatement();
    void follow(std::string_view keyword, std::string_view rest);
    bool opensOrCloses(std::string_view keyword, std::string_view rest);
    void addOther(std::string_view keyword);
    void compare(std::int64_t names);
    void count(int& number, int limit, const char* text);
    bool isStatementUnfinished() const;

    std::int64_t mBytes = 0;
    int mLine = 1;
    bool mAfterReturn = false;
    /// Nothing behind this counts, as for libcups.
    bool mAtData = false;

    /// As much of the statement as says what it is.
    std::string mStatement;
    int mStatementLine = 1;
    int mQuoteLine = 1;
    bool mHasColon = false;
    bool mIsQuoted = false;
    bool mHasValue = false;

    std::optional<Opened> mOption;
    std::optional<Opened> mGroup;
    int mOptions = 0;
    int mGroups = 0;
    int mChoices = 0;
    int mConstraints = 0;
    int mStatements = 0;
    int mSizes = 0;
    std::int64_t mComparisons = 0;
    std::string mLastKeyword;
    std::unordered_map<std::string, OfKeyword> mOfKeyword;
    std::optional<OpenError> mExcess;
};

} // namespace labelcut::ppd
