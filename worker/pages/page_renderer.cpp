// Worker: pictures of the pages of PDF files, by Poppler.
#include "worker/pages/page_renderer.h"

#include <poppler-document.h>
#include <poppler-global.h>
#include <poppler-image.h>
#include <poppler-page-renderer.h>
#include <poppler-page.h>

#include <sys/mman.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cstring>
#include <memory>
#include <string>
#include <utility>

namespace labelcut::worker {

namespace {

/// A label has less text. Poppler's time for words grows with their square, that for plain text
/// does not. UTF-16 units.
constexpr std::size_t kMostText = 10'000;

/// A page without area is blank. Points.
constexpr double kSmallest = 1e-6;

/// A file in memory, whole.
class Mapping {
public:
    Mapping() = default;
    /// @param protection  of mmap(). Empty when the system refuses, and for an empty file.
    Mapping(const Descriptor& file, int protection) {
        struct stat info {};
        if (fstat(file.number(), &info) != 0 || info.st_size <= 0)
            return;
        const auto size = static_cast<std::size_t>(info.st_size);
        void* bytes = mmap(nullptr, size, protection, MAP_SHARED, file.number(), 0);
        if (bytes == MAP_FAILED)
            return;
        mBytes = static_cast<char*>(bytes);
        mSize = size;
    }
    Mapping(Mapping&& other) noexcept
        : mBytes(std::exchange(other.mBytes, nullptr))
        , mSize(std::exchange(other.mSize, 0)) {}
    Mapping& operator=(Mapping&& other) noexcept {
        std::swap(mBytes, other.mBytes);
        std::swap(mSize, other.mSize);
        return *this;
    }
    Mapping(const Mapping&) = delete;
    Mapping& operator=(const Mapping&) = delete;
    ~Mapping() {
        if (mBytes)
            munmap(mBytes, mSize);
    }

    char* bytes() const { return mBytes; }
    std::size_t size() const { return mSize; }

private:
    char* mBytes = nullptr;
    std::size_t mSize = 0;
};

/// Points.
struct Size {
    double width = 0;
    double height = 0;
};

/// The page's measure as it is shown, but for its unit, which cancels out.
Size shownSize(const poppler::page& page) {
    const poppler::rectf box = page.page_rect(poppler::crop_box);
    const poppler::page::orientation_enum orientation = page.orientation();
    const bool isTurned =
        orientation == poppler::page::landscape || orientation == poppler::page::seascape;
    return isTurned ? Size{box.height(), box.width()} : Size{box.width(), box.height()};
}

/// The picture of a page that fills `request`'s measure; null when there is no memory for it.
poppler::image picture(const poppler::page& page, const Size& size, const Render& request) {
    constexpr double kPointsPerInch = 72;
    poppler::page_renderer renderer;
    renderer.set_image_format(poppler::image::format_argb32);
    renderer.set_render_hints(poppler::page_renderer::antialiasing |
                              poppler::page_renderer::text_antialiasing);
    const auto width = static_cast<int>(request.width);
    const auto height = static_cast<int>(request.height);
    return renderer.render_page(&page, width * kPointsPerInch / size.width,
                                height * kPointsPerInch / size.height, 0, 0, width, height);
}

/// The direction of most words; of those that are as many, the first of the enumeration.
TextDirection textDirection(const poppler::page& page) {
    if (page.text({}, poppler::page::raw_order_layout).size() > kMostText)
        return TextDirection::None;
    // By quarters of a turn, clockwise.
    std::array<int, 4> words{};
    for (const poppler::text_box& word : page.text_list())
        ++words[static_cast<unsigned>(word.rotation()) % words.size()];
    const int along = words[0] + words[2];
    const int across = std::max(words[1], words[3]);
    if (along == 0 && across == 0)
        return TextDirection::None;
    if (across <= along)
        return TextDirection::AlongWidth;
    return words[1] >= words[3] ? TextDirection::Downwards : TextDirection::Upwards;
}

class Renderer : public PageRenderer {
public:
    Renderer() {
        // What Poppler thinks of a document is for nobody.
        poppler::set_debug_error_function([](const std::string&, void*) {}, nullptr);
    }

    Answer show(Descriptor document) override {
        mDocument.reset();
        mFile = Mapping(document, PROT_READ);
        if (!mFile.bytes() || mFile.size() > INT_MAX)
            return Failed{Problem::Broken, {}, 0};
        mDocument.reset(
            poppler::document::load_from_raw_data(mFile.bytes(), static_cast<int>(mFile.size())));
        if (!mDocument)
            return Failed{Problem::Broken, {}, 0};
        const auto failed = problemOf(*mDocument);
        if (!failed)
            return Shown{static_cast<std::uint32_t>(mDocument->pages())};
        mDocument.reset();
        return *failed;
    }

    Answer render(const Render& request, Descriptor target) override {
        if (!mDocument || request.page > static_cast<std::uint32_t>(mDocument->pages()))
            return Failed{};
        const Mapping pixels(target, PROT_READ | PROT_WRITE);
        if (pixels.size() != std::size_t{kBytesOfPixel} * request.width * request.height)
            return Failed{};
        const std::unique_ptr<poppler::page> page(
            mDocument->create_page(static_cast<int>(request.page) - 1));
        if (!page)
            return Failed{Problem::Broken, {}, 0};
        return draw(*page, request, pixels);
    }

private:
    static std::optional<Failed> problemOf(const poppler::document& document) {
        if (document.is_locked())
            return Failed{Problem::Encrypted, {}, 0};
        if (document.pages() < 1)
            return Failed{Problem::WithoutPages, {}, 0};
        if (static_cast<std::uint32_t>(document.pages()) > kMostPages)
            return Failed{Problem::TooManyPages, {}, 0};
        return std::nullopt;
    }

    static Answer draw(const poppler::page& page, const Render& request, const Mapping& pixels) {
        const Size size = shownSize(page);
        if (!(size.width > kSmallest && size.height > kSmallest)) {
            constexpr int kWhite = 0xff;
            std::memset(pixels.bytes(), kWhite, pixels.size());
            return Drawn();
        }
        const poppler::image image = picture(page, size, request);
        const std::size_t row = std::size_t{kBytesOfPixel} * request.width;
        if (!image.is_valid() || image.width() != static_cast<int>(request.width) ||
            image.height() != static_cast<int>(request.height))
            return Failed{Problem::OutOfMemory, {}, 0};
        for (std::size_t y = 0; y < request.height; ++y)
            std::memcpy(pixels.bytes() + y * row,
                        image.const_data() + y * static_cast<std::size_t>(image.bytes_per_row()),
                        row);
        return Drawn{request.asksTextDirection ? textDirection(page) : TextDirection::None};
    }

    Mapping mFile;
    std::unique_ptr<poppler::document> mDocument;
};

} // namespace

} // namespace labelcut::worker

extern "C" __attribute__((visibility("default"))) labelcut::worker::PageRenderer*
labelcutPageRenderer() {
    static labelcut::worker::Renderer renderer;
    return &renderer;
}
