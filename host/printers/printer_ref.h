// Printers: what names one.
#pragma once

#include <QString>

#include <variant>

namespace labelcut {

/// A queue of the print service.
struct QueueRef {
    QString name;
    bool operator==(const QueueRef&) const = default;
};

/// A printer without a queue, known by its PPD alone: jobs for it become files.
struct PpdFileRef {
    /// Absolute.
    QString path;
    bool operator==(const PpdFileRef&) const = default;
};

using PrinterRef = std::variant<QueueRef, PpdFileRef>;

/// The queue's name; null when the printer is none.
inline const QString* queueName(const PrinterRef& printer) {
    const auto* queue = std::get_if<QueueRef>(&printer);
    return queue ? &queue->name : nullptr;
}

/// The PPD's path; null when the printer is not known by its PPD alone.
inline const QString* ppdPath(const PrinterRef& printer) {
    const auto* file = std::get_if<PpdFileRef>(&printer);
    return file ? &file->path : nullptr;
}

} // namespace labelcut
