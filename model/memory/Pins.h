#pragma once

#include <vector>

#include "../Export.h"
#include "ModelElement.h"
#include "Storage.h"

namespace nuv::zero::memory {

/// Keeps whole models allocated, at the price of one pointer comparison per element.
///
/// Whoever meets many elements (a walk) would pay two counter updates for each to keep it alive.
/// Pinning the storages that the elements live in gives the same safety: after `pin(element)` the
/// element's memory stays readable until the pins are destroyed, even when its model is destroyed
/// meanwhile (its properties then read as unset). A copy pins the same storages.
///
/// Threads: one thread at a time for each `Pins`; different `Pins` are independent.
class MODELING_NUV0_MODEL_EXPORT Pins {
  public:
    Pins() noexcept = default;
    Pins(const Pins& other);
    Pins(Pins&& other) noexcept;
    Pins& operator=(Pins other) noexcept;
    ~Pins();

    /// Pins the storage of the element; a null element needs none. Throws `std::bad_alloc`, and
    /// then has pinned nothing.
    void pin(const ModelElement& element) {
        if (element) pin(element->storage());
    }

    /// Pins one storage; null is ignored.
    void pin(Storage* storage) {
        if (storage != latest_) pinAnother(storage);
    }
    bool holds(const Storage* storage) const noexcept;
    const std::vector<Storage*>& storages() const noexcept { return storages_; }

  private:
    void pinAnother(Storage* storage);

    Storage* latest_ = nullptr;
    std::vector<Storage*> storages_;
};

}  // namespace nuv::zero::memory
