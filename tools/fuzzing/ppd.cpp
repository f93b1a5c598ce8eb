// Fuzzing: a PPD's bytes, opened, shown by the panel, acted on in any order, saved, restored,
// summed up, and emitted as a job's code. Behind the PPD's bytes stand the acts.
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QSet>

#include <algorithm>
#include <array>
#include <map>

#include "host/panels/host_objects.h"
#include "host/settings/checked_setting.h"
#include "host/settings/constraints.h"
#include "platform/toolkit/stepper.h"
#include "platform/toolkit/system_log.h"
#include "plugins/cut_options/diagnostics/pde_log.h"
#include "tests/support/panel_under_test.h"
#include "tools/fuzzing/support/application.h"
#include "tools/fuzzing/support/bytes.h"
#include "tools/fuzzing/support/memory_file.h"
#include "tools/fuzzing/support/property.h"

using namespace labelcut;
using fuzz::Bytes;
using fuzz::require;
using test::FakeHost;
using test::PanelUnderTest;

namespace {

constexpr int kMostActs = 24;

bool offers(ppd_file_t* ppd, const QString& key, const QString& choice) {
    return ppd::findChoice(ppd::findOption(ppd, key.toUtf8().constData()),
                           choice.toUtf8().constData()) != nullptr;
}

bool isPanelKey(const QString& key) {
    return std::ranges::any_of(PanelUnderTest::rows(), [&](const auto& row) {
        return key.compare(QLatin1String(row.keyword), Qt::CaseInsensitive) == 0;
    });
}

QByteArray markedName(ppd_file_t* ppd, const char* keyword) {
    const ppd_choice_t* choice = ppd::findMarkedChoice(ppd, keyword);
    return choice ? QByteArray(choice->choice) : QByteArray();
}

using Settings = std::vector<const ppd_choice_t*>;

Settings marksOf(ppd_file_t* ppd) {
    const int count = cupsArrayCount(ppd->marked);
    Settings marks;
    marks.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        marks.push_back(static_cast<const ppd_choice_t*>(cupsArrayIndex(ppd->marked, i)));
    return marks;
}

class LineCount : public SystemLogSink {
public:
    LineCount() { setSystemLogSink(this); }
    ~LineCount() override { setSystemLogSink(nullptr); }
    void write(const QString&) override { ++count; }

    int count = 0;
};

std::shared_ptr<const PDEBundle> bundle() {
    static const auto instance =
        std::make_shared<ResourceBundle>(QStringLiteral(LABELCUT_BUNDLE_DIR), QLocale::c());
    return instance;
}

/// A host, its panel, and everything that a dialog does with them.
class Stage {
public:
    Stage(ppd::File file, Bytes& bytes)
        : mHost(std::make_shared<FakeHost>(std::move(file)))
        , mBytes(bytes) {
        if (bytes.flag())
            mHost->fakePrinter.uri = PMURL(bytes.string());
        if (bytes.below(4) != 3)
            ppd::markDefaults(ppd());
        choosePaper();
        mPanel.initWithCallback(mHost, bundle());
    }

    void play() {
        checkClaims();
        require(!mPanel.panelName().isEmpty(), "a panel has a name");
        QWidget* const view = mPanel.panelView();
        require(view != nullptr, "a panel has a view whatever the PPD holds");
        checkLooks(*view);
        mPanel.willShow();
        checkSent();
        mPanel.restoreValuesAndReturnError(nullptr);
        checkLooks(*view);
        for (int i = 0; i < kMostActs && !mBytes.atEnd(); ++i) {
            act(*view);
            checkSent();
        }
        checkLooks(*view);
        checkSaving();
        checkSummary();
        checkPrinting();
        checkPpdCalls();
    }

private:
    ppd_file_t* ppd() const { return mHost->ppd.get(); }

    void choosePaper() {
        if (mBytes.flag())
            mHost->format.choose(mBytes.string(), static_cast<double>(mBytes.below(2000)));
        else
            mHost->format.chosen.reset();
    }

    /// What was sent last for a keyword is what is marked, where the PPD has it.
    void checkSent() {
        std::map<QString, QString> latest;
        for (const test::Sent& sent : mHost->takeSent()) {
            const QString& key = sent.first;
            require(isPanelKey(key), "a panel sends its own keywords only");
            const bool isOffered = offers(ppd(), key, sent.second);
            // Automatic cut without a box of its own is written by name, whatever the PPD offers.
            require(isOffered || key == QLatin1String(keyword::kAutoCut),
                    "a panel sends choices that the PPD has");
            if (isOffered)
                latest[key] = sent.second;
        }
        for (const auto& [key, choice] : latest)
            require(markedName(ppd(), key.toUtf8().constData())
                            .compare(choice.toUtf8(), Qt::CaseInsensitive) == 0,
                    "what is marked is what the panel sent");
    }

