#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "model/Framework.h"
#include "xmi/LoadedMetamodel.h"
#include "xmi/LoadedModel.h"

namespace model_walk {

/// How many letters have to be put in, left out or replaced to make one word of the other.
std::size_t editDistance(std::string_view one, std::string_view other);

/// The candidates that are nearest to a word, for the end of an error text: `; nearest: a, b, c`.
/// Empty when there are no candidates.
std::string nearest(std::string_view word, std::vector<std::string> candidates);

/// Fragments that somebody may have meant who wrote one that leads to nothing.
std::vector<std::string> nearbyFragments(const nuv::zero::xmi::LoadedModel& model,
                                         const std::string& fragment);

/// What users call the things of a metamodel. Look-ups throw `UsageError`, with the nearest names.
class Names {
  public:
    /// REQUIRES: the metamodel outlives the names.
    explicit Names(const nuv::zero::xmi::LoadedMetamodel& metamodel);

    nuv::zero::meta::Class classNamed(const std::string& name) const;
    nuv::zero::meta::Property propertyNamed(const nuv::zero::meta::Class& type,
                                            const std::string& name) const;

    std::vector<nuv::zero::meta::Class> classes() const;
    /// The shortest name that means only this class.
    std::string nameOf(const nuv::zero::meta::Class& type) const;
    /// `Class.property`, with the class that declares it.
    std::string nameOf(const nuv::zero::meta::Property& property) const;

  private:
    const nuv::zero::xmi::LoadedMetamodel& metamodel_;
};

}  // namespace model_walk
