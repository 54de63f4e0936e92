#include "traversal/internal/AbstractStore.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER::internal {

AbstractStore::~AbstractStore() = default;

}  // namespace nuv::zero::traversal::internal
