#pragma once

#include <cstdint>

namespace nuv::zero::benchmarks {

/// Sums up a sequence of links so that any change of it, of its order too, changes the sum. Cheap:
/// all contenders pay for it alike. Names nothing of a model, so that programs on different model
/// frameworks can sum up alike.
class Checksum {
  public:
    void add(const void* source, const void* property, const void* target, bool cascades) noexcept {
        add(number(source), number(property), number(target), cascades);
    }
    void add(std::uint64_t source, std::uint64_t property, std::uint64_t target,
             bool cascades) noexcept {
        const std::uint64_t link = source * 3 + target * 5 + property * 7 + (cascades ? 1U : 0U);
        sum_ = (sum_ ^ link) * 0x9E3779B97F4A7C15U;
        ++links_;
    }
    std::uint64_t sum() const noexcept { return sum_; }
    std::uint64_t links() const noexcept { return links_; }
    friend bool operator==(const Checksum&, const Checksum&) = default;

  private:
    static std::uint64_t number(const void* address) noexcept {
        return static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(address));
    }
    std::uint64_t sum_ = 0;
    std::uint64_t links_ = 0;
};

}  // namespace nuv::zero::benchmarks
