#include "traversal/internal/AbstractStore.h"

namespace nuv::zero::traversal::internal {

AbstractStore::~AbstractStore() = default;

}  // namespace nuv::zero::traversal::internal
