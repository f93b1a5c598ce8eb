// The dialog without its widgets: what is chosen, told as a summary, a sentence, and commands.
#include "host/dialog/job_description.h"

#include <QRegularExpression>

#include "host/core/harmless_text.h"
#include "host/settings/secret_setting.h"
#include "host/texts/host_text.h"
#include "host/texts/length.h"

namespace labelcut {

namespace {

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

/// The label size's title; of a size that the user gave, its measures.
QString labelSizeText(const JobModel& model) {
    const Setting setting{kPageSize, model.choice(kPageSize).value_or(QString())};
    const auto size = model.view().labelSize();
    if (!setting.choice.startsWith(QLatin1String("Custom.")) || !size)
        return model.view().title(setting);
    return measureForUser(size->size.width(), size->size.height());
}

QString sentencePart(const SummaryWords& words, const QString& title, const QString& value) {
    if (!value.isEmpty() && value == words.yes)
        return title;
    if (!value.isEmpty() && value == words.no)
        return {};
    return title + u' ' + value;
}

QString fitText(worker::Fit fit) {
    switch (fit) {
    case worker::Fit::Actual:
        return hostText("FitActual");
    case worker::Fit::Turn:
        return hostText("FitTurn");
    case worker::Fit::Scale:
        return hostText("FitScale");
    case worker::Fit::Unchanged:
        break;
    }
    return {};
}

SummaryGroup jobGroup(const JobModel& model) {
    SummaryGroup job{hostText("SummaryJob"),
                     {{hostText("SummaryPrinter"), model.printer()->title()}}};
    if (const auto size = model.view().labelSize()) {
        const QString measure = measureForUser(size->size.width(), size->size.height());
        const QString text = labelSizeText(model);
        job.lines.emplace_back(
            hostText("SummaryPaper"),
            text == measure ? text : hostText("SummaryPaperMeasure").arg(text, measure));
    }
    job.lines.emplace_back(hostText("SummaryLabels"), model.pages().isEverything()
                                                          ? hostText("SummaryAllLabels")
                                                          : toString(model.pages()));
    const QString copies = QString::number(model.copies());
    job.lines.emplace_back(hostText("SummaryCopies"),
                           model.isCollated() || model.copies() == 1
                               ? copies
                               : hostText("SummaryUncollated").arg(copies));
    if (model.isReversed())
        job.lines.emplace_back(hostText("SummaryOrder"), hostText("SummaryReversed"));
    if (model.fit() != worker::Fit::Unchanged)
        job.lines.emplace_back(hostText("SummaryFit"), fitText(model.fit()));
    return job;
}

SummaryGroup featuresGroup(const JobModel& model) {
    SummaryGroup features{hostText("TabFeatures"), {}};
    const QStringList elsewhere = model.panelKeywords() + QStringList{kPageSize};
    for (const Setting& setting : model.changedMarks()) {
        if (!elsewhere.contains(setting.keyword))
            features.lines.emplace_back(model.view().title(setting.keyword),
                                        model.view().title(setting));
    }
    return features;
}

QStringList amountWords(const JobModel& model, const char* copies, const char* pages) {
    QStringList words;
    if (model.copies() != 1)
        words << QLatin1String(copies) << QString::number(model.copies());
    if (!model.pages().isEverything())
        words << QLatin1String(pages) << toString(model.pages());
    return words;
}

QStringList handlingWords(const JobModel& model) {
    QStringList words;
    if (model.isReversed())
        words << QStringLiteral("--reverse");
    if (!model.isCollated())
        words << QStringLiteral("--no-collate");
    if (model.fit() != worker::Fit::Unchanged)
        words << QStringLiteral("--fit") << fitWord(model.fit());
    return words;
}

/// What lp asks the service's filters for; they alone lay out what lp sends.
QStringList lpHandling(const Handling& handling) {
    QStringList options;
    if (handling.isReversed)
        options << QStringLiteral("outputorder=reverse");
    if (!handling.isCollated)
        options << QStringLiteral("collate=false");
    if (handling.fit == worker::Fit::Scale)
        options << QStringLiteral("print-scaling=auto-fit");
    if (handling.fit == worker::Fit::Actual || handling.fit == worker::Fit::Turn)
        options << QStringLiteral("print-scaling=none");
    // IPP counts a turn clockwise as the reverse landscape.
    if (handling.fit == worker::Fit::Turn)
        options << QStringLiteral("orientation-requested=5");
    return options;
}

/// A password is nothing to be copied.
Settings commandSettings(const JobModel& model) {
    Settings settings = model.jobSettings();
    takeSecrets(model.ppd(), settings);
    return settings;
}

} // namespace

std::vector<SummaryEntry> panelSummary(const JobModel& model) {
    std::vector<SummaryEntry> entries;
    for (const PanelSet::Entry& entry : model.panels()) {
        const std::optional<QVariantMap> info = entry.panel->summaryInfo();
        if (!info)
            continue;
        const QString panel = entry.panel->panelName();
        const SummaryWords words = entry.panel->summaryWords();
        for (const QString& title :
             info->value(QLatin1String(kSummaryDisplayOrder)).toStringList()) {
            const QString value = info->value(title).toString();
            entries.push_back({panel, title, value, sentencePart(words, title, value)});
        }
    }
    return entries;
}

std::vector<SummaryGroup> wholeSummary(const JobModel& model) {
    if (!model.hasPrinter())
        return {};
    std::vector<SummaryGroup> groups{jobGroup(model)};
    for (const SummaryEntry& entry : panelSummary(model)) {
        if (groups.size() == 1 || groups.back().heading != entry.panel)
            groups.push_back({entry.panel, {}});
        groups.back().lines.emplace_back(entry.title, entry.value);
    }
    groups.push_back(featuresGroup(model));
    std::erase_if(groups, [](const SummaryGroup& group) { return group.lines.empty(); });
    return groups;
}

QString jobSentence(const JobModel& model) {
    if (!model.hasPrinter())
        return {};
    const int labels = model.labelCount();
    const QString size = labelSizeText(model);
    const QString amount =
        labels > 0 ? hostText("OneLabel", "ManyLabels", labels) : hostText("SomeLabels");
    QStringList parts{size.isEmpty() ? amount : hostText("LabelsOnPaper").arg(amount, size)};
    for (const SummaryEntry& entry : panelSummary(model)) {
        const QString part = withinSentence(entry.inSentence);
        if (!part.isEmpty())
            parts.append(part);
    }
    if (parts.size() == 1 && !model.panelKeywords().isEmpty())
        parts.append(hostText("NoCutOptions"));
    return parts.join(hostText("SentenceSeparator"));
}

QStringList leftOutOfCommands(const JobModel& model) {
    Settings settings = model.jobSettings();
    return takeSecrets(model.ppd(), settings);
}

QString labelcutCommand(const JobModel& model) {
    const PrinterRef& printer = model.printer()->ref();
    QStringList words{QStringLiteral("labelcut"), QStringLiteral("print")};
    if (const QString* queue = queueName(printer))
        words << QStringLiteral("--printer") << *queue;
    else
        words << QStringLiteral("--ppd") << *ppdPath(printer);
    for (const Setting& setting : commandSettings(model)) {
        if (setting.keyword == kPageSize)
            words << QStringLiteral("--page-size") << setting.choice;
        else
            words << QStringLiteral("--set") << setting.keyword + u'=' + setting.choice;
    }
    words += amountWords(model, "--copies", "--pages") + handlingWords(model);
    if (!queueName(printer))
        words << QStringLiteral("-o") << QStringLiteral("labels.ps");
    words << QStringLiteral("--");
    return commandLine(words + fileWords(model.files()));
}

QString lpCommand(const JobModel& model) {
    const QString* queue = queueName(model.printer()->ref());
    if (!queue)
        return {};
    QStringList words{QStringLiteral("lp"), QStringLiteral("-d"), *queue};
    words += amountWords(model, "-n", "-P");
    for (const Setting& setting : commandSettings(model))
        words << QStringLiteral("-o") << setting.keyword + u'=' + setting.choice;
    for (const QString& option : lpHandling(model.handling()))
        words << QStringLiteral("-o") << option;
    words << QStringLiteral("--");
    return commandLine(words + fileWords(model.files()));
}

} // namespace labelcut
