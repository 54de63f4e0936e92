#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "xmi/CrossFileContainment.h"
#include "xmi/ModelSetFile.h"

namespace nuv::zero::xmi {

/// Sets the references that lead from one file into others, once it is known to which elements.
class ModelSetLinker {
  public:
    /// The file of an element.
    using FileOf = std::function<const ModelSetFile&(const ModelElement&)>;
    /// What is wrong with a reference.
    struct Trouble {
        Finding::Reason reason;
        /// To be said of the reference.
        std::string message;
        /// The other element, where two are concerned.
        std::string other = {};
    };
    using Report = std::function<void(ModelSetFile&, const OutgoingReference&, Trouble)>;

    /// REQUIRES: the containment outlives the linker.
    ModelSetLinker(CrossFileContainment& containment, FileOf fileOf, Report report)
        : containment_(containment), fileOf_(std::move(fileOf)), report_(std::move(report)) {}

    void link(ModelSetFile& file);

  private:
    /// Numbers of outgoing references.
    using Numbers = std::vector<std::size_t>;

    void linkGroup(ModelSetFile& file, const Numbers& group);
    void setOne(ModelSetFile& file, std::size_t number);
    void setMany(ModelSetFile& file, const Numbers& group);
    bool mayStand(ModelSetFile& file, std::size_t number);
    bool mayContain(ModelSetFile& file, const OutgoingReference& reference,
                    const ModelElement& target);
    std::string describe(const ModelElement& element) const;

    CrossFileContainment& containment_;
    FileOf fileOf_;
    Report report_;
};

}  // namespace nuv::zero::xmi
