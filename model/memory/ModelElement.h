#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <utility>

#include "../Export.h"
#include "Object.h"

namespace nuv::zero {

/// A handle of one model object: one pointer, cheap to copy, compared by identity.
///
/// A handle keeps its object valid. When the model is destroyed first, the object stays, and all
/// its properties read as unset. A null handle designates nothing and tests false; moving leaves
/// the source null. Handles of classes, properties and types derive from this one, because those
/// are elements too; slicing one of them gives the handle of the same object as an element.
///
/// Threads: handles of one object may be copied, compared and dropped on several threads at once;
/// one handle object belongs to one thread at a time. At most 2^32 - 1 handles of one object.
class ModelElement {
  public:
    using Impl = memory::Object;

    ModelElement() noexcept = default;
    explicit ModelElement(const Impl* impl) noexcept : impl_(const_cast<Impl*>(impl)) {
        if (impl_ != nullptr) impl_->retain();
    }
    ModelElement(const ModelElement& other) noexcept : ModelElement(other.impl_) {}
    ModelElement(ModelElement&& other) noexcept : impl_(std::exchange(other.impl_, nullptr)) {}
    ModelElement& operator=(const ModelElement& other) noexcept {
        ModelElement(other).swap(*this);
        return *this;
    }
    ModelElement& operator=(ModelElement&& other) noexcept {
        ModelElement taken(std::move(other));
        taken.swap(*this);
        return *this;
    }
    ~ModelElement() {
        if (impl_ != nullptr) impl_->release();
    }

    explicit operator bool() const noexcept { return impl_ != nullptr; }
    friend bool operator==(const ModelElement& a, const ModelElement& b) noexcept {
        return a.impl_ == b.impl_;
    }

    Impl* operator->() const noexcept { return impl_; }
    Impl* get() const noexcept { return impl_; }

    /// The meta-class that every model element conforms to.
    MODELING_NUV0_MODEL_EXPORT static const meta::Class& metaClass();

  private:
    friend class memory::Lending;
    void swap(ModelElement& other) noexcept { std::swap(impl_, other.impl_); }

    Impl* impl_ = nullptr;
};

}  // namespace nuv::zero

namespace nuv::zero::memory {

/// Spreads the bits of an address over the whole word. Objects lie in regular layouts, and users
/// combine hashes by exclusive-or; unmixed addresses would then collide by the thousand.
inline std::size_t mixAddress(const void* address) noexcept {
    std::uint64_t bits = reinterpret_cast<std::uintptr_t>(address);
    bits *= 0x9E3779B97F4A7C15U;
    bits ^= bits >> 32U;
    bits *= 0xD6E8FEB86659FD93U;
    bits ^= bits >> 29U;
    return access::narrowed<std::size_t>(bits);
}

/// Makes handles that do not count. Whoever lends a handle guarantees that something else keeps the
/// object alive, and calls `forget` before the handle is destroyed.
class Lending {
  public:
    template <class Handle>
    static Handle lend(const Object* object) noexcept {
        Handle lent;
        static_cast<ModelElement&>(lent).impl_ = const_cast<Object*>(object);
        return lent;
    }
    static void forget(ModelElement& lent) noexcept { lent.impl_ = nullptr; }
};

}  // namespace nuv::zero::memory

template <>
struct std::hash<nuv::zero::ModelElement> {
    std::size_t operator()(const nuv::zero::ModelElement& element) const noexcept {
        return nuv::zero::memory::mixAddress(element.get());
    }
};
