#include "model/memory/Metamodel.h"

#include <unordered_set>
#include <utility>

#include "model/memory/Describe.h"
#include "model/memory/Hierarchy.h"
#include "model/memory/MetamodelStorage.h"
#include "model/memory/StandardMetamodel.h"

namespace nuv::zero::memory {
namespace {

using describe::quoted;

/// The superclasses as objects, none null and none twice.
std::vector<ClassObject*> checkedSuperclasses(std::u16string_view name,
                                              const std::vector<meta::Class>& superclasses) {
    std::vector<ClassObject*> checked;
    checked.reserve(superclasses.size());
    std::unordered_set<const ClassObject*> seen;
    for (const meta::Class& superclass : superclasses) {
        if (!superclass) {
            throw ModelError("The class " + quoted(name) + " cannot have a null superclass.");
        }
        if (!seen.insert(superclass.get()).second) {
            throw ModelError("The class " + quoted(name) + " cannot have the superclass " +
                             describe::type(*superclass.get()) + " twice.");
        }
        checked.push_back(superclass.get());
    }
    return checked;
}

}  // namespace

ModelError::~ModelError() = default;

Metamodel::Metamodel(std::u16string_view name) : storage_(new MetamodelStorage(name)) {}

Metamodel::Metamodel(Metamodel&& other) noexcept
    : storage_(std::exchange(other.storage_, nullptr)) {}

Metamodel& Metamodel::operator=(Metamodel&& other) noexcept {
    Metamodel taken(std::move(other));
    std::swap(storage_, taken.storage_);
    return *this;
}

Metamodel::~Metamodel() {
    if (storage_ == nullptr) return;
    storage_->giveUpObjects();
    storage_->release();
}

MetamodelStorage& Metamodel::storage() {
    if (storage_ == nullptr) storage_ = new MetamodelStorage(u"");
    return *storage_;
}

Pins Metamodel::pinsWith(const std::vector<const TypeObject*>& used) {
    MetamodelStorage& own = storage();
    Pins pins = own.pins();
    for (const TypeObject* type : used) {
        if (type->storage() == &own || pins.holds(type->storage())) continue;
        // Only metamodels hold types.
        const auto& other = static_cast<const MetamodelStorage&>(*type->storage());
        if (other.reaches(own)) {
            throw ModelError("The metamodel " + quoted(own.name()) + " cannot use " +
                             describe::type(*type) + ", because the metamodel " +
                             quoted(other.name()) + " uses it already.");
        }
        pins.pin(type->storage());
    }
    return pins;
}

meta::Class Metamodel::addClass(std::u16string_view name,
                                const std::vector<meta::Class>& superclasses,
                                const std::optional<std::u16string>& qualifiedName) {
    MetamodelStorage& own = storage();
    std::vector<ClassObject*> checked = checkedSuperclasses(name, superclasses);
    Pins pins = pinsWith({checked.begin(), checked.end()});

    std::u16string fullName = qualifiedName.value_or(u"");
    if (!qualifiedName) {
        if (!own.name().empty()) fullName.append(own.name()).append(u"::");
        fullName.append(name);
    }

    Hierarchy hierarchy;
    hierarchy.prepareLink(checked);
    ClassObject& made = own.classes().emplace_back(&StandardMetamodel::instance().classOfClasses(),
                                                   name, fullName, own, std::move(checked));
    hierarchy.link(made);
    own.pins() = std::move(pins);
    return meta::Class(&made);
}

void Metamodel::addSuperclass(const meta::Class& subclass, const meta::Class& superclass) {
    MetamodelStorage& own = storage();
    if (!subclass) throw ModelError("A null class cannot have a superclass.");
    const std::string name = describe::type(*subclass.get());
    if (subclass->storage() != &own) {
        throw ModelError("The class " + name + " is not of the metamodel " + quoted(own.name()) +
                         ", which therefore cannot add a superclass.");
    }
    if (!superclass) throw ModelError("The class " + name + " cannot have a null superclass.");
    const std::string superName = describe::type(*superclass.get());
    for (const meta::Class& present : subclass->getSuperclasses()) {
        if (present == superclass) {
            throw ModelError("The class " + name + " has the superclass " + superName +
                             " already.");
        }
    }
    if (superclass->isKindOf(*subclass.get())) {
        throw ModelError("The class " + name + " cannot have the superclass " + superName +
                         ", because it would become its own ancestor.");
    }
    Pins pins = pinsWith({superclass.get()});
    Hierarchy().addSuperclass(*subclass.get(), *superclass.get());
    own.pins() = std::move(pins);
}

meta::PrimitiveType Metamodel::addPrimitive(std::u16string_view qualifiedName,
                                            TypeObject::Kind kind) {
    MetamodelStorage& own = storage();
    if (kind == TypeObject::Kind::Class) {
        throw ModelError("The primitive type " + quoted(qualifiedName) +
                         " cannot be a class; its values are texts or integers.");
    }
    PrimitiveTypeObject& made = own.primitives().emplace_back(
        kind, qualifiedName, StandardMetamodel::instance().classOfPrimitiveTypes().handle(), own);
    return meta::PrimitiveType(&made);
}

meta::Property Metamodel::addProperty(const meta::Class& owner, std::u16string_view name,
                                      const meta::Type& type, int upperBound, PropertyFlags flags) {
    MetamodelStorage& own = storage();
    if (!owner) throw ModelError("A null class cannot have the property " + quoted(name) + ".");
    const auto refusal = [&] {
        return "The class " + describe::type(*owner.get()) + " cannot have the property " +
               quoted(name);
    };
    if (owner->storage() != &own) {
        throw ModelError(refusal() + " from the metamodel " + quoted(own.name()) +
                         ", because it is of another one.");
    }
    if (!type) throw ModelError(refusal() + " without a type.");
    Pins pins = pinsWith({type.get()});
    PropertyObject& made =
        Hierarchy().addProperty(StandardMetamodel::instance().classOfProperties().handle(),
                                *owner.get(), name, *type.get(), upperBound, flags);
    own.pins() = std::move(pins);
    return meta::Property(&made);
}

void Metamodel::checkOpposite(const meta::Property& property,
                              const meta::Property& opposite) const {
    if (!property) throw ModelError("A null property cannot have an opposite.");
    const std::string own = describe::property(*property.get());
    if (!opposite) throw ModelError("The property " + own + " cannot have a null opposite.");
    const std::string oppositeName = describe::property(*opposite.get());
    for (const meta::Property* each : {&property, &opposite}) {
        if ((*each)->storage() == storage_) continue;
        throw ModelError("The property " + own + " cannot have the opposite " + oppositeName +
                         ", because " + describe::property(*each->get()) +
                         " is not of the metamodel " + quoted(name()) + ".");
    }
    const meta::Property& present = property->getOpposite();
    if (present && !(present == opposite)) {
        throw ModelError("The property " + own + " cannot have the opposite " + oppositeName +
                         ", because it has the opposite " + describe::property(*present.get()) +
                         " already.");
    }
}

void Metamodel::setOpposite(const meta::Property& property, const meta::Property& opposite) {
    checkOpposite(property, opposite);
    Hierarchy::setOpposite(*property.get(), *opposite.get());
}

void Metamodel::setOpposites(const meta::Property& one, const meta::Property& other) {
    checkOpposite(one, other);
    checkOpposite(other, one);
    Hierarchy::setOpposite(*one.get(), *other.get());
    Hierarchy::setOpposite(*other.get(), *one.get());
}

std::u16string Metamodel::name() const {
    return storage_ == nullptr ? std::u16string() : storage_->name();
}

std::vector<meta::Class> Metamodel::classes() const {
    std::vector<meta::Class> classes;
    if (storage_ == nullptr) return classes;
    for (const ClassObject& type : storage_->classes()) classes.push_back(type.handle());
    return classes;
}

}  // namespace nuv::zero::memory
