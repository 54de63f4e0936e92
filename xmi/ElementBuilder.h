#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "xmi/FeatureTable.h"
#include "xmi/LoadedModel.h"
#include "xmi/Misfit.h"
#include "xmi/ReadOptions.h"
#include "xmi/ValueCheck.h"

namespace nuv::zero::xmi {

/// Makes the elements of a file in its order, and gives them their contents and values. What does
/// not fit is a `Misfit`; the model is then as before.
class ElementBuilder {
  public:
    using Index = std::uint32_t;

    /// REQUIRES: everything outlives it.
    ElementBuilder(LoadedModel& loaded, const FeatureTable& features, const ReadLimits& limits)
        : loaded_(loaded), features_(features), limits_(limits) {}

    /// The number of a new element; the feature of its container is null for a root.
    Index create(Node node, const KnownClass& type, Index container, const Feature* feature);
    /// Where the contents of an element begin among those that wait, for one that was just made.
    std::size_t waiting() const noexcept { return waiting_.size(); }

    /// Whether an element of a class may stand in a feature.
    static bool fits(const KnownClass& type, const Feature& feature) {
        return type.type->canStandFor(feature.property->type());
    }
    /// Refuses a content before it is made.
    void checkRoom(Node node, Index container, const Feature& feature,
                   const KnownClass& type) const;
    /// Puts an element that was just made into its container. Says whether it waits there to be put
    /// into the list with all others, in front of its own contents.
    bool contain(Node node, Index container, const Feature& feature, Index element, bool fits);
    /// Makes the lists of an element whose contents were all made.
    void addContents(Index element, std::size_t firstChild);

    /// Sets or adds a value.
    void addValue(Node node, Index element, const Feature& feature, std::string_view text);
    /// The same for the first value of a feature in an attribute. REQUIRES: the element was made
    /// last, and has attributes only so far.
    void addFirstValue(Node node, Index element, const Feature& feature, std::string_view text);

    /// Takes down which classes have ids that are made of names. REQUIRES: all elements are there.
    void nameClasses(const LoadedMetamodel& metamodel);
    /// Gives back what is only needed until all elements are there.
    void shrink();

  private:
    /// A contained element, to be put into the list of its container with all others.
    struct Waiting {
        std::uint32_t feature;
        Index element;
        friend bool operator<(const Waiting& one, const Waiting& other) noexcept {
            return one.feature != other.feature ? one.feature < other.feature
                                                : one.element < other.element;
        }
    };

    LoadedModel& loaded_;
    const FeatureTable& features_;
    const ReadLimits& limits_;
    ValueCheck values_;
    std::size_t slots_ = 0;
    /// By feature, the element that an attribute gave a value last.
    std::vector<Index> lastOwner_;
    std::vector<Waiting> waiting_;
    /// The list that is being put together.
    std::vector<ModelElement> list_;
    std::u16string text16_;
};

/// Refuses to set a single value that is set. The values are read from the model.
void refuseSecondValue(Node node, const ModelElement& element, const meta::Property& property);

}  // namespace nuv::zero::xmi
