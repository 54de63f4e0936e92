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

/// What users call the things of a metamodel and a model. Look-ups throw `UsageError`, with the
/// nearest names.
class Names {
  public:
    /// Both have to outlive the names.
    Names(const nuv::zero::xmi::LoadedMetamodel& metamodel,
          const nuv::zero::xmi::LoadedModel& model);

    nuv::zero::meta::Class classNamed(const std::string& name) const;
    nuv::zero::meta::Property propertyNamed(const nuv::zero::meta::Class& type,
                                            const std::string& name) const;
    nuv::zero::ModelElement elementNamed(const std::string& idOrPath) const;

    /// The shortest name that means only this class.
    std::string nameOf(const nuv::zero::meta::Class& type) const;

  private:
    const nuv::zero::xmi::LoadedMetamodel& metamodel_;
    const nuv::zero::xmi::LoadedModel& model_;
};

}  // namespace model_walk
