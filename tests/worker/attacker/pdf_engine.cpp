// In the place of the library that reads PDF files: does what a document asks for.
#include "worker/pdf/pdf_engine.h"

#include "tests/worker/attacker/attack.h"
#include "worker/kinds/document_kind.h"

namespace labelcut::worker {

namespace {

class AttackingEngine : public PdfEngine {
public:
    Answer open(Descriptor document, const Step&) override {
        mDocument = contentOf(document.number());
        if (mDocument.find("\nfill") != std::string::npos)
            return Opened{1, true, false, true}; // a repaired file is written anew
        return Failed{Problem::Broken, test::carryOutDeed(mDocument, -1), 0};
    }
    Answer join(const Join&, Descriptor target, const Step&) override {
        return Failed{Problem::NotWritten, test::carryOutDeed(mDocument, target.number()), 0};
    }
    Answer measure(Descriptor target, const Step&) override {
        return Failed{Problem::NotWritten, test::carryOutDeed(mDocument, target.number()), 0};
    }

private:
    std::string mDocument;
};

} // namespace

} // namespace labelcut::worker

extern "C" __attribute__((visibility("default"))) labelcut::worker::PdfEngine* labelcutPdfEngine() {
    static labelcut::worker::AttackingEngine engine;
    return &engine;
}
