// In the place of the library that draws pages: does what a document asks for, at every page, or at
// those that its third line names; any other becomes grey, darker from one picture to the next.
#include <sys/mman.h>
#include <unistd.h>

#include <cstring>
#include <sstream>
#include <string>

#include "tests/worker/attacker/attack.h"
#include "worker/kinds/document_kind.h"
#include "worker/pages/page_renderer.h"

namespace labelcut::worker {

namespace {

class AttackingRenderer : public PageRenderer {
public:
    Answer show(Descriptor document) override {
        mDocument = contentOf(document.number());
        return Shown{kMostPages};
    }
    Answer render(const Render& request, Descriptor target) override {
        if (isAttackedAt(request.page))
            return attack(target);
        const std::size_t size = std::size_t{kBytesOfPixel} * request.width * request.height;
        void* pixels = mmap(nullptr, size, PROT_WRITE, MAP_SHARED, target.number(), 0);
        std::memset(pixels, --mGrey, size);
        munmap(pixels, size);
        return Drawn();
    }

private:
    /// Beside the deeds that every reader may try, those that only this one can.
    Answer attack(const Descriptor& target) const {
        if (asksFor("answer-wrongly"))
            return Done();
        if (asksFor("shorten") && ftruncate(target.number(), 1) == 0)
            return Drawn();
        return Failed{Problem::NotWritten, test::carryOutDeed(mDocument, target.number()), 0};
    }
    bool asksFor(const std::string& deed) const {
        return mDocument.find('\n' + deed + '\n') != std::string::npos;
    }
    bool isAttackedAt(std::uint32_t page) const {
        std::istringstream lines(mDocument);
        std::string line;
        for (int skipped = 0; skipped < 3; ++skipped)
            std::getline(lines, line);
        if (line.empty())
            return true;
        std::istringstream pages(line);
        for (std::uint32_t named = 0; pages >> named;) {
            if (named == page)
                return true;
        }
        return false;
    }

    std::string mDocument;
    int mGrey = 255;
};

} // namespace

} // namespace labelcut::worker

extern "C" __attribute__((visibility("default"))) labelcut::worker::PageRenderer*
labelcutPageRenderer() {
    static labelcut::worker::AttackingRenderer renderer;
    return &renderer;
}
