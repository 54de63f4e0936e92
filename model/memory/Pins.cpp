#include "model/memory/Pins.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "model/memory/Storage.h"

namespace nuv::zero::memory {

Pins::Pins(const Pins& other) : latest_(other.latest_), storages_(other.storages_) {
    for (Storage* storage : storages_) storage->pin();
}

Pins::Pins(Pins&& other) noexcept
    : latest_(std::exchange(other.latest_, nullptr)), storages_(std::move(other.storages_)) {
    other.storages_.clear();
}

Pins& Pins::operator=(Pins other) noexcept {
    std::swap(latest_, other.latest_);
    storages_.swap(other.storages_);
    return *this;
}

Pins::~Pins() {
    for (Storage* storage : storages_) storage->unpin();
}

bool Pins::holds(const Storage* storage) const noexcept {
    return std::binary_search(storages_.begin(), storages_.end(), storage, std::less<>());
}

void Pins::pinAnother(Storage* storage) {
    if (storage == nullptr) return;
    // Sorted, so that a walk that alternates between many models finds its pins quickly.
    const auto place = std::lower_bound(storages_.begin(), storages_.end(), storage, std::less<>());
    if (place == storages_.end() || *place != storage) {
        storages_.insert(place, storage);
        storage->pin();
    }
    latest_ = storage;
}

}  // namespace nuv::zero::memory
