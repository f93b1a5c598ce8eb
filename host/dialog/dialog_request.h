// The dialog: what it opens with.
#pragma once

#include <functional>

#include "host/dialog/job_model.h"

namespace labelcut {

/// At most one of `queue` and `ppdPath` is given.
struct DialogRequest {
    QStringList files;
    /// Name of a queue; empty: the one used last, or the service's default.
    QString queue;
    /// Path of a PPD given by hand; empty: none.
    QString ppdPath;
    /// Choices beyond the defaults.
    Settings choices;
    int copies = 1;
    PageSelection pages;
    /// Told as well when the queue or PPD above cannot be opened, for whoever started the program;
    /// may be empty.
    std::function<void(const QString& sentence)> complain;
};

} // namespace labelcut
