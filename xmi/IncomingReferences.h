#pragma once

#include <cstddef>
#include <span>
#include <unordered_map>
#include <vector>

#include "xmi/ModelSet.h"

namespace nuv::zero::xmi {

/// Who refers to the elements of a model set: found in one pass over all of it.
///
///     const IncomingReferences incoming(set);
///     for (const IncomingReferences::Reference& each : incoming.of(element)) {
///         std::cout << set.address(each.source).text() << '\n';
///     }
///
/// Links of all properties that hold elements count, containments as well; derived ones hold none.
/// The table takes about 40 bytes for each link and does not notice when the model changes. May be
/// read on several threads.
class IncomingReferences {
  public:
    struct Reference {
        ModelElement source;
        /// Kept alive by the class of the source.
        const memory::PropertyObject* property;
    };

    explicit IncomingReferences(const ModelSet& set);

    /// In the order of the elements that refer, and of their properties.
    std::span<const Reference> of(const ModelElement& target) const;
    /// How many there are, to all elements.
    std::size_t size() const noexcept { return references_.size(); }

  private:
    struct Range {
        std::size_t begin = 0;
        std::size_t end = 0;
    };
    std::unordered_map<ModelElement, Range> ranges_;
    std::vector<Reference> references_;
};

}  // namespace nuv::zero::xmi
