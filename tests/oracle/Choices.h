#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <span>

namespace nuv::zero::oracle {

/// Where the decisions of a random case come from.
class Choices {
  public:
    Choices() = default;
    Choices(const Choices&) = delete;
    Choices& operator=(const Choices&) = delete;
    virtual ~Choices() = default;

    /// A number from 0 to `limit - 1`. REQUIRES: the limit is positive.
    virtual std::uint32_t below(std::uint32_t limit) = 0;
    /// Whether all further decisions would be the same.
    virtual bool exhausted() const { return false; }

    int upTo(int most) { return static_cast<int>(below(static_cast<std::uint32_t>(most) + 1)); }
    int between(int least, int most) { return least + upTo(most - least); }
    /// An index into something of that size. REQUIRES: the size is positive.
    int index(std::size_t size) {
        return static_cast<int>(below(static_cast<std::uint32_t>(size)));
    }
    bool percent(std::uint32_t chance) { return below(100) < chance; }
};

/// Decisions from a seed; the same on every machine and with every standard library.
class RandomChoices : public Choices {
  public:
    explicit RandomChoices(std::uint32_t seed) : engine_(seed) {}
    std::uint32_t below(std::uint32_t limit) override {
        return static_cast<std::uint32_t>(engine_() % limit);
    }

  private:
    std::mt19937 engine_;
};

/// Decisions from bytes, as a fuzzer hands them out. Behind the last byte every decision is zero.
class ByteChoices : public Choices {
  public:
    explicit ByteChoices(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}
    std::uint32_t below(std::uint32_t limit) override {
        if (limit < 2 || exhausted()) return 0;
        const std::uint32_t byte = bytes_.front();
        bytes_ = bytes_.subspan(1);
        return byte % limit;
    }
    bool exhausted() const override { return bytes_.empty(); }

  private:
    std::span<const std::uint8_t> bytes_;
};

}  // namespace nuv::zero::oracle
