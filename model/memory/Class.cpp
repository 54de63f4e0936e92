#include "model/memory/Class.h"

#include <algorithm>
#include <functional>
#include <unordered_set>
#include <utility>

namespace nuv::zero::memory {

PropertyObject::PropertyObject(const meta::Class& metaClass, ClassObject& owner,
                               std::u16string_view name, const TypeObject& type, int upperBound,
                               PropertyFlags flags, std::uint32_t slot)
    : Object(metaClass, *owner.storage()),
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

ClassLayout::ClassLayout(const ClassObject& self, const std::vector<ClassObject*>& superclasses,
                         const ClassLayout* before) {
    if (before != nullptr) {
        slotOrder_ = before->slotOrder_;
        otherSlots_ = before->otherSlots_;
    }

    // The lineage of each superclass holds its ancestors in the right order already; what an
    // earlier superclass brought is left out, together with everything above it.
    std::unordered_set<const ClassObject*> seen;
    for (const ClassObject* superclass : superclasses) {
        for (const ClassObject* ancestor : superclass->layout().lineage()) {
            if (seen.insert(ancestor).second) lineage_.push_back(ancestor);
        }
    }
    lineage_.push_back(&self);
    isChain_ = superclasses.empty() ||
               (superclasses.size() == 1 && superclasses.front()->layout().isChain_);
    sortedLineage_ = lineage_;
    std::sort(sortedLineage_.begin(), sortedLineage_.end(), std::less<>());

    for (const ClassObject* ancestor : lineage_) {
        for (const PropertyObject& property : ancestor->ownProperties()) {
            if (slotOf(property) == noSlot) takeSlot(property);
        }
    }
}

bool ClassLayout::isAmongAncestors(const ClassObject& other) const noexcept {
    return std::binary_search(sortedLineage_.begin(), sortedLineage_.end(), &other, std::less<>());
}

ClassLayout::Slot ClassLayout::lookUpSlot(const PropertyObject& property) const noexcept {
    if (otherSlots_.empty()) return noSlot;
    const auto found = otherSlots_.find(&property);
    return found == otherSlots_.end() ? noSlot : found->second;
}

void ClassLayout::takeSlot(const PropertyObject& property) {
    const Slot slot = slotCount();
    slotOrder_.push_back(&property);
    if (slot == property.slotHint_) return;
    try {
        otherSlots_.emplace(&property, slot);
    } catch (...) {
        slotOrder_.pop_back();
        throw;
    }
}

void ClassLayout::giveBackSlot(const PropertyObject& property) noexcept {
    slotOrder_.pop_back();
    otherSlots_.erase(&property);
}

ClassObject::ClassObject(const ClassObject* metaClass, std::u16string_view name,
                         std::u16string_view qualifiedName, Storage& storage,
                         std::vector<ClassObject*> superclasses)
    : StructuredTypeObject(Kind::Class, name, qualifiedName,
                           metaClass != nullptr ? metaClass->self_ : self_, storage),
      superclasses_(std::move(superclasses)),
      layout_(*this, superclasses_, nullptr) {
    self_ = Lending::lend<meta::Class>(this);
}

ClassObject::~ClassObject() {
    Lending::forget(self_);
}

std::vector<meta::Property> ClassObject::getAllClassProperties() const {
    std::vector<meta::Property> properties;
    properties.reserve(layout_.slotCount());
    for (const ClassObject* ancestor : layout_.lineage()) {
        for (const PropertyObject& property : ancestor->ownProperties_) {
            properties.emplace_back(&property);
        }
    }
    return properties;
}

meta::Property ClassObject::getProperty(std::u16string_view name) const {
    if (const PropertyObject* own = findOwn(name)) return meta::Property(own);

    std::unordered_set<const ClassObject*> seen;
    std::vector<const ClassObject*> toSearch;
    const auto superclassesNext = [&toSearch](const ClassObject& of) {
        toSearch.insert(toSearch.end(), of.superclasses_.rbegin(), of.superclasses_.rend());
    };
    superclassesNext(*this);
    while (!toSearch.empty()) {
        const ClassObject& ancestor = *toSearch.back();
        toSearch.pop_back();
        if (!seen.insert(&ancestor).second) continue;
        if (const PropertyObject* inherited = ancestor.findOwn(name)) {
            return meta::Property(inherited);
        }
        superclassesNext(ancestor);
    }
    return {};
}

bool ClassObject::hasProperty(const meta::Property& property) const noexcept {
    return property && layout_.slotOf(*property.get()) != ClassLayout::noSlot;
}

std::vector<meta::Class> ClassObject::getSuperclasses() const {
    std::vector<meta::Class> superclasses;
    superclasses.reserve(superclasses_.size());
    for (const ClassObject* superclass : superclasses_) superclasses.emplace_back(superclass);
    return superclasses;
}

const PropertyObject* ClassObject::findOwn(std::u16string_view name) const noexcept {
    for (const PropertyObject& property : ownProperties_) {
        if (property.getName() == name) return &property;
    }
    return nullptr;
}

}  // namespace nuv::zero::memory
