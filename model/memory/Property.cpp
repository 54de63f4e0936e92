#include "model/memory/Property.h"

#include "model/memory/Class.h"
#include "model/memory/StandardMetamodel.h"

namespace nuv::zero::memory {

PropertyObject::PropertyObject(ClassObject& owner, std::u16string_view name, const TypeObject& type,
                               int upperBound, PropertyFlags flags, std::uint32_t slot)
    : Object(StandardMetamodel::instance().classOfProperties().handle(), *owner.storage()),
      owner_(&owner),
      type_(&type),
      name_(name),
      upperBound_(upperBound),
      flags_(flags),
      emptyWhenNeverSet_(upperBound == 1 || type.isClass()),
      slotHint_(slot) {}

PropertyObject::~PropertyObject() {
    Lending::forget(opposite_);
}

meta::StructuredType PropertyObject::getOwningType() const noexcept {
    return meta::StructuredType(owner_);
}

}  // namespace nuv::zero::memory
