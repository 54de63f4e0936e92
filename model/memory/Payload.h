#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

#include "../Export.h"
#include "SlotWord.h"
#include "Storage.h"
#include "Type.h"

namespace nuv::zero::memory {

/// What a slot holds that does not fit into its word: one block of memory, entries and all. It is
/// counted, and changed in place only by its one owner: whoever reads a value keeps the payload
/// that stood there, and a model that is edited meanwhile gets a copy of its own.
///
/// A list in a slot need not count those elements that live in the slot's own model, which keeps
/// them. When the slot lets go of a list that somebody else still holds, the list begins to count.
///
/// Who has pinned the model need not count what it reads: it marks a payload as viewed, and a model
/// that is pinned leaves viewed payloads as they stand, until nobody pins it any more.
class Payload {
  public:
    enum class Kind : std::uint8_t { Elements, Texts, Integers, Element, Text, Integer, Planted };

    /// A value that says by itself what it is, instead of by its property's declaration.
    struct Planted {
        meta::Type type;
        /// Whatever it holds is counted.
        SlotWord word;
        bool many = false;
    };

    Payload(const Payload&) = delete;
    Payload& operator=(const Payload&) = delete;

    /// A payload with room for entries, none of them there yet; one reference is the caller's.
    /// Throws `std::bad_alloc`, and `std::length_error` for more than 2^32 - 1 entries.
    MODELING_NUV0_MODEL_EXPORT static Payload& make(Kind kind, std::size_t capacity);

    void retain() noexcept { references_.fetch_add(1, std::memory_order_relaxed); }
    void release() noexcept {
        if (references_.fetch_sub(1, std::memory_order_acq_rel) == 1) destroy(*this);
    }
    bool isShared() const noexcept { return references_.load(std::memory_order_acquire) != 1; }
    /// Marks the payload as read by somebody who does not count. Written once only, so that threads
    /// that read the same lists do not fight over them.
    void view() noexcept {
        if (!isViewed_.load(std::memory_order_relaxed)) {
            isViewed_.store(true, std::memory_order_relaxed);
        }
    }
    /// Whether somebody besides the slot may be reading the payload.
    bool isReadElsewhere(const Storage& storage) const noexcept {
        return isShared() || isViewedIn(storage);
    }
    bool isViewedIn(const Storage& storage) const noexcept {
        return isViewed_.load(std::memory_order_relaxed) && storage.isPinned();
    }

    Kind kind() const noexcept { return kind_; }
    /// Whether the payload holds a reference of each of its elements.
    bool countsElements() const noexcept { return countsElements_; }
    /// Takes such a reference of each element. REQUIRES: nobody else changes it.
    MODELING_NUV0_MODEL_EXPORT void countElements() noexcept;

    std::size_t size() const noexcept { return size_; }
    std::size_t capacity() const noexcept { return capacity_; }
    /// The entries: `const Object*`, perhaps null, or `std::u16string`, `std::int64_t`, `char16_t`,
    /// `Planted`, as the kind says.
    template <class Entry>
    Entry* entries() noexcept {
        return reinterpret_cast<Entry*>(this + 1);
    }
    template <class Entry>
    const Entry* entries() const noexcept {
        return reinterpret_cast<const Entry*>(this + 1);
    }
    /// Appends an entry. REQUIRES: there is room, and nobody else holds the payload; an element is
    /// counted by the caller where the payload counts.
    template <class Entry>
    void append(Entry entry) noexcept {
        ::new (static_cast<void*>(entries<Entry>() + size_)) Entry(std::move(entry));
        ++size_;
    }
    /// Moves all entries into an empty payload with enough room, counts and all.
    template <class Entry>
    void moveInto(Payload& other) noexcept {
        for (std::size_t i = 0; i < size_; ++i) other.append(std::move(entries<Entry>()[i]));
        other.countsElements_ = std::exchange(countsElements_, false);
    }

  private:
    Payload(Kind kind, std::uint32_t capacity) noexcept : capacity_(capacity), kind_(kind) {}
    ~Payload() = default;
    MODELING_NUV0_MODEL_EXPORT static void destroy(Payload& payload) noexcept;

    std::atomic<std::uint32_t> references_{1};
    std::uint32_t size_ = 0;
    std::uint32_t capacity_;
    Kind kind_;
    bool countsElements_ = false;
    std::atomic<bool> isViewed_{false};
    /// The next of those that a pinned storage keeps for whoever views them.
    Payload* nextKept_ = nullptr;
    friend class ModelStorage;
};

/// Owns what a word refers to: a counted reference or a payload.
class HeldWord {
  public:
    HeldWord() noexcept = default;
    /// Takes over a word together with what it counts.
    explicit HeldWord(SlotWord word) noexcept : word_(word) {}
    /// Shares what is stored in a slot, and keeps it whatever becomes of the model.
    static HeldWord keeping(SlotWord stored) noexcept {
        if (!stored.isReference()) return lean(stored);
        stored.target()->retain();
        return HeldWord(SlotWord::counted(*stored.target()));
    }
    /// The same, but counts no reference that the slot does not count either: for whoever keeps the
    /// slot's element.
    static HeldWord lean(SlotWord stored) noexcept {
        if (stored.isCounted()) count(stored);
        return HeldWord(stored);
    }
    HeldWord(const HeldWord& other) noexcept : HeldWord(lean(other.word_)) {}
    HeldWord(HeldWord&& other) noexcept : word_(std::exchange(other.word_, SlotWord())) {}
    HeldWord& operator=(HeldWord other) noexcept {
        std::swap(word_, other.word_);
        return *this;
    }
    ~HeldWord() {
        if (word_.isCounted()) discount(word_);
    }

    const SlotWord& word() const noexcept { return word_; }
    SlotWord detach() noexcept { return std::exchange(word_, SlotWord()); }

  private:
    static void count(SlotWord word) noexcept {
        if (word.isPayload()) {
            word.payload()->retain();
        } else {
            word.target()->retain();
        }
    }
    static void discount(SlotWord word) noexcept {
        if (word.isPayload()) {
            word.payload()->release();
        } else {
            word.target()->release();
        }
    }

    SlotWord word_;
};

}  // namespace nuv::zero::memory
