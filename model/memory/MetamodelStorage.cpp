#include "model/memory/MetamodelStorage.h"

#include <unordered_set>
#include <vector>

#include "model/memory/Hierarchy.h"

namespace nuv::zero::memory {

MetamodelStorage::~MetamodelStorage() {
    Hierarchy::takeOutOfForeign(classes_);
}

bool MetamodelStorage::reaches(const Storage& other) const {
    std::unordered_set<const Storage*> seen{this};
    std::vector<const MetamodelStorage*> toVisit{this};
    while (!toVisit.empty()) {
        const MetamodelStorage& visited = *toVisit.back();
        toVisit.pop_back();
        if (&visited == &other) return true;
        for (const Storage* pinned : visited.pins_.storages()) {
            // Types live in metamodels only, so that is all that a metamodel pins.
            if (seen.insert(pinned).second) {
                toVisit.push_back(static_cast<const MetamodelStorage*>(pinned));
            }
        }
    }
    return false;
}

void MetamodelStorage::giveUpObjects() noexcept {
    for (const PrimitiveTypeObject& primitive : primitives_) primitive.giveUp();
    for (const ClassObject& type : classes_) {
        for (const PropertyObject& property : type.ownProperties()) property.giveUp();
        type.giveUp();
    }
}

}  // namespace nuv::zero::memory
