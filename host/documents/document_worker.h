// Documents: the worker, a program of ours that reads them in a cage, and what it answers.
//
// Whatever a document does to who reads it, it does to the worker: that is stopped, and told in one
// sentence.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <chrono>
#include <memory>
#include <optional>
#include <vector>

#include "host/core/call_limits.h"
#include "host/core/result.h"
#include "worker/protocol/message.h"

namespace labelcut {

/// Which of its readers a worker is.
enum class DocumentReader { PDF, Drawing, Pages, Ghostscript };

/// What a worker is asked about.
struct WorkerTask {
    /// What the user calls the document, for sentences.
    QString about;
    /// What the request comes with; borrowed.
    std::vector<int> descriptors;
    /// Path of the file that the worker writes, or of the folder that it writes files in; as long
    /// as that grows it is at work. Empty: it writes nothing.
    QString target;
    /// Borrowed; may be null. The worker is gone soon after it is set.
    const CancelFlag* cancel = nullptr;
    /// What the user calls the files of Failed.file; may be empty.
    QStringList files = {};
};

/// A running worker; it ends with this object. Belongs to the thread that started it.
class DocumentWorker {
public:
    /// Starts one and does not wait for it.
    /// @param program  absolute path of the worker.
    /// @param patience  for how long it may make no progress.
    /// @return the failure is a sentence: it cannot be started.
    static Result<DocumentWorker> start(DocumentReader reader,
                                        const QString& program = installedProgram(),
                                        std::chrono::milliseconds patience = kPatience);
    /// Where the worker lies: as it was installed, wherever that tree is by now; in a build folder.
    static QString installedProgram();
    static constexpr std::chrono::minutes kPatience{2};

    /// Asks and waits for the answer, no Progress and no Failed: that becomes a sentence, as do a
    /// crash, a limit of the cage, and a worker that makes no progress. After a failure of these
    /// three kinds, and after Cancelled, the worker is gone.
    Result<worker::Answer> ask(const worker::Request& request, const WorkerTask& task);

    /// Asks a Ghostscript reader and waits for its end.
    /// @return what Ghostscript said; the failure is a sentence with its reason.
    Result<QByteArray> run(const worker::Interpret& request, const WorkerTask& task);

    DocumentWorker(DocumentWorker&&) noexcept;
    DocumentWorker& operator=(DocumentWorker&&) noexcept;
    ~DocumentWorker();

private:
    struct Process;
    explicit DocumentWorker(std::unique_ptr<Process> process);

    /// The next answer that is no Progress; nothing when the worker has ended by itself.
    Result<std::optional<worker::Answer>> nextAnswer(const WorkerTask& task);

    std::unique_ptr<Process> mProcess;
};

} // namespace labelcut
