#pragma once

#include <atomic>
#include <cstddef>

#include "../Export.h"

namespace nuv::zero::memory {

/// The memory in which the objects of one model or one metamodel live.
///
/// A storage is freed when nobody needs it any more: the `Model` or `Metamodel` that made it, each
/// of its objects that a handle still designates after that is gone, and each walk that has pinned
/// it count as one user each. Objects are therefore never freed one by one: releasing the last
/// handle of an element is a decrement, however long the chain that hangs on the element.
///
/// Who pins a storage may read its lists without counting them: as long as it is pinned, a list
/// that a slot lets go of is kept aside.
///
/// Threads: the counts may be touched from several threads.
class MODELING_NUV0_MODEL_EXPORT Storage {
  public:
    Storage(const Storage&) = delete;
    Storage& operator=(const Storage&) = delete;

    void retain() noexcept { users_.fetch_add(1, std::memory_order_relaxed); }
    void release() noexcept {
        if (users_.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
    }

    /// As `retain` and `release`, and keeps besides what is read without counting.
    void pin() noexcept {
        retain();
        pins_.fetch_add(1, std::memory_order_relaxed);
    }
    void unpin() noexcept {
        if (pins_.fetch_sub(1, std::memory_order_acq_rel) == 1) freeViewed();
        release();
    }
    bool isPinned() const noexcept { return pins_.load(std::memory_order_acquire) != 0; }
    /// Whether anybody but the caller, who is a user, needs the storage.
    bool isShared() const noexcept { return users_.load(std::memory_order_acquire) != 1; }

  protected:
    Storage() noexcept = default;
    virtual ~Storage();

    /// Nobody reads without counting any more.
    virtual void freeViewed() noexcept;

  private:
    std::atomic<std::size_t> users_{1};
    std::atomic<std::size_t> pins_{0};
};

}  // namespace nuv::zero::memory
