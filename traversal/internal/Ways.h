#pragma once

#include <vector>

#include "../AssociationSetting.h"
#include "../Export.h"
#include "../support/FlatMap.h"
#include "../support/Lent.h"
#include "Link.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER::internal {

/// How a walk came to each element that it has entered: from which element, by which property.
/// Elements and settings have to outlive it. A copy is independent.
class Ways {
  public:
    /// Makes sure that the next `remember` allocates nothing. Throws `std::bad_alloc`, and then has
    /// changed nothing.
    void reserveOne() { ways_.reserveOne(); }
    /// Remembers the link that entered an element; a null setting stands for an input's own link.
    /// REQUIRES: `reserveOne` was called, and the element is a new one.
    void remember(const ModelElement& element, const ModelElement& source,
                  const AssociationSetting* setting) {
        ways_.insert(element, Way{Lent<ModelElement>(source), setting});
    }
    std::size_t bytes() const noexcept { return ways_.bytes(); }
    /// The links that lead from an input to an element, the input's own link first; none where the
    /// element was not entered. Costs what it returns.
    std::vector<Link> to(const ModelElement& element) const;

  private:
    struct Way {
        Lent<ModelElement> source;
        const AssociationSetting* setting = nullptr;
    };
    FlatMap<ModelElement, Lent<ModelElement>, Way, WalkSupport::Hash<ModelElement>> ways_;
};

}  // namespace nuv::zero::traversal::internal
