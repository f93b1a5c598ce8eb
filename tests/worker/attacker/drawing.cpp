// In the place of the library that draws: does what a document asks for.
#include "worker/drawing/drawing.h"

#include "tests/worker/attacker/attack.h"
#include "worker/kinds/document_kind.h"

namespace labelcut::worker {

namespace {

class AttackingDrawing : public Drawing {
public:
    void prepare() override {}
    Answer draw(const Draw&, Descriptor document, Descriptor target, const Step&) override {
        return Failed{Problem::NotWritten,
                      test::carryOutDeed(contentOf(document.number()), target.number()), 0};
    }
};

} // namespace

} // namespace labelcut::worker

extern "C" __attribute__((visibility("default"))) labelcut::worker::Drawing* labelcutDrawing() {
    static labelcut::worker::AttackingDrawing drawing;
    return &drawing;
}
