// Input fields: what an interface file can ask for.
#include "plugins/cut_options/fields/interface_fields.h"

#include "plugins/cut_options/fields/pde_formatter.h"
#include "plugins/cut_options/fields/pde_text_field.h"
#include "plugins/cut_options/fields/vetted_edit.h"

#include <QVariant>

#include <optional>
#include <utility>

// Builds of several versions rename the class by macros, which reach into no literal.
#define LABELCUT_QUOTED(name) #name
#define LABELCUT_NAME(name) LABELCUT_QUOTED(name)

namespace labelcut {

namespace {

std::optional<std::int32_t> number(const QLineEdit* field, const char* property) {
    bool isNumber = false;
    const std::int32_t value = field->property(property).toInt(&isNumber);
    return isNumber ? std::optional(value) : std::nullopt;
}

/// The formatter that the field's properties describe, or null when they ask for none.
std::unique_ptr<PDEFormatter> describedFormatter(const QLineEdit* field) {
    const auto style = number(field, "formatterStyle");
    if (!style)
        return nullptr;
    const QVariant format = field->property("formatterFormat");
    auto formatter = PDEFormatter::initWithFormatString(
        format.isValid() ? std::optional(format.toString()) : std::nullopt, *style);
    if (const auto bound = number(field, "formatterMinValue"))
        formatter->setMinValue(*bound);
    if (const auto bound = number(field, "formatterMaxValue"))
        formatter->setMaxValue(*bound);
    if (const auto bytes = number(field, "formatterMaxLength"))
        formatter->setMaxLength(*bytes);
    return formatter;
}

void attachDescribedFormatter(QLineEdit* field) {
    if (auto formatter = describedFormatter(field))
        attachFormatter(field, std::move(formatter));
}

} // namespace

QString textFieldClassName() {
    return QStringLiteral(LABELCUT_NAME(PDETextField13_v400_));
}

QLineEdit* createTextField(QWidget* parent) {
    return new PDETextField13_v400_(parent);
}

void attachFormatters(QWidget* root) {
    if (!root)
        return;
    if (auto* field = qobject_cast<QLineEdit*>(root))
        attachDescribedFormatter(field);
    for (QLineEdit* field : root->findChildren<QLineEdit*>())
        attachDescribedFormatter(field);
}

void setTextDelegate(QLineEdit* field, QObject* delegate,
                     std::function<void(QLineEdit*)> controlTextDidChange) {
    if (!field)
        return;
    const QVariant tells = field->property("tellsDelegate");
    if (tells.isValid() && !tells.toBool())
        return;
    QObject::connect(field, &QLineEdit::textEdited, delegate,
                     [field, tell = std::move(controlTextDidChange)] { tell(field); });
}

} // namespace labelcut
