// Toolkit: loads interface files, Qt Designer files with a few conventions of ours.
//
//  - Every direct child of the top widget is placed by its geometry, in points.
//  - A QCheckBox becomes our CheckBox, a widget of class "Stepper" our Stepper; more classes may be
//    offered by the caller.
//  - A QComboBox with the dynamic property "entryTags" (list of strings, one per entry) gives its
//    entries these tags, "entryPictures" (list of picture names) these pictures from the bundle,
//    and "entryAccessibleKeys" (list of string-table keys) these texts for screen readers; the
//    selected entry's text then is the pop-up's accessible description.
//  - The dynamic properties "accessibleNameKey", "accessibleDescriptionKey", and on a Stepper
//    "upNameKey" and "downNameKey", are string-table keys of the texts for screen readers.
//  - A Stepper's dynamic property "field" names the text field that sends it arrow keys.
//  - Texts bear notr="true"; any other is replaced where a translation of the host's has the same.
#pragma once

#include <QString>
#include <QWidget>

#include <functional>
#include <map>
#include <memory>

#include "platform/dialog/pde_bundle.h"

namespace labelcut {

/// Makes a widget of a class that the toolkit does not know.
using WidgetFactory = std::function<QWidget*(QWidget* parent)>;
using WidgetFactories = std::map<QString, WidgetFactory>;

/// Posted to the default notification centre, with the loaded top widget as object (QWidget*),
/// whenever that widget has been shown, moved or resized.
inline constexpr char kViewDidUpdateTrackingAreas[] = "NSViewDidUpdateTrackingAreasNotification";

/// Loads the interface file at `path`.
/// @param bundle     where pictures and texts come from.
/// @param factories  further classes, by the class name that the file gives.
/// @return the top widget, without a parent and hidden; null when there is no such file or it is
///         not an interface file.
std::unique_ptr<QWidget> loadInterfaceFile(const QString& path, const PDEBundle& bundle,
                                           const WidgetFactories& factories = {});

} // namespace labelcut
