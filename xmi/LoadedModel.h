#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "model/memory/Model.h"
#include "xmi/BlockList.h"
#include "xmi/ElementNumbers.h"
#include "xmi/IdTable.h"

namespace nuv::zero::xmi {

/// A model read from a file: its elements, and how each is identified in the file.
///
///     const LoadedModel model = XmiReader(metamodel).readFile("railway-1.xmi");
///     const ModelElement semaphore = model.find("//@semaphores.1");
///     std::cout << model.identity(semaphore);
///
/// The identity of an element is its `xmi:id`, else the value of its attribute that the metamodel
/// declares as iD, else its path: `/` for the root of a file with one root, `/N` for the roots of
/// others, `//@feature.N/@other` or `/N/@feature.M` below. An iD value that several elements share
/// identifies none of them, and they go by their paths. Identities are unique in a file.
class LoadedModel {
  public:
    const memory::Model& model() const noexcept { return model_; }
    const std::vector<ModelElement>& roots() const noexcept { return roots_; }
    /// All elements in the order in which they stand in the file.
    const std::vector<ModelElement>& elements() const noexcept { return elements_; }

    /// The identity of an element; empty for a null element and for one of another model. Costs the
    /// depth of the element where it goes by its path.
    std::string identity(const ModelElement& element) const;
    /// The path of an element, also where its identity is another one.
    std::string path(const ModelElement& element) const;
    /// The element with that id or path; null where there is none. Paths may also lead by names
    /// (`//package/Class`). An id costs one look-up; a path looks at all children on its way.
    ModelElement find(std::string_view idOrPath) const;
    /// The element of this file that contains another one; null for roots and for elements of other
    /// models.
    ModelElement container(const ModelElement& element) const;
    /// The elements that an element contains, in the order in which they stand in the file.
    std::vector<ModelElement> contents(const ModelElement& element) const;
    /// The identities that are ids, in no order: what a user may have meant.
    std::vector<std::string> ids() const;

    /// References into other files that were left out.
    std::size_t leftOut() const noexcept { return leftOut_; }

  private:
    friend class ModelSetLinker;
    friend class XmiBuilder;
    using Index = IdTable::Index;
    static constexpr Index none = IdTable::none;

    /// Where an element stands: elements are numbered as in the file, so a subtree is a range.
    struct Place {
        Index parent = none;
        Index end = none;
        /// Which one of its siblings in the same feature, or which one of the roots.
        std::uint32_t ordinal = 0;
        /// The number of the feature of the parent; 0 for roots.
        std::uint32_t feature = 0;
    };

    Index indexOf(const ModelElement& element) const;
    const memory::PropertyObject& featureOf(const Place& place) const {
        return *features_[place.feature];
    }
    std::string pathOf(Index index) const;
    Index child(Index parent, std::string_view feature, std::size_t ordinal) const;
    Index childNamed(Index parent, std::string_view name, std::size_t ordinal) const;

    memory::Model model_;
    std::vector<ModelElement> roots_;
    std::vector<ModelElement> elements_;
    BlockList<Place> places_;
    /// Kept alive by the classes of the elements.
    std::vector<const memory::PropertyObject*> features_;
    ElementNumbers numbers_;
    IdTable ids_;
    std::size_t leftOut_ = 0;
};

}  // namespace nuv::zero::xmi
