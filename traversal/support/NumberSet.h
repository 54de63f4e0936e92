#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "../Export.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER::internal {

/// A set of 64-bit numbers that only ever grows, made for numbers that come in clusters: eight
/// numbers of a cluster take one byte.
///
///     NumberSet entered;
///     if (entered.insert(number)) ...   // it is new
///
/// The numbers are cut into lines of 512, and each line is a bitmap of one cache line. A directory
/// (open addressing) finds the lines; the line used last is remembered, so that numbers near each
/// other cost a shift and a mask. A line with few numbers needs no bitmap, its directory entry
/// holds them: whatever the numbers, the set takes at most twice what a flat table of them would.
///
/// Asking and inserting are constant on average. A failing allocation changes nothing. A copy is
/// independent. One thread at a time, for questions too.
class NumberSet {
  public:
    NumberSet() noexcept = default;
    NumberSet(const NumberSet& other);
    NumberSet(NumberSet&&) = delete;
    NumberSet& operator=(const NumberSet&) = delete;
    NumberSet& operator=(NumberSet&&) = delete;
    ~NumberSet() = default;

    std::size_t size() const noexcept { return size_; }
    /// What the directory and the bitmaps take.
    std::size_t bytes() const noexcept {
        return directory_.capacity() * sizeof(Entry) + lines_.bytes();
    }

    bool contains(std::uint64_t number) noexcept {
        return number / numbersPerLine == latestKey_ ? latest_->has(number)
                                                     : containsElsewhere(number);
    }

    /// Adds a number; false when it was there.
    bool insert(std::uint64_t number) {
        if (number / numbersPerLine != latestKey_) return insertElsewhere(number);
        const bool isNew = latest_->add(number);
        size_ += isNew ? 1 : 0;
        return isNew;
    }

  private:
    static constexpr std::uint64_t numbersPerLine = 512;
    static constexpr std::uint64_t noKey = ~std::uint64_t{0};

    struct alignas(64) Line {
        std::uint64_t words[8];

        bool has(std::uint64_t number) const noexcept {
            return ((words[number / 64 % 8] >> (number % 64)) & 1U) != 0;
        }
        bool add(std::uint64_t number) noexcept {
            std::uint64_t& word = words[number / 64 % 8];
            const std::uint64_t bit = std::uint64_t{1} << (number % 64);
            const bool isNew = (word & bit) == 0;
            word |= bit;
            return isNew;
        }
    };

    /// A line in the directory: free, a few numbers that stand in the entry itself, or a bitmap.
    class Entry {
      public:
        static constexpr unsigned mostInside = 7;

        bool isFree() const noexcept { return keyAndCount_ == 0; }
        bool isBitmap() const noexcept { return count() == bitmapMark; }
        bool isOf(std::uint64_t key) const noexcept { return keyAndCount_ >> countBits == key; }
        std::uint64_t key() const noexcept { return keyAndCount_ >> countBits; }
        Line& line() const noexcept { return *content_.line; }
        bool isFull() const noexcept { return count() == mostInside; }

        bool hasInside(std::uint64_t number) const noexcept;
        void begin(std::uint64_t key, std::uint64_t number) noexcept {
            keyAndCount_ = (key << countBits) | 1U;
            content_.inside = number % numbersPerLine;
        }
        /// REQUIRES: not full.
        void addInside(std::uint64_t number) noexcept {
            content_.inside |= (number % numbersPerLine) << (bitsEach * count());
            ++keyAndCount_;
        }
        void spreadTo(Line& line) noexcept;
        void takeBitmap(Line& line) noexcept {
            keyAndCount_ = (key() << countBits) | bitmapMark;
            content_.line = &line;
        }

      private:
        static constexpr unsigned countBits = 8;
        static constexpr unsigned bitsEach = 9;
        static constexpr std::uint64_t bitmapMark = 0xFF;

        unsigned count() const noexcept {
            return static_cast<unsigned>(keyAndCount_ & ((1U << countBits) - 1U));
        }

        std::uint64_t keyAndCount_ = 0;
        union {
            std::uint64_t inside;
            Line* line;
        } content_ = {0};
    };

    /// Bitmaps, in blocks, so that they stay where they are.
    class Lines {
      public:
        /// Room for as many as given in one block. Throws `std::bad_alloc`.
        void reserve(std::size_t count);
        /// A bitmap without numbers; more room is made as it is needed.
        Line& take();
        std::size_t bytes() const noexcept { return total_ * sizeof(Line); }

      private:
        std::vector<std::unique_ptr<Line[]>> blocks_;
        std::size_t total_ = 0;
        std::size_t capacity_ = 0;
        std::size_t used_ = 0;
    };

    bool containsElsewhere(std::uint64_t number) noexcept {
        if (directory_.empty()) return false;
        const std::uint64_t key = number / numbersPerLine;
        const Entry& entry = directory_[placeOf(key)];
        if (!entry.isBitmap()) return entry.hasInside(number);
        latestKey_ = key;
        latest_ = &entry.line();
        return latest_->has(number);
    }
    bool insertElsewhere(std::uint64_t number);

    /// Where the line is, or the free place where it belongs.
    std::size_t placeOf(std::uint64_t key) const noexcept {
        // The upper bits of a product with the golden ratio lie far apart for keys in a row.
        auto place = static_cast<std::size_t>((key * 0x9E3779B97F4A7C15U) >> shift_);
        while (!directory_[place].isFree() && !directory_[place].isOf(key)) {
            place = (place + 1) & (directory_.size() - 1);
        }
        return place;
    }
    void grow();

    std::vector<Entry> directory_;
    Lines lines_;
    std::size_t entries_ = 0;
    std::size_t bitmaps_ = 0;
    std::size_t size_ = 0;
    unsigned shift_ = 64;
    std::uint64_t latestKey_ = noKey;
    Line* latest_ = nullptr;
};

}  // namespace nuv::zero::traversal::internal
