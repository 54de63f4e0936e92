#include "model/memory/Storage.h"

namespace nuv::zero::memory {

Storage::~Storage() = default;

}  // namespace nuv::zero::memory