    void checkClaims() {
        const QStringList keys = mPanel.supportedPPDOptionKeys().value_or(QStringList());
        checkSent();
        const bool hasCount = ppd::findOption(ppd(), keyword::kCutLabel) != nullptr;
        for (const QString& key : keys)
            require(ppd::findOption(ppd(), key.toLatin1().constData()) ||
                        (hasCount && key == QLatin1String(keyword::kAutoCut)),
                    "a panel claims keywords that the PPD has");
        require(QSet<QString>(keys.begin(), keys.end()).size() == keys.size(),
                "a panel claims a keyword once");
        require(mPanel.supportedPPDOptionKeys() == keys, "a panel claims the same again");
        require(mHost->sent.empty(), "asked again, a panel sends nothing");
    }

    /// Texts of a PPD are shown as they are, never as marked-up ones, and nothing leaves the view.
    void checkLooks(QWidget& view) {
        require(view.width() > 0 && view.width() < 8000 && view.height() > 0 &&
                    view.height() < 8000,
                "a view has a size that a screen can show");
        for (const QLabel* label : view.findChildren<QLabel*>()) {
            require(label->textFormat() == Qt::PlainText, "a label shows plain text");
            require(label->text().isValidUtf16(), "a label shows whole characters");
        }
        for (QCheckBox* box : view.findChildren<QCheckBox*>()) {
            const QString title = Button(box).title();
            require(title.isValidUtf16(), "a title has whole characters");
            require(box->text().count(u'&') == 2 * title.count(u'&') ||
                        box->text().count(u'&') == 2 * title.count(u'&') + 1,
                    "a title's ampersands are no mnemonics");
            if (!box->isHidden())
                require(view.rect().contains(box->geometry()), "a shown box lies in the view");
        }
        for (const QWidget* widget : view.findChildren<QWidget*>())
            require(!Qt::mightBeRichText(widget->toolTip()), "a tool tip is plain text");
    }

    void click(QWidget& view) {
        const QList<QCheckBox*> boxes = view.findChildren<QCheckBox*>();
        QCheckBox* const box = boxes.value(mBytes.below(static_cast<int>(boxes.size())));
        if (!box->isHidden() && box->isEnabled())
            box->click();
    }

    void choosePopUp(QWidget& view) {
        auto* const popUp = view.findChild<QComboBox*>();
        if (popUp->count() == 0)
            return;
        const int index = mBytes.below(popUp->count());
        popUp->setCurrentIndex(index);
        Q_EMIT popUp->activated(index);
    }

    void enterCount(QWidget& view) {
        auto* const field = view.findChild<QLineEdit*>(QStringLiteral("mCutEveryTxBx"));
        if (field->isHidden() || !field->isEnabled())
            return;
        field->selectAll();
        field->insert(mBytes.flag() ? QString::number(mBytes.below(120)) : mBytes.string());
        if (mBytes.flag())
            Q_EMIT field->returnPressed();
    }

    void step(QWidget& view) {
        auto* const stepper = view.findChild<Stepper*>();
        const int value = mBytes.flag() ? mBytes.below(120) : static_cast<int>(mBytes.word());
        if (!stepper->isHidden() && stepper->isEnabled())
            stepper->stepTo(value);
    }

    /// A choice of one of the panel's options, or of any keyword and choice.
    std::pair<QString, QString> anyPair() {
        if (mBytes.below(4) == 3)
            return {mBytes.string(), mBytes.string()};
        const auto rows = PanelUnderTest::rows();
        const auto& row =
            rows[static_cast<std::size_t>(mBytes.below(static_cast<int>(rows.size())))];
        const ppd_option_t* option = ppd::findOption(ppd(), row.keyword);
        if (!option || option->num_choices == 0)
            return {QLatin1String(row.keyword), QStringLiteral("ON")};
        const int index = mBytes.below(std::min(option->num_choices, 65536));
        return {QLatin1String(row.keyword), QString::fromUtf8(option->choices[index].choice)};
    }

    void changeFromOutside() {
        const auto [key, choice] = anyPair();
        if (ppd::markOption(ppd(), key.toUtf8().constData(), choice.toUtf8().constData()))
            mPanel.PPDOptionKeyValueDidChange(key, choice);
    }

    void notify() {
        const auto [key, choice] = anyPair();
        mPanel.PPDOptionKeyValueDidChange(mBytes.below(8) == 7 ? QString() : key,
                                          mBytes.below(8) == 7 ? QString() : choice);
    }

    void act(QWidget& view) {
        switch (mBytes.below(12)) {
        case 0:
        case 1:
        case 2:
            return click(view);
        case 3:
            return choosePopUp(view);
        case 4:
            return enterCount(view);
        case 5:
            return step(view);
        case 6:
            return changeFromOutside();
        case 7:
            return notify();
        case 8:
            mPanel.saveValuesAndReturnError(nullptr);
            return;
        case 9:
            mPanel.restoreValuesAndReturnError(nullptr);
            return;
        case 10:
            return choosePaper();
        default:
            ppd::unmarkOption(ppd(), anyPair().first.toUtf8().constData());
        }
    }

    void save() {
        mPanel.saveValuesAndReturnError(nullptr);
        checkSent();
    }

