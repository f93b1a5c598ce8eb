// Worker's protocol: what the program asks the worker that reads documents, and what it answers.
#include "worker/protocol/message.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <type_traits>
#include <utility>

namespace labelcut::worker {

namespace {

/// Appends fields to a message.
class Writer {
public:
    void field(std::uint8_t value) { bytes(&value, sizeof value); }
    void field(std::uint32_t value) { bytes(&value, sizeof value); }
    void field(double value) { bytes(&value, sizeof value); }
    void field(bool value) { field(static_cast<std::uint8_t>(value ? 1 : 0)); }
    void field(const std::string& text) {
        const auto size = static_cast<std::uint32_t>(std::min(text.size(), kLongestText));
        field(size);
        bytes(text.data(), size);
    }
    void field(DocumentKind kind) { field(static_cast<std::uint8_t>(kind)); }
    void field(Problem problem) { field(static_cast<std::uint8_t>(problem)); }
    void field(Interpret::Target target) { field(static_cast<std::uint8_t>(target)); }
    void field(Fit fit) { field(static_cast<std::uint8_t>(fit)); }

    /// What is written comes from this side.
    void refuse() {}
    void field(TextDirection direction) { field(static_cast<std::uint8_t>(direction)); }

    std::string take() { return std::move(mMessage); }

private:
    void bytes(const void* from, std::size_t size) {
        mMessage.append(static_cast<const char*>(from), size);
    }

    std::string mMessage;
};

/// Takes fields off a message; after the first that is wrong nothing is right any more.
class Reader {
public:
    explicit Reader(std::string_view message)
        : mRest(message) {}

    bool isWhole() const { return mIsRight && mRest.empty(); }

    void field(std::uint8_t& value) { bytes(&value, sizeof value); }
    void field(std::uint32_t& value) { bytes(&value, sizeof value); }
    void field(double& value) {
        bytes(&value, sizeof value);
        require(std::isfinite(value));
    }
    void field(bool& value) { value = upTo(1) == 1; }
    void field(std::string& text) {
        std::uint32_t size = 0;
        field(size);
        require(size <= kLongestText && size <= mRest.size());
        if (!mIsRight)
            return;
        text = mRest.substr(0, size);
        mRest.remove_prefix(size);
    }
    void field(DocumentKind& kind) {
        kind = static_cast<DocumentKind>(upTo(static_cast<std::uint8_t>(kLastKind)));
    }
    void field(Problem& problem) {
        problem = static_cast<Problem>(upTo(static_cast<std::uint8_t>(kLastProblem)));
    }
    void field(Interpret::Target& target) {
        target = static_cast<Interpret::Target>(
            upTo(static_cast<std::uint8_t>(Interpret::Target::PostScript)));
    }
    void field(Fit& fit) { fit = static_cast<Fit>(upTo(static_cast<std::uint8_t>(kLastFit))); }
    void field(TextDirection& direction) {
        direction = static_cast<TextDirection>(upTo(static_cast<std::uint8_t>(kLastTextDirection)));
    }
    void require(bool condition) { mIsRight = mIsRight && condition; }
    void refuse() { require(false); }

private:
    std::uint8_t upTo(std::uint8_t largest) {
        std::uint8_t value = 0;
        field(value);
        require(value <= largest);
        return mIsRight ? value : 0;
    }
    void bytes(void* to, std::size_t size) {
        require(size <= mRest.size());
        if (!mIsRight)
            return;
        std::memcpy(to, mRest.data(), size);
        mRest.remove_prefix(size);
    }

