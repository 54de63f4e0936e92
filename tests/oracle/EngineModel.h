#pragma once

#include <unordered_map>
#include <vector>

#include "model/Framework.h"
#include "model/memory/Metamodel.h"
#include "model/memory/Model.h"
#include "tests/oracle/PlainWorld.h"
#include "traversal/internal/Link.h"

namespace nuv::zero::oracle {

/// An in-memory model of a world, and the way between handles and indices.
class EngineModel {
  public:
    explicit EngineModel(const PlainWorld& world);

    meta::Class classAt(int index) const;
    meta::Property propertyAt(int index) const;
    ModelElement elementAt(int index) const;
    /// The index of an element, a class or a property; `none` for a null handle.
    int indexOf(const ModelElement& object) const;
    IndexedLink stepOf(const traversal::internal::Link& link) const;

  private:
    /// Adds a handle behind the others of its kind.
    template <class Handle>
    void keep(std::vector<Handle>& handles, const Handle& handle) {
        indices_.emplace(handle, static_cast<int>(handles.size()));
        handles.push_back(handle);
    }
    meta::Type typeAt(int index) const;
    void add(const PropertyDefinition& property);
    void plant(int element, int property, const ValueDefinition& value);

    memory::Metamodel metamodel_{u"m"};
    memory::Model model_;
    meta::PrimitiveType integer_;
    std::vector<meta::Class> classes_;
    std::vector<meta::Property> properties_;
    std::vector<ModelElement> elements_;
    std::unordered_map<ModelElement, int> indices_;
};

}  // namespace nuv::zero::oracle
