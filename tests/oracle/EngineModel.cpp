#include "tests/oracle/EngineModel.h"

namespace nuv::zero::oracle {

EngineModel::EngineModel(const PlainWorld& world)
    : integer_(metamodel_.addPrimitive(u"Integer", memory::TypeObject::Kind::Integer)) {
    for (const ClassDefinition& definition : world.classes) {
        std::vector<meta::Class> superclasses;
        for (const int superclass : definition.superclasses) {
            superclasses.push_back(classAt(superclass));
        }
        keep(classes_, metamodel_.addClass(u"Class", superclasses, definition.qualifiedName));
    }
    for (const PropertyDefinition& definition : world.properties) add(definition);
    for (std::size_t index = 0; index < properties_.size(); ++index) {
        const int opposite = world.properties[index].opposite;
        if (opposite != none) metamodel_.setOpposite(properties_[index], propertyAt(opposite));
    }
    for (const int type : world.elements) keep(elements_, model_.create(classAt(type)));
    for (const auto& [place, value] : world.values) plant(place.first, place.second, value);
}

meta::Class EngineModel::classAt(int index) const {
    return index < 0 ? meta::Class() : classes_.at(static_cast<std::size_t>(index));
}

meta::Property EngineModel::propertyAt(int index) const {
    return index < 0 ? meta::Property() : properties_.at(static_cast<std::size_t>(index));
}

ModelElement EngineModel::elementAt(int index) const {
    return index < 0 ? ModelElement() : elements_.at(static_cast<std::size_t>(index));
}

int EngineModel::indexOf(const ModelElement& object) const {
    return object ? indices_.at(object) : none;
}

IndexedLink EngineModel::stepOf(const traversal::internal::Link& link) const {
    return {indexOf(link.getSource()), indexOf(link.getProperty()), indexOf(link.getTarget()),
            link.shouldCascade()};
}

meta::Type EngineModel::typeAt(int index) const {
    if (index == stringType) return meta::StandardTypes::stringMeta();
    if (index == integerType) return integer_;
    return classAt(index);
}

void EngineModel::add(const PropertyDefinition& property) {
    using memory::PropertyFlags;
    PropertyFlags flags = PropertyFlags::None;
    if (property.association) flags = flags | PropertyFlags::Association;
    if (property.derived) flags = flags | PropertyFlags::Derived;
    if (property.composite) flags = flags | PropertyFlags::Composite;
    keep(properties_, metamodel_.addProperty(classAt(property.owner), property.name,
                                             typeAt(property.type), property.upperBound, flags));
}

void EngineModel::plant(int element, int property, const ValueDefinition& value) {
    memory::PlantedValue planted{typeAt(value.type), value.many, {}};
    std::vector<ModelElement> targets;
    for (const int target : value.elements) targets.push_back(elementAt(target));
    switch (value.payload) {
        case ValueDefinition::Payload::Elements:
            try {
                if (value.many) {
                    model_.set(elementAt(element), propertyAt(property), targets);
                } else {
                    model_.set(elementAt(element), propertyAt(property), targets.front());
                }
                return;
            } catch (const memory::ModelError&) {
                // What a checked model refuses is planted.
            }
            if (value.many) {
                planted.data = targets;
            } else {
                planted.data = targets.front();
            }
            break;
        case ValueDefinition::Payload::Text:
            planted.data = std::u16string(u"text");
            break;
        case ValueDefinition::Payload::Integer:
            planted.data = std::int64_t{1};
            break;
        case ValueDefinition::Payload::Nothing:
            break;
    }
    model_.plant(elementAt(element), propertyAt(property), std::move(planted));
}

}  // namespace nuv::zero::oracle
