#pragma once

#include "../Export.h"
#include "../LinkRange.h"
#include "../WalkView.h"
#include "Walk.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER::internal {

/// The walk behind what callers and listeners hold; null where there is none.
class WalkAccess {
  public:
    static Walk* of(const TraversalResult::IterationContext& context) noexcept {
        return context.walk_.get();
    }
    static Walk* of(const LinkRange& range) noexcept {
        return range.walk_ ? of(*range.walk_) : nullptr;
    }
    static Walk* of(const WalkView& view) noexcept { return view.walk_; }
};

}  // namespace nuv::zero::traversal::internal
