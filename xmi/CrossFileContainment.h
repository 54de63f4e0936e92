#pragma once

#include <unordered_map>

#include "model/memory/ModelElement.h"

namespace nuv::zero::xmi {

/// Which elements are contained by elements of other files.
class CrossFileContainment {
  public:
    /// Null for an element that nothing in another file contains.
    ModelElement containerOf(const ModelElement& content) const;
    /// The outermost of all containers, across files; for an element that nothing in its own file
    /// contains. Cheap, however many files contain each other.
    ModelElement outermost(const ModelElement& top);

    /// REQUIRES: nothing contains the content; the container's own outermost container is given
    /// with it, and is not the content.
    void add(const ModelElement& content, const ModelElement& container,
             const ModelElement& outermost);

  private:
    std::unordered_map<ModelElement, ModelElement> containers_;
    /// For each content an element further up. Ways are shortened as they are gone.
    std::unordered_map<ModelElement, ModelElement> above_;
};

}  // namespace nuv::zero::xmi
