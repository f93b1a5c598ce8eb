// Toolkit: loads interface files, Qt Designer files with a few conventions of ours.
#include "platform/toolkit/interface_file.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QEvent>
#include <QFile>
#include <QLineEdit>
#include <QUiLoader>

#include "platform/toolkit/check_box.h"
#include "platform/toolkit/handles.h"
#include "platform/toolkit/notification_centre.h"
#include "platform/toolkit/picture.h"
#include "platform/toolkit/points.h"
#include "platform/toolkit/stepper.h"

namespace labelcut {

namespace {

/// The loader would load every designer plug-in of the library paths when it is constructed.
class NoLibraryPaths {
public:
    NoLibraryPaths()
        : mPaths(QCoreApplication::libraryPaths()) {
        QCoreApplication::setLibraryPaths({});
    }
    ~NoLibraryPaths() { QCoreApplication::setLibraryPaths(mPaths); }
    NoLibraryPaths(const NoLibraryPaths&) = delete;
    NoLibraryPaths& operator=(const NoLibraryPaths&) = delete;

private:
    QStringList mPaths;
};

class Loader : public QUiLoader {
public:
    explicit Loader(const WidgetFactories& factories)
        : mFactories(factories) {}

    QWidget* createWidget(const QString& className, QWidget* parent, const QString& name) override {
        QWidget* widget = create(className, parent);
        if (!widget)
            return QUiLoader::createWidget(className, parent, name);
        widget->setObjectName(name);
        return widget;
    }

private:
    QWidget* create(const QString& className, QWidget* parent) const {
        if (const auto found = mFactories.find(className); found != mFactories.end())
            return found->second(parent);
        if (className == QLatin1String("QCheckBox"))
            return new CheckBox(parent);
        if (className == QLatin1String("Stepper"))
            return new Stepper(parent);
        return nullptr;
    }

    const WidgetFactories& mFactories;
};

/// Announces that a view's visible area changed.
class TrackingAreaWatcher : public QObject {
public:
    explicit TrackingAreaWatcher(QWidget* view)
        : QObject(view) {
        view->installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        const QEvent::Type type = event->type();
        if (type == QEvent::Show || type == QEvent::Move || type == QEvent::Resize)
            NotificationCentre::defaultCentre().post(QLatin1String(kViewDidUpdateTrackingAreas),
                                                     QVariant::fromValue(watched));
        return QObject::eventFilter(watched, event);
    }
};

QString textFor(const QWidget& widget, const char* property, const PDEBundle& bundle) {
    const QString key = widget.property(property).toString();
    return key.isEmpty() ? QString() : bundle.localizedStringForKey(key);
}

void dressComboBox(QComboBox& box, const PDEBundle& bundle) {
    const QStringList tags = box.property("entryTags").toStringList();
    const QStringList pictures = box.property("entryPictures").toStringList();
    const QStringList keys = box.property("entryAccessibleKeys").toStringList();
    for (int i = 0; i < box.count(); ++i) {
        if (i < tags.size())
            box.setItemData(i, tags[i].toInt(), PopUpButton::kTagRole);
        if (i < pictures.size())
            box.setItemIcon(
                i, iconFromPicture(Picture::fromFile(bundle.pathForImageResource(pictures[i]))));
        if (i >= keys.size())
            continue;
        const QString text = bundle.localizedStringForKey(keys[i]);
        box.setItemData(i, text, Qt::AccessibleTextRole);
        box.setItemData(i, text, Qt::ToolTipRole);
    }
    if (keys.isEmpty())
        return;
    // What is selected is read from its title, which may be empty.
    const auto describeSelected = [&box] {
        box.setAccessibleDescription(box.currentData(Qt::AccessibleTextRole).toString());
    };
    QObject::connect(&box, &QComboBox::currentIndexChanged, &box, describeSelected);
    describeSelected();
}

void dressStepper(Stepper& stepper, QWidget& root, const PDEBundle& bundle) {
    stepper.setArrowNames(textFor(stepper, "upNameKey", bundle),
                          textFor(stepper, "downNameKey", bundle));
    stepper.setField(root.findChild<QLineEdit*>(stepper.property("field").toString()));
}

void dress(QWidget& root, const PDEBundle& bundle) {
    for (QWidget* widget : root.findChildren<QWidget*>()) {
        if (const QString name = textFor(*widget, "accessibleNameKey", bundle); !name.isEmpty())
            widget->setAccessibleName(name);
        if (const QString text = textFor(*widget, "accessibleDescriptionKey", bundle);
            !text.isEmpty())
            widget->setAccessibleDescription(text);
        if (auto* box = qobject_cast<QComboBox*>(widget))
            dressComboBox(*box, bundle);
        if (auto* stepper = qobject_cast<Stepper*>(widget))
            dressStepper(*stepper, root, bundle);
    }
}

/// Whether this looks like a whole file with a widget in it; the loader prints a warning about
/// anything else. To be sure would mean to parse it twice, which takes as long as loading it.
bool holdsWidget(const QByteArray& bytes) {
    const QByteArray text = bytes.trimmed();
    const bool isClosed = text.contains("</widget>") || text.contains("/>");
    return text.contains("<ui ") && text.contains("<widget ") && isClosed && text.endsWith("</ui>");
}

} // namespace

std::unique_ptr<QWidget> loadInterfaceFile(const QString& path, const PDEBundle& bundle,
                                           const WidgetFactories& factories) {
    QFile file(path);
    if (path.isEmpty() || !file.open(QIODevice::ReadOnly) || !holdsWidget(file.readAll()) ||
        !file.seek(0))
        return nullptr;
    std::unique_ptr<QWidget> root;
    {
        const NoLibraryPaths guard;
        Loader loader(factories);
        root.reset(loader.load(&file));
    }
    if (!root)
        return nullptr;
    root->ensurePolished();
    dress(*root, bundle);
    const double scale = points::scaleForFont(*root);
    points::adopt(*root, scale);
    for (QComboBox* box : root->findChildren<QComboBox*>())
        box->setIconSize((QSizeF(box->iconSize()) * scale).toSize());
    new TrackingAreaWatcher(root.get());
    return root;
}

} // namespace labelcut
