#include "xmi/TextArena.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace nuv::zero::xmi {
namespace {

constexpr std::size_t smallestBlock = 1024;
constexpr std::size_t largestBlock = std::size_t{1} << 16U;

}  // namespace

TextArena::TextArena(TextArena&& other) noexcept
    : blocks_(std::exchange(other.blocks_, {})),
      free_(std::exchange(other.free_, nullptr)),
      freeSize_(std::exchange(other.freeSize_, 0)),
      blockSize_(std::exchange(other.blockSize_, 0)) {}

TextArena& TextArena::operator=(TextArena&& other) noexcept {
    blocks_ = std::exchange(other.blocks_, {});
    free_ = std::exchange(other.free_, nullptr);
    freeSize_ = std::exchange(other.freeSize_, 0);
    blockSize_ = std::exchange(other.blockSize_, 0);
    return *this;
}

std::string_view TextArena::keep(std::string_view text) {
    if (text.empty()) return {};
    if (text.size() > largestBlock / 4) {
        // A block of its own, so that the one that is shared is not given up half empty.
        std::unique_ptr<char[]> block(new char[text.size()]);
        std::memcpy(block.get(), text.data(), text.size());
        blocks_.push_back(std::move(block));
        return {blocks_.back().get(), text.size()};
    }
    if (text.size() > freeSize_) {
        const std::size_t size =
            std::max(std::clamp(2 * blockSize_, smallestBlock, largestBlock), text.size());
        blocks_.push_back(std::unique_ptr<char[]>(new char[size]));
        free_ = blocks_.back().get();
        freeSize_ = size;
        blockSize_ = size;
    }
    char* const kept = free_;
    std::memcpy(kept, text.data(), text.size());
    free_ += text.size();
    freeSize_ -= text.size();
    return {kept, text.size()};
}

}  // namespace nuv::zero::xmi