    std::string_view mRest;
    bool mIsRight = true;
};

// Each message's fields, once for both directions.

template<typename Fields, typename Value>
void walk(Fields& fields, std::optional<Value>& value) {
    bool isThere = value.has_value();
    fields.field(isThere);
    if (isThere && !value)
        value.emplace();
    if (isThere)
        walk(fields, *value);
}

template<typename Fields>
void walk(Fields& fields, Paper& paper) {
    fields.field(paper.name);
    for (double* number :
         {&paper.width, &paper.height, &paper.left, &paper.top, &paper.right, &paper.bottom})
        fields.field(*number);
}

template<typename Fields>
void walk(Fields&, Open&) {}

template<typename Fields>
void walk(Fields& fields, std::vector<PageRun>& runs) {
    auto count = static_cast<std::uint32_t>(std::min(runs.size(), kMostRuns));
    fields.field(count);
    if (count > kMostRuns)
        return fields.refuse();
    runs.resize(count);
    for (PageRun& run : runs) {
        fields.field(run.first);
        fields.field(run.last);
    }
}

template<typename Fields>
void walk(Fields& fields, Join& join) {
    walk(fields, join.pages);
    fields.field(join.isReversed);
    fields.field(join.repeats);
    fields.field(join.sets);
    fields.field(join.skipped);
    walk(fields, join.paper);
    fields.field(join.fit);
}

template<typename Fields>
void walk(Fields& fields, Draw& draw) {
    fields.field(draw.kind);
    walk(fields, draw.paper);
}

template<typename Fields>
void walk(Fields& fields, Interpret& interpret) {
    fields.field(interpret.target);
    fields.field(interpret.times);
    fields.field(interpret.setsPageSize);
}

template<typename Fields>
void walk(Fields&, Measure&) {}

template<typename Fields>
void walk(Fields&, Show&) {}

template<typename Fields>
void walk(Fields& fields, Render& render) {
    fields.field(render.page);
    fields.field(render.width);
    fields.field(render.height);
    fields.field(render.asksTextDirection);
}

template<typename Fields>
void walk(Fields&, Progress&) {}

template<typename Fields>
void walk(Fields& fields, Kind& kind) {
    fields.field(kind.kind);
}

template<typename Fields>
void walk(Fields& fields, Opened& opened) {
    fields.field(opened.pages);
    fields.field(opened.isRepaired);
    fields.field(opened.isEncrypted);
    fields.field(opened.isPlain);
}

template<typename Fields>
void walk(Fields&, Done&) {}

template<typename Fields>
void walk(Fields& fields, Failed& failed) {
    fields.field(failed.problem);
    fields.field(failed.detail);
    fields.field(failed.file);
}

template<typename Fields>
void walk(Fields& fields, Shown& shown) {
    fields.field(shown.pages);
}

template<typename Fields>
void walk(Fields& fields, Drawn& drawn) {
    fields.field(drawn.textDirection);
}

// What a field's own type does not say.

template<typename Message>
bool makesSense(const Message&) {
    return true;
}
bool makesSense(const Join& join) {
    const auto isCount = [](std::uint32_t count) { return count >= 1 && count <= kMostRepeats; };
    if (!isCount(join.repeats) || !isCount(join.sets))
        return false;
    std::uint64_t free = 1;
    for (const PageRun& run : join.pages) {
        if (run.first < free || run.last < run.first)
            return false;
        free = std::uint64_t{run.last} + 2;
    }
    return true;
}
bool makesSense(const Draw& draw) {
    return draw.kind != DocumentKind::PDF && draw.kind != DocumentKind::PostScript;
}
bool makesSense(const Interpret& interpret) {
    return interpret.times >= 1;
}
bool makesSense(const Render& render) {
    const auto isSide = [](std::uint32_t side) { return side >= 1 && side <= kLargestSide; };
    return render.page >= 1 && isSide(render.width) && isSide(render.height) &&
           std::uint64_t{render.width} * render.height <= kMostPixels;
}
bool isCountOfPages(std::uint32_t pages) {
    return pages >= 1 && pages <= kMostPages;
}
bool makesSense(const Opened& opened) {
    return isCountOfPages(opened.pages);
}
bool makesSense(const Shown& shown) {
    return isCountOfPages(shown.pages);
}

template<typename Message>
std::string encoded(Message message) {
    Writer writer;
    writer.field(static_cast<std::uint8_t>(message.index()));
    std::visit([&writer](auto& value) { walk(writer, value); }, message);
    return writer.take();
}

/// Tries the alternatives of the variant from `Index` on for the one that `name` stands for.
template<typename Message, std::size_t Index = 0>
std::optional<Message> decodedAs(std::uint8_t name, Reader& reader) {
    if constexpr (Index == std::variant_size_v<Message>) {
        return std::nullopt;
    } else {
        if (name != Index)
            return decodedAs<Message, Index + 1>(name, reader);
        std::variant_alternative_t<Index, Message> value;
        walk(reader, value);
        if (!reader.isWhole() || !makesSense(value))
            return std::nullopt;
        return Message(std::move(value));
    }
}

template<typename Message>
std::optional<Message> decoded(std::string_view bytes) {
    Reader reader(bytes);
    std::uint8_t name = UINT8_MAX;
    reader.field(name);
    return decodedAs<Message>(name, reader);
}

} // namespace

std::string encode(const Request& request) {
    return encoded(request);
}

std::string encode(const Answer& answer) {
    return encoded(answer);
}

std::optional<Request> decodeRequest(std::string_view bytes) {
    return decoded<Request>(bytes);
}

std::optional<Answer> decodeAnswer(std::string_view bytes) {
    return decoded<Answer>(bytes);
}

} // namespace labelcut::worker
