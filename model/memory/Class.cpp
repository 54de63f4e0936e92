#include "model/memory/Class.h"

#include <unordered_set>
#include <utility>

#include "model/memory/StandardMetamodel.h"

namespace nuv::zero::memory {

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

namespace nuv::zero::meta {

const Class& Class::metaClass() {
    return memory::StandardMetamodel::instance().classOfClasses().handle();
}

}  // namespace nuv::zero::meta
