#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

namespace nuv::zero::xmi {

/// Keeps texts, one behind the other in blocks, for as long as it lives. A text never moves, not
/// even when the arena does. An arena that was moved from is empty.
class TextArena {
  public:
    TextArena() = default;
    TextArena(TextArena&& other) noexcept;
    TextArena& operator=(TextArena&& other) noexcept;
    TextArena(const TextArena&) = delete;
    TextArena& operator=(const TextArena&) = delete;
    ~TextArena() = default;

    /// Throws `std::bad_alloc`, and then has kept nothing.
    std::string_view keep(std::string_view text);

  private:
    std::vector<std::unique_ptr<char[]>> blocks_;
    /// What is free in the last block that is shared.
    char* free_ = nullptr;
    std::size_t freeSize_ = 0;
    std::size_t blockSize_ = 0;
};

}  // namespace nuv::zero::xmi