    void checkSaving() {
        save();
        const Settings saved = marksOf(ppd());
        save();
        require(marksOf(ppd()) == saved, "a second save changes nothing");

        mPanel.restoreValuesAndReturnError(nullptr);
        require(marksOf(ppd()) == saved && mHost->sent.empty(), "a restore marks nothing");
        save();
        const Settings restored = marksOf(ppd());
        mPanel.restoreValuesAndReturnError(nullptr);
        save();
        require(marksOf(ppd()) == restored, "a save after a restore changes nothing");
    }

    void checkSummary() {
        mPanel.restoreValuesAndReturnError(nullptr);
        const std::optional<QVariantMap> summary = mPanel.summaryInfo();
        require(summary.has_value(), "a panel has a summary");
        const QVariant order = summary->value(QLatin1String(kSummaryDisplayOrder));
        require(order.typeId() == QMetaType::QStringList, "a summary has an order");
        for (const QString& title : order.toStringList()) {
            require(title.isValidUtf16(), "a summary's title has whole characters");
            require(summary->contains(title), "a summary has a value for each of its titles");
        }
        for (auto entry = summary->begin(); entry != summary->end(); ++entry) {
            if (entry.key() == QLatin1String(kSummaryDisplayOrder))
                continue;
            require(entry->typeId() == QMetaType::QString, "a summary's value is a text");
            require(entry->toString().isValidUtf16(), "a summary's value has whole characters");
            require(order.toStringList().contains(entry.key()), "a summary shows all its values");
        }
        require(mHost->sent.empty(), "a summary marks nothing");
    }

    void checkPrinting() {
        require(mPanel.shouldPrint(), "a panel lets the user print");
        for (const auto& row : PanelUnderTest::rows()) {
            const PDEChoices& choices = mPanel.*row.choices;
            const bool hasDefault =
                choices && std::ranges::any_of(*choices, &PDEChoice::isDefaultChoice);
            require(!hasDefault || ppd::findMarkedChoice(ppd(), row.keyword),
                    "an option with a default is marked before printing");
        }
        checkSent();
    }

    void checkEmission() {
        QByteArray code;
        for (const ppd_section_t section : {PPD_ORDER_EXIT, PPD_ORDER_JCL, PPD_ORDER_PROLOG,
                                            PPD_ORDER_DOCUMENT, PPD_ORDER_ANY, PPD_ORDER_PAGE})
            code += ppd::emitSection(ppd(), section);
        code += ppd::emitJobControl(ppd(), "user", "title") + ppd::emitJobControlEnd(ppd());
        for (const auto& row : PanelUnderTest::rows()) {
            const ppd_choice_t* choice = ppd::findMarkedChoice(ppd(), row.keyword);
            if (!choice || choice->option->section == PPD_ORDER_JCL ||
                choice->option->section == PPD_ORDER_EXIT)
                continue;
            const QByteArray keyword = choice->option->keyword;
            const bool isCustom = qstrcmp(choice->choice, "Custom") == 0;
            const QByteArray feature =
                isCustom ? "*Custom" + keyword + " True" : '*' + keyword + ' ' + choice->choice;
            require(code.contains("%%BeginFeature: " + feature + '\n'),
                    "a marked choice's code reaches the job");
        }
    }

    void checkConflicts() {
        const auto conflicts = ppd::conflictingSettings(ppd());
        require(conflicts.empty() == (ppd::conflicts(ppd()) == 0),
                "conflicts are named when there are some");
        const auto rows = PanelUnderTest::rows();
        for (const auto& row : rows.first(3))
            proposeResolution(ppd(), {QLatin1String(row.keyword), QStringLiteral("ON")});
    }

    void checkCustomValues() {
        for (const ppd_choice_t* choice : marksOf(ppd())) {
            const QByteArray keyword = choice->option->keyword;
            require(ppd::markedValue(ppd(), keyword.constData()).has_value(),
                    "what is marked has a value");
            ppd::customParameters(ppd(), keyword.constData());
        }
        HostPaper::fromMarkedPageSize(ppd());
    }

    void checkPpdCalls() {
        const Settings before = marksOf(ppd());
        checkConflicts();
        require(marksOf(ppd()) == before, "looking for conflicts changes no mark");
        checkEmission();
        checkCustomValues();
        const QStringList keys = mPanel.supportedPPDOptionKeys().value_or(QStringList());
        for (const Setting& setting : jobSettings(ppd(), keys, {}))
            require(ppd::findOption(ppd(), setting.keyword.toUtf8().constData()) != nullptr,
                    "a job names options that the PPD has");
        LineCount lines;
        _PDELog_ppd_option_t(ppd(), keyword::kHalfCut);
        require(lines.count == 0 || lines.count == 13, "an option is logged in thirteen lines");
        require(marksOf(ppd()) == before, "reading a PPD changes no mark");
    }

    std::shared_ptr<FakeHost> mHost;
    Bytes& mBytes;
    PanelUnderTest mPanel;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::application();
    Bytes bytes(data, size);
    static fuzz::MemoryFile file;
    file.set(bytes.head());
    ppd::OpenError error;
    ppd::File ppd = ppd::openFile(file.path(), &error);
    if (!ppd) {
        require(!error.reason.isEmpty(), "a PPD that cannot be opened says why");
        return 0;
    }
    Stage(std::move(ppd), bytes).play();
    return 0;
}
