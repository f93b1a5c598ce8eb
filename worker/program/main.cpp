// Worker: the program that reads documents, in a cage.
//
// Labelcut starts it beside itself, once for the documents of a job, and asks it over a pair of
// sockets (worker/protocol). It is told which of its readers it is, loads what that one takes,
// closes the cage and only then looks at what it was given. It does not outlive who started it.
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <utility>

#include "worker/cage/cage.h"
#include "worker/drawing/drawing.h"
#include "worker/kinds/document_kind.h"
#include "worker/pages/page_renderer.h"
#include "worker/pdf/pdf_engine.h"
#include "worker/program/ghostscript.h"
#include "worker/protocol/channel.h"
#include "worker/protocol/message.h"

namespace labelcut::worker {

namespace {

void answer(const Answer& answer) {
    sendPacket(kWorkersEnd, encode(answer));
}

/// What a process says that has no memory left. Made at the first call, while there is some.
const std::string& farewellWithoutMemory() {
    static const std::string farewell = encode(Answer(Failed{Problem::OutOfMemory, {}}));
    return farewell;
}

void endWithoutMemory() {
    sendPacket(kWorkersEnd, farewellWithoutMemory());
    _exit(EXIT_FAILURE);
}

/// Tells progress, but not more often than somebody could want to know.
void step() {
    using Clock = std::chrono::steady_clock;
    static Clock::time_point last;
    const Clock::time_point now = Clock::now();
    if (now - last < std::chrono::milliseconds(100))
        return;
    last = now;
    answer(Progress());
}

/// One way of reading documents.
class Reader {
public:
    Reader() = default;
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;
    virtual ~Reader() = default;

    /// Before the cage. @return whether what it takes is there.
    virtual std::optional<Failed> prepare() { return std::nullopt; }
    /// Nothing when the cage is closed with the request, when more is known.
    virtual std::optional<Cage> cage() const { return Cage(); }
    virtual Answer carryOut(const Request& request, std::vector<Descriptor> descriptors) = 0;
};

/// What `function` of the library beside this program gives; null, and `failed` says why.
template<typename Function>
auto load(const char* library, const char* function, Failed& failed)
    -> decltype(std::declval<Function>()()) {
    std::string path(4096, '\0');
    const ssize_t size = readlink("/proc/self/exe", path.data(), path.size());
    path.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
    path.erase(path.rfind('/') + 1) += library;
    void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    void* found = handle ? dlsym(handle, function) : nullptr;
    if (found)
        return reinterpret_cast<Function>(found)();
    failed = {Problem::ModuleMissing, dlerror()};
    return nullptr;
}

/// PDF files; of others it tells the kind. It opens nothing.
class PdfReader : public Reader {
public:
    std::optional<Failed> prepare() override {
        Failed failed;
        mEngine = load<PdfEngineFunction>("pdf_engine.so", kPdfEngineFunction, failed);
        return mEngine ? std::nullopt : std::optional(failed);
    }

    Answer carryOut(const Request& request, std::vector<Descriptor> descriptors) override {
        if (descriptors.size() != 1)
            return Failed{};
        if (const auto* join = std::get_if<Join>(&request))
            return mEngine->join(*join, std::move(descriptors[0]), step);
        if (std::holds_alternative<Measure>(request))
            return mEngine->measure(std::move(descriptors[0]), step);
        if (!std::holds_alternative<Open>(request))
            return Failed{};
        const Answer kind = documentKind(descriptors[0].number());
        const auto* known = std::get_if<Kind>(&kind);
        if (!known || known->kind != DocumentKind::PDF)
            return kind;
        return mEngine->open(std::move(descriptors[0]), step);
    }

private:
    PdfEngine* mEngine = nullptr;
};

/// What is drawn; it opens fonts and libraries.
class DrawingReader : public Reader {
public:
    std::optional<Failed> prepare() override {
        Failed failed;
        mDrawing = load<DrawingFunction>("drawing.so", kDrawingFunction, failed);
        if (!mDrawing)
            return failed;
        mDrawing->prepare();
        return std::nullopt;
    }

