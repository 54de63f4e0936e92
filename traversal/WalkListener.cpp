#include "traversal/WalkListener.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER {

WalkListener::WalkListener() = default;
WalkListener::WalkListener(const WalkListener& other) = default;
WalkListener& WalkListener::operator=(const WalkListener& other) = default;
WalkListener::~WalkListener() = default;

void WalkListener::onLink(const WalkView& /*walk*/, const internal::Link& /*link*/, Fate /*fate*/,
                          std::size_t /*filter*/) {}
void WalkListener::onPrune(const WalkView& /*walk*/, const internal::Link& /*link*/,
                           Pruning /*pruning*/, const meta::Property& /*property*/,
                           Pruned /*outcome*/) {}

}  // namespace nuv::zero::traversal
