// Test support: keeps what a field asks its formatter, and the answers.
#pragma once

#include "plugins/cut_options/fields/pde_formatter.h"

#include <QString>

#include <optional>
#include <vector>

namespace labelcut::test {

struct Question {
    QString proposed;
    TextRange proposedRange;
    QString original;
    TextRange originalRange;
    bool isAccepted = false;
    /// Whether the formatter put another text or caret in the place of what was proposed.
    bool isAltered = false;
};

/// Both the formatter that answers and the log outlive it.
class Recorder : public Formatter {
public:
    Recorder(Formatter& inner, std::vector<Question>& log)
        : mInner(inner)
        , mLog(log) {}

    std::optional<QString> stringForObjectValue(const QVariant& object) const override {
        return mInner.stringForObjectValue(object);
    }
    bool getObjectValue(QVariant* object, const std::optional<QString>& string,
                        QString* error) const override {
        return mInner.getObjectValue(object, string, error);
    }
    bool isPartialStringValid(QString* proposed, TextRange* proposedRange, const QString& original,
                              TextRange originalRange, QString* error) override {
        Question question{*proposed, *proposedRange, original, originalRange};
        question.isAccepted =
            mInner.isPartialStringValid(proposed, proposedRange, original, originalRange, error);
        question.isAltered =
            *proposed != question.proposed || *proposedRange != question.proposedRange;
        mLog.push_back(question);
        return question.isAccepted;
    }

private:
    Formatter& mInner;
    std::vector<Question>& mLog;
};

} // namespace labelcut::test
