#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "model/memory/Model.h"
#include "xmi/BlockList.h"
#include "xmi/ContentIndex.h"
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
///
/// An unchanging model may be asked by several threads at once. A model that was moved from can only
/// be destroyed and assigned to.
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
    /// (`//package/Class`), by the sources of annotations (`//Class/%documentation%`) and by values
    /// (`//@books[title='A']`). Where ids of a class are made of names, `Timer?type=Stimulus` finds
    /// an element, too. Costs a few look-ups; the first that asks for no id makes a table of all.
    ModelElement find(std::string_view idOrPath) const { return lookUp(idOrPath).element; }

    /// What a fragment leads to.
    struct Found {
        /// Null where there is nothing, or more than one.
        ModelElement element;
        /// Several elements are called so.
        bool isAmbiguous = false;
    };
    /// As `find`, for fragments of references, which may be encoded (`%20`).
    Found lookUp(std::string_view fragment) const;
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
    friend class ElementBuilder;
    friend class ModelSetLinker;
    friend class ReferenceResolver;
    friend class XmiBuilder;
    using Index = IdTable::Index;
    static constexpr Index none = IdTable::none;

    /// Finds by anything but ids; made by the first who asks.
    struct LazyContents {
        std::once_flag once;
        std::optional<ContentIndex> index;
    };
    /// The model as paths see it.
    struct Steps;

    Index indexOf(const ModelElement& element) const;
    const memory::PropertyObject& featureOf(const ElementPlace& place) const {
        return *features_[place.feature];
    }
    std::string pathOf(Index index) const;
    ContentIndex::Elements contentElements() const noexcept {
        return {elements_, places_, features_, namedClasses_};
    }
    /// REQUIRES: all elements are there with their values.
    const ContentIndex& contentIndex() const;
    Index root(std::size_t ordinal) const;
    Index goWay(const FragmentPath& path) const;

    memory::Model model_;
    std::vector<ModelElement> roots_;
    std::vector<ModelElement> elements_;
    BlockList<ElementPlace> places_;
    /// The roots that the file has, also those that were left out.
    std::size_t rootCount_ = 0;
    /// Kept alive by the classes of the elements.
    std::vector<const memory::PropertyObject*> features_;
    /// The classes whose elements have ids that are made of names, sorted by address.
    std::vector<const memory::ClassObject*> namedClasses_;
    /// Roots that an element of the file contains by reference, and that element; sorted.
    std::vector<std::pair<Index, Index>> containedRoots_;
    ElementNumbers numbers_;
    IdTable ids_;
    std::unique_ptr<LazyContents> contents_ = std::make_unique<LazyContents>();
    std::size_t leftOut_ = 0;
};

}  // namespace nuv::zero::xmi
