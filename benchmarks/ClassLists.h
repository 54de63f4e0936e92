#pragma once

#include <span>
#include <unordered_map>
#include <vector>

#include "benchmarks/Walks.h"

namespace nuv::zero::benchmarks {

using PropertyList = std::span<const memory::PropertyObject* const>;

/// The rules of a walk, resolved by hand: the properties to follow from the elements of a class, in
/// order. Written without the library, so that it can contradict it, and as one would write it: a
/// map from class to list, asked only when the class is not the one before.
class ClassLists {
  public:
    explicit ClassLists(const Walk& walk) : walk_(&walk) {}

    /// The list for the class of an element; what it views lasts as long as this object.
    PropertyList of(const memory::Object& element) {
        const memory::ClassObject* type = element.getClass().get();
        if (type != latestType_) {
            latestType_ = type;
            latest_ = lookUp(*type);
        }
        return latest_;
    }

  private:
    PropertyList lookUp(const memory::ClassObject& type);
    std::vector<const memory::PropertyObject*> resolve(const memory::ClassObject& type) const;

    const Walk* walk_;
    std::unordered_map<const memory::ClassObject*, std::vector<const memory::PropertyObject*>>
        lists_;
    const memory::ClassObject* latestType_ = nullptr;
    PropertyList latest_;
};

}  // namespace nuv::zero::benchmarks
