#include "model/memory/Object.h"

#include "model/memory/Storage.h"

namespace nuv::zero::memory {

void Object::becomeReferenced() const noexcept {
    storage_->retain();
}
void Object::becomeUnreferenced() const noexcept {
    storage_->release();
}

void Object::giveUp() const noexcept {
    std::uint32_t own = 1;
    if (references_.compare_exchange_strong(own, 0, std::memory_order_acq_rel)) return;
    // Somebody holds a handle, and with it the storage from here on.
    storage_->retain();
    release();
}

}  // namespace nuv::zero::memory