    std::optional<Cage> cage() const override {
        Cage cage;
        cage.readable = libraryFolders();
        // Qt converts large pictures by several at a time.
        cage.hasThreads = true;
        return cage;
    }

    Answer carryOut(const Request& request, std::vector<Descriptor> descriptors) override {
        const auto* draw = std::get_if<Draw>(&request);
        if (!draw || descriptors.size() != 2)
            return Failed{};
        return mDrawing->draw(*draw, std::move(descriptors[0]), std::move(descriptors[1]), step);
    }

private:
    Drawing* mDrawing = nullptr;
};

/// PostScript, and PDF that becomes PostScript.
class GhostscriptReader : public Reader {
public:
    std::optional<Cage> cage() const override { return std::nullopt; }

    Answer carryOut(const Request& request, std::vector<Descriptor> descriptors) override {
        const auto* wanted = std::get_if<Interpret>(&request);
        if (!wanted || descriptors.size() != 1)
            return Failed{};
        return interpret(*wanted, descriptors[0]);
    }
};

/// Pictures of the pages of PDF files; it opens fonts and libraries.
class PagesReader : public Reader {
public:
    std::optional<Failed> prepare() override {
        Failed failed;
        mRenderer = load<PageRendererFunction>("pages.so", kPageRendererFunction, failed);
        return mRenderer ? std::nullopt : std::optional(failed);
    }

    std::optional<Cage> cage() const override {
        Cage cage;
        cage.readable = libraryFolders();
        return cage;
    }

    Answer carryOut(const Request& request, std::vector<Descriptor> descriptors) override {
        if (descriptors.size() != 1)
            return Failed{};
        if (const auto* render = std::get_if<Render>(&request))
            return mRenderer->render(*render, std::move(descriptors[0]));
        if (std::holds_alternative<Show>(request))
            return mRenderer->show(std::move(descriptors[0]));
        return Failed{};
    }

private:
    PageRenderer* mRenderer = nullptr;
};

std::unique_ptr<Reader> readerNamed(std::string_view name) {
    if (name == "pdf")
        return std::make_unique<PdfReader>();
    if (name == "drawing")
        return std::make_unique<DrawingReader>();
    if (name == "pages")
        return std::make_unique<PagesReader>();
    if (name == "ghostscript")
        return std::make_unique<GhostscriptReader>();
    return nullptr;
}

/// The kernel ends this process with the one that started it, which may be gone before that was
/// asked for.
void dieWith(pid_t parent) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent)
        _exit(EXIT_FAILURE);
}

std::optional<Failed> prepare(Reader& reader) {
    if (auto failed = reader.prepare())
        return failed;
    const auto cage = reader.cage();
    const auto refusal = cage ? closeCage(*cage) : std::nullopt;
    if (!refusal)
        return std::nullopt;
    return Failed{Problem::NoCage, *refusal};
}

/// Until the other side is gone, or says what no request is.
void serve(Reader& reader, const std::optional<Failed>& hindrance) {
    for (;;) {
        Packet packet;
        if (receivePacket(kWorkersEnd, true, packet) != Reception::Packet)
            return;
        const auto request = decodeRequest(packet.bytes);
        if (!request)
            return;
        answer(hindrance ? Answer(*hindrance)
                         : reader.carryOut(*request, std::move(packet.descriptors)));
    }
}

} // namespace

} // namespace labelcut::worker

int main(int argc, char** argv) {
    using namespace labelcut::worker;
    const auto reader = argc == 3 ? readerNamed(argv[1]) : nullptr;
    if (!reader) {
        std::fputs("labelcut starts this program by itself, to read documents.\n", stderr);
        return 2;
    }
    dieWith(static_cast<pid_t>(std::strtol(argv[2], nullptr, 10)));
    // Whatever else came along from who started it is not for documents, and a program that this
    // one becomes gives no answers.
    fcntl(kWorkersEnd, F_SETFD, FD_CLOEXEC);
    syscall(SYS_close_range, kWorkersEnd + 1, ~0U, 0);
    farewellWithoutMemory();
    std::set_new_handler(endWithoutMemory);
    serve(*reader, prepare(*reader));
    // Taking apart what was read could fail in its turn, and takes its time.
    _exit(EXIT_SUCCESS);
}
