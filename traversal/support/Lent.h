#pragma once

#include <utility>

#include "../../model/Framework.h"
#include "../Export.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER::internal {

using WalkSupport = access::WalkSupport<ModelElement>;

/// A handle of something that somebody else keeps alive: it counts nothing where the framework
/// offers that, and is an ordinary handle where it does not.
///
/// Inside a walk the walk's keeper keeps elements alive, and its property provider keeps properties
/// alive.
template <class Handle>
class Lent {
  public:
    Lent() = default;
    explicit Lent(const Handle& handle) : handle_(WalkSupport::lend(handle)) {}
    /// Takes over what `lend` returned.
    static Lent adopt(Handle&& lent) noexcept { return Lent(std::move(lent), Adopt{}); }
    Lent(const Lent& other) : Lent(other.handle_) {}
    Lent(Lent&& other) noexcept : handle_(std::move(other.handle_)) {}
    Lent& operator=(const Lent& other) {
        Lent copy(other);
        return *this = std::move(copy);
    }
    Lent& operator=(Lent&& other) noexcept {
        WalkSupport::forget(handle_);
        handle_ = std::move(other.handle_);
        return *this;
    }
    ~Lent() { WalkSupport::forget(handle_); }

    const Handle& get() const noexcept { return handle_; }

  private:
    struct Adopt {};
    Lent(Handle&& lent, Adopt) noexcept : handle_(std::move(lent)) {}

    Handle handle_;
};

}  // namespace nuv::zero::traversal::internal
