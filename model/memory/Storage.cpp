#include "model/memory/Storage.h"

namespace nuv::zero::memory {

Storage::~Storage() = default;

void Storage::freeViewed() noexcept {}

}  // namespace nuv::zero::memory
