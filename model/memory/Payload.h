#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "model/memory/Class.h"

namespace nuv::zero::memory {

/// What a many-valued slot, an attribute or an ill-typed value holds. Counted, and changed in place
/// only by its one owner: whoever reads a value keeps the payload that stood there, and a model
/// that is edited meanwhile gets a copy of its own.
struct Payload {
    using Data =
        std::variant<std::monostate, ModelElement, std::vector<ModelElement>, std::u16string,
                     std::vector<std::u16string>, std::int64_t, std::vector<std::int64_t>>;

    explicit Payload(Data&& value) noexcept : data(std::move(value)) {}
    /// Takes over the content without a detour by way of a variant.
    template <class Content>
    Payload(std::in_place_type_t<Content> type, Content content) noexcept
        : data(type, std::move(content)) {}

    std::atomic<std::uint32_t> references{1};
    /// Whether the value says by itself what it is, instead of by its property's declaration.
    bool planted = false;
    bool plantedMany = false;
    meta::Type plantedType;
    Data data;

    bool isShared() const noexcept { return references.load(std::memory_order_acquire) != 1; }
};

/// A counted pointer to a payload.
class PayloadPointer {
  public:
    PayloadPointer() noexcept = default;
    /// Takes over the one reference that a new payload starts with.
    explicit PayloadPointer(Payload* fresh) noexcept : payload_(fresh) {}
    static PayloadPointer share(Payload* payload) noexcept {
        if (payload != nullptr) payload->references.fetch_add(1, std::memory_order_relaxed);
        return PayloadPointer(payload);
    }
    PayloadPointer(const PayloadPointer& other) noexcept
        : payload_(share(other.payload_).detach()) {}
    PayloadPointer(PayloadPointer&& other) noexcept : payload_(other.detach()) {}
    PayloadPointer& operator=(PayloadPointer other) noexcept {
        std::swap(payload_, other.payload_);
        return *this;
    }
    ~PayloadPointer() {
        if (payload_ != nullptr &&
            payload_->references.fetch_sub(1, std::memory_order_acq_rel) == 1) {
            delete payload_;
        }
    }
    explicit operator bool() const noexcept { return payload_ != nullptr; }
    Payload* operator->() const noexcept { return payload_; }
    Payload& operator*() const noexcept { return *payload_; }
    Payload* get() const noexcept { return payload_; }
    Payload* detach() noexcept { return std::exchange(payload_, nullptr); }

  private:
    Payload* payload_ = nullptr;
};

}  // namespace nuv::zero::memory
