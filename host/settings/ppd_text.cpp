// Settings: the text of a PPD, looked through before libcups makes a record of it.
#include "host/settings/ppd_text.h"

#include <QLocale>

#include "host/texts/host_text.h"

namespace labelcut::ppd {

namespace {

/// Bytes of a statement that are kept: two keywords, which have at most 40 each, and blanks.
constexpr std::size_t kKept = 256;
/// Text tools of old end a text with it.
constexpr char kControlZ = 0x1a;
constexpr std::string_view kBlanks = " \t\f\v";

std::string_view withoutBlanks(std::string_view text) {
    const std::size_t begin = text.find_first_not_of(kBlanks);
    if (begin == std::string_view::npos)
        return {};
    return text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

/// "KvHalfCut" of " *KvHalfCut/Half cut: PickOne" and ": *KvHalfCut", "Cut" of ": Cut/Cut options".
std::string nameIn(std::string_view text) {
    text = withoutBlanks(text);
    if (text.starts_with(':'))
        text = withoutBlanks(text.substr(1));
    if (text.starts_with('*'))
        text.remove_prefix(1);
    return std::string(withoutBlanks(text.substr(0, text.find_first_of("/:"))));
}

bool isComment(std::string_view statement) {
    return statement.starts_with("*%");
}

/// "de.Translation", "pt_BR.PageSize".
bool isTranslation(std::string_view keyword) {
    const std::size_t point = keyword.find('.');
    return point == 2 || (point == 5 && keyword[2] == '_');
}

OpenError tooMany(const char* text, std::int64_t limit) {
    const QString number = QLocale(QLocale::English).toString(static_cast<qlonglong>(limit));
    return {hostText(text).arg(number), 0};
}

OpenError brokenIn(const char* text, const std::string& name, int line) {
    return {hostText(text).arg(QString::fromLatin1(name)), line};
}

} // namespace

bool TextWalk::take(std::string_view piece) {
    mBytes += static_cast<std::int64_t>(piece.size());
    if (mBytes > kMaxTextBytes && !mExcess)
        mExcess = tooMany("PpdTooLong", kMaxTextBytes);
    for (const char c : piece) {
        if (mExcess || mAtData)
            return false;
        takeByte(c);
    }
    return true;
}

void TextWalk::takeByte(char c) {
    const bool isSecondOfTwo = mAfterReturn && c == '\n';
    mAfterReturn = c == '\r';
    if (isSecondOfTwo)
        return;
    if (c == '\n' || c == '\r')
        endLine();
    else if (c != kControlZ)
        addToStatement(c);
}

void TextWalk::addToStatement(char c) {
    if (mStatement.size() < kKept)
        mStatement += c;
    mHasValue = mHasValue || (mHasColon && kBlanks.find(c) == std::string_view::npos);
    if (c == ':' && !isComment(mStatement))
        mHasColon = true;
    if (c != '"' || !mHasColon)
        return;
    mIsQuoted = !mIsQuoted;
    mQuoteLine = mLine;
}

void TextWalk::endLine() {
    ++mLine;
    if (mIsQuoted)
        return;
    endStatement();
    mStatement.clear();
    mStatementLine = mLine;
    mHasColon = false;
    mHasValue = false;
}

void TextWalk::endStatement() {
    if (mStatement == "*%APLWORKSET START")
        mAtData = true;
    if (!mStatement.starts_with('*') || isComment(mStatement))
        return;
    const std::string_view text = std::string_view(mStatement).substr(1);
    const std::string_view keyword = text.substr(0, text.find_first_of(" \t\f\v:"));
    if (keyword != "End")
        follow(keyword, text.substr(keyword.size()));
}

void TextWalk::follow(std::string_view keyword, std::string_view rest) {
    if (opensOrCloses(keyword, rest))
        return;
    if (keyword.ends_with("UIConstraints"))
        count(mConstraints, kMaxConstraints, "PpdManyConstraints");
    if (!mOption || keyword != mOption->name)
        return addOther(keyword);
    count(mChoices, kMaxChoices, "PpdManyChoices");
    ++mOfKeyword[mOption->name].choices;
    if (keyword == "PageSize")
        compare(mSizes++);
}

bool TextWalk::opensOrCloses(std::string_view keyword, std::string_view rest) {
    if (keyword == "OpenUI" || keyword == "JCLOpenUI") {
        mOption = Opened{nameIn(rest), mStatementLine};
        // Each option before it may be the same, and each statement its default.
        compare(mOptions + mStatements);
        count(mOptions, kMaxOptions, "PpdManyOptions");
    } else if (keyword == "OpenGroup") {
        mGroup = Opened{nameIn(rest), mStatementLine};
        compare(mGroups++);
    } else if (keyword == "CloseUI" || keyword == "JCLCloseUI") {
        mOption.reset();
    } else if (keyword == "CloseGroup") {
        mGroup.reset();
    } else {
        return false;
    }
    return true;
}

void TextWalk::addOther(std::string_view keyword) {
    const bool isOfOption =
        mOption && (keyword == "OrderDependency" || keyword == "Default" + mOption->name);
    if (!isOfOption && (keyword == "OrderDependency" || keyword.starts_with("Default") ||
                        keyword.starts_with("Custom")))
        compare(mOptions);
    if (keyword == "PaperDimension" || keyword == "ImageableArea")
        compare(mSizes++);
    if (isTranslation(keyword))
        ++mOfKeyword[std::string(keyword.substr(keyword.find('.') + 1))].translations;
    OfKeyword& same = mOfKeyword[std::string(keyword)];
    // libcups keeps statements in the order of their keywords and looks first where it was last.
    if (keyword != mLastKeyword || keyword == "JobPatchFile")
        compare(same.statements);
    mLastKeyword = keyword;
    ++same.statements;
    ++mStatements;
}

void TextWalk::compare(std::int64_t names) {
    mComparisons += names;
    if (mComparisons > kMaxComparisons && !mExcess)
        mExcess = tooMany("PpdManyComparisons", kMaxComparisons);
}

void TextWalk::count(int& number, int limit, const char* text) {
    if (++number > limit && !mExcess)
        mExcess = tooMany(text, limit);
}

std::int64_t TextWalk::comparisons() const {
    std::int64_t all = mComparisons;
    for (const auto& [keyword, of] : mOfKeyword) {
        // Every option looks for its own translation.
        const std::int64_t translated =
            keyword == "Translation" ? mOptions + mGroups : of.choices + of.statements;
        all += translated * of.translations;
    }
    return all;
}

std::optional<OpenError> TextWalk::excess() const {
    if (!mExcess && comparisons() > kMaxComparisons)
        return tooMany("PpdManyComparisons", kMaxComparisons);
    return mExcess;
}

/// Of a last line without end: whether it lacks its colon, what should stand behind that, or the
/// end of the name that it closes.
bool TextWalk::isStatementUnfinished() const {
    if (!mStatement.starts_with('*') || isComment(mStatement) ||
        withoutBlanks(mStatement) == "*End")
        return false;
    if (!mHasValue)
        return true;
    const std::string_view text(mStatement);
    const std::string_view start = text.substr(0, text.find(':'));
    const auto& closed = start == "*CloseGroup" ? mGroup : mOption;
    if (!closed || (start != "*CloseGroup" && start != "*CloseUI" && start != "*JCLCloseUI"))
        return false;
    const std::string name = nameIn(text.substr(start.size()));
    return name != closed->name && closed->name.starts_with(name);
}

std::optional<OpenError> TextWalk::end() {
    if (mAtData)
        return std::nullopt;
    if (mIsQuoted)
        return OpenError{hostText("PpdEndsInQuotes"), mQuoteLine};
    if (isStatementUnfinished())
        return OpenError{hostText("PpdEndsInStatement"), mStatementLine};
    endStatement();
    if (mOption)
        return brokenIn("PpdEndsInOption", mOption->name, mOption->line);
    if (mGroup)
        return brokenIn("PpdEndsInGroup", mGroup->name, mGroup->line);
    return std::nullopt;
}

} // namespace labelcut::ppd
