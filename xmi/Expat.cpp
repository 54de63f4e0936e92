#include "xmi/Expat.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <limits>
#include <new>
#include <optional>

#include "xmi/XmlNames.h"

namespace nuv::zero::xmi {
namespace {

/// Whether the parser of this thread has run out of memory. What it says itself then is not always
/// that: a name that it could not keep may count as a prefix that nobody declared.
// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables)
thread_local bool outOfMemory = false;

void* noticingFailure(void* memory) noexcept {
    if (memory == nullptr) outOfMemory = true;
    return memory;
}
// NOLINTBEGIN(cppcoreguidelines-no-malloc): what the parser would call by itself
void* allocate(std::size_t size) noexcept {
    return noticingFailure(std::malloc(size));
}
void* reallocate(void* memory, std::size_t size) noexcept {
    return noticingFailure(std::realloc(memory, size));
}
constexpr XML_Memory_Handling_Suite noticingSuite{&allocate, &reallocate, &std::free};
// NOLINTEND(cppcoreguidelines-no-malloc)
constexpr XML_Char separatorText[] = {XmlNames::separator, '\0'};

int XMLCALL onUnknownEncoding(void* /*data*/, const XML_Char* name, XML_Encoding* info) {
    const std::optional<EncodingTable> table = encodingTable(name);
    if (!table) return XML_STATUS_ERROR;
    std::copy(table->begin(), table->end(), std::begin(info->map));
    info->data = nullptr;
    info->convert = nullptr;
    info->release = nullptr;
    return XML_STATUS_OK;
}

}  // namespace

Expat::Expat() : parser_(XML_ParserCreate_MM(nullptr, &noticingSuite, separatorText)) {
    if (!parser_) throw std::bad_alloc();
    XML_SetUnknownEncodingHandler(parser_.get(), &onUnknownEncoding, nullptr);
}

bool Expat::parse(ByteSource& source) {
    // Small enough for the caches, and so that the parser, which counts in `int`, can.
    constexpr std::size_t smallestPiece = std::size_t{1} << 16U;
    constexpr std::size_t largestPiece = std::size_t{1} << 29U;
    outOfMemory = false;
    chooseDecoder(source);
    std::size_t taken = 0;
    std::size_t fed = 0;
    bool isLast = false;
    XML_Status status = XML_STATUS_OK;
    while (!isLast && status == XML_STATUS_OK) {
        // What is left of a tag that is not complete is started over with the next piece. With at
        // least as many new bytes each time, that happens to a byte twice on average.
        const std::size_t left = fed - std::min(offset(), fed);
        const std::size_t wanted =
            std::min(std::clamp(left, smallestPiece, largestPiece), source.size() - taken);
        const Fed piece = feed(source, taken, wanted);
        taken += piece.taken;
        fed += piece.given;
        isLast = piece.taken < wanted || taken == source.size();
        status = piece.given == 0 ? XML_Parse(get(), "", 0, isLast ? XML_TRUE : XML_FALSE)
                                  : XML_ParseBuffer(get(), static_cast<int>(piece.given),
                                                    isLast ? XML_TRUE : XML_FALSE);
    }
    if (outOfMemory) throw std::bad_alloc();
    return status == XML_STATUS_OK;
}

void Expat::chooseDecoder(ByteSource& source) {
    // The parser can be told a table, too, but then it asks it for every single character.
    std::array<char, 256> begin;
    const std::size_t size = source.read(0, begin.data(), begin.size());
    const auto table = encodingTable(declaredEncoding({begin.data(), size}));
    if (!table) return;
    decoder_.emplace(*table);
    if (XML_SetEncoding(get(), "UTF-8") != XML_STATUS_OK) throw std::bad_alloc();
}

Expat::Fed Expat::feed(ByteSource& source, std::size_t from, std::size_t wanted) {
    const auto buffer = [&](std::size_t size) {
        void* const room = XML_GetBuffer(get(), static_cast<int>(size));
        if (room == nullptr) throw std::bad_alloc();
        return static_cast<char*>(room);
    };
    if (wanted == 0) return {0, 0};
    if (!decoder_) {
        const std::size_t count = source.read(from, buffer(wanted), wanted);
        return {count, count};
    }
    encoded_.resize(wanted);
    const std::size_t count = source.read(from, encoded_.data(), wanted);
    const std::string_view bytes(encoded_.data(), count);
    const std::size_t size = decoder_->decodedSize(bytes);
    if (size == count) {
        std::copy(bytes.begin(), bytes.end(), buffer(count));
    } else {
        decoder_->decode(bytes, buffer(size));
    }
    return {count, size};
}

std::size_t Expat::offset() const noexcept {
    // Negative before anything was parsed.
    return static_cast<std::size_t>(std::max<XML_Index>(0, XML_GetCurrentByteIndex(get())));
}

Position Expat::position() const noexcept {
    const auto limited = [](XML_Size size) {
        return static_cast<std::uint32_t>(
            std::min<XML_Size>(size, std::numeric_limits<std::uint32_t>::max()));
    };
    return {limited(XML_GetCurrentLineNumber(get())),
            limited(XML_GetCurrentColumnNumber(get()) + 1)};
}

}  // namespace nuv::zero::xmi
