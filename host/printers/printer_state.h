// Printers: how a queue is doing, and what that means for a job, in words.
#pragma once

#include <QString>

#include "host/service/cups_connection.h"

namespace labelcut {

/// Whole sentences in plain text: the state with its consequence, then the printer's reasons, then
/// what it says itself. Never empty: an idle queue without reasons is "Ready."
QString stateSentence(const Queue& queue);

/// The same without that it prints: what is in the way of a queue that needs attention. Empty for
/// one that is ready.
QString troubleSentence(const Queue& queue);

/// Whether somebody has to do something before a job comes out: the queue is paused or takes no
/// jobs, or one of its reasons is an error.
bool needsAttention(const Queue& queue);

/// One "printer-state-reasons" keyword ("media-empty-error") for people, without a full stop; an
/// unknown one is made readable.
QString reasonText(const QString& reason);

/// What to say of a queue that was chosen and is no longer there.
QString goneSentence(const QString& name);

} // namespace labelcut
