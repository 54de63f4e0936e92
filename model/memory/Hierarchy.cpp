#include "model/memory/Hierarchy.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

namespace nuv::zero::memory {
namespace {

/// Makes room for one more entry, growing by factors so that many calls stay linear.
template <class T>
void reserveOneMore(std::vector<T>& entries) {
    if (entries.size() < entries.capacity()) return;
    entries.reserve(std::max<std::size_t>(4, 2 * entries.size()));
}

}  // namespace

void Hierarchy::prepareLink(const std::vector<ClassObject*>& superclasses) {
    for (ClassObject* superclass : superclasses) reserveOneMore(superclass->subclasses_);
}

void Hierarchy::link(ClassObject& type) noexcept {
    for (ClassObject* superclass : type.superclasses_) superclass->subclasses_.push_back(&type);
}

void Hierarchy::addSuperclass(ClassObject& type, ClassObject& superclass) {
    reserveOneMore(type.superclasses_);
    reserveOneMore(superclass.subclasses_);
    const std::vector<ClassObject*> affected = descendants(type);

    // Each layout is made from those of the superclasses, so the new ones have to take their place
    // as they are made; the old ones are kept until nothing can fail any more.
    std::vector<ClassLayout> kept;
    kept.reserve(affected.size());
    type.superclasses_.push_back(&superclass);
    try {
        for (ClassObject* each : affected) {
            ClassLayout layout(*each, each->superclasses_, &each->layout_);
            kept.push_back(std::exchange(each->layout_, std::move(layout)));
        }
    } catch (...) {
        for (std::size_t i = 0; i < kept.size(); ++i) affected[i]->layout_ = std::move(kept[i]);
        type.superclasses_.pop_back();
        throw;
    }
    superclass.subclasses_.push_back(&type);
}

PropertyObject& Hierarchy::addProperty(const meta::Class& metaClass, ClassObject& owner,
                                       std::u16string_view name, const TypeObject& type,
                                       int upperBound, PropertyFlags flags) {
    const std::vector<ClassObject*> affected = descendants(owner);
    PropertyObject& property = owner.ownProperties_.emplace_back(
        metaClass, owner, name, type, upperBound, flags, owner.layout_.slotCount());
    std::size_t done = 0;
    try {
        for (; done < affected.size(); ++done) affected[done]->layout_.takeSlot(property);
    } catch (...) {
        for (std::size_t i = 0; i < done; ++i) affected[i]->layout_.giveBackSlot(property);
        owner.ownProperties_.pop_back();
        throw;
    }
    return property;
}

void Hierarchy::setOpposite(PropertyObject& property, const PropertyObject& opposite) noexcept {
    // An opposite is not counted; set again, the old one must not be released either.
    Lending::forget(property.opposite_);
    property.opposite_ = Lending::lend<meta::Property>(&opposite);
}

void Hierarchy::takeOutOfForeign(std::deque<ClassObject>& classes) noexcept {
    const std::lock_guard<std::mutex> lock(mutex());
    for (ClassObject& type : classes) {
        for (ClassObject* superclass : type.superclasses_) {
            if (superclass->storage() == type.storage()) continue;
            std::erase(superclass->subclasses_, &type);
        }
    }
}

std::mutex& Hierarchy::mutex() {
    // Needs neither construction nor destruction: metamodels may be dropped while static objects
    // are destroyed.
    static constinit std::mutex one;
    return one;
}

std::vector<ClassObject*> Hierarchy::descendants(ClassObject& type) {
    struct Visit {
        ClassObject* type;
        std::size_t next;
    };
    std::vector<ClassObject*> finished;
    std::unordered_set<const ClassObject*> seen{&type};
    std::vector<Visit> path{{&type, 0}};
    while (!path.empty()) {
        Visit& visit = path.back();
        if (visit.next == visit.type->subclasses_.size()) {
            finished.push_back(visit.type);
            path.pop_back();
            continue;
        }
        ClassObject* subclass = visit.type->subclasses_[visit.next++];
        if (seen.insert(subclass).second) path.push_back({subclass, 0});
    }
    std::reverse(finished.begin(), finished.end());
    return finished;
}

}  // namespace nuv::zero::memory
