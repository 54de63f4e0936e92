#pragma once

#include <cstddef>
#include <functional>
#include <unordered_set>
#include <vector>

#include "CommandLine.h"
#include "Project.h"

namespace model_walk {

/// What a model lacks that nobody expects to be missing, and whether an answer may lack it too.
class Losses {
  public:
    /// REQUIRES: the project outlives the losses.
    Losses(const CommandLine& line, const Project& project);

    /// All findings that are a loss: contents or links.
    std::size_t count() const noexcept { return unexpected_.size(); }
    std::size_t expectedCount() const noexcept { return expected_; }
    /// Whether elements are missing, wherever.
    bool hasLostContents() const;
    /// Whether a reference to one of the elements may be missing: with lost contents, or because it
    /// leads into a file that was not found and is called as the element's file is.
    bool mayLeadTo(const std::unordered_set<nuv::zero::ModelElement>& elements) const;
    /// Whether something is missing behind a property of an element that the answer would have gone
    /// through. An element that is not known may be any.
    bool isLostFrom(
        const std::function<bool(const nuv::zero::ModelElement& source,
                                 const nuv::zero::meta::Property& property)>& isGoneThrough) const;

  private:
    const Project& project_;
    std::vector<const nuv::zero::xmi::Finding*> unexpected_;
    std::size_t expected_ = 0;
};

}  // namespace model_walk
