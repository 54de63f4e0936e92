#include "model/memory/StandardMetamodel.h"

#include <memory>

#include "model/memory/MetamodelStorage.h"

namespace nuv::zero::memory {
namespace {

struct ReleaseStorage {
    void operator()(Storage* storage) const noexcept { storage->release(); }
};

}  // namespace

const StandardMetamodel& StandardMetamodel::instance() {
    static const StandardMetamodel& one = *new StandardMetamodel;
    return one;
}

StandardMetamodel::StandardMetamodel() {
    const std::unique_ptr<MetamodelStorage, ReleaseStorage> storage(new MetamodelStorage(u""));
    storage_.pin(storage.get());

    const auto make = [&](const ClassObject* metaClass, std::u16string_view name) {
        return &storage->classes().emplace_back(metaClass, name, name, *storage,
                                                std::vector<ClassObject*>());
    };
    classes_ = make(nullptr, u"Class");
    elements_ = make(classes_, u"ModelElement");
    properties_ = make(classes_, u"Property");
    primitiveTypes_ = make(classes_, u"PrimitiveType");
    string_ = &storage->primitives().emplace_back(TypeObject::Kind::Text, u"String",
                                                  primitiveTypes_->handle(), *storage);
}

bool TypeObject::conformsTo(const meta::Type& other) const noexcept {
    if (!other) return false;
    if (other.get() == this) return true;
    if (!isClass() || !other->isClass()) return false;
    const auto& declared = static_cast<const ClassObject&>(*other.get());
    if (static_cast<const ClassObject*>(this)->isKindOf(declared)) return true;
    const StandardMetamodel& standard = StandardMetamodel::instance();
    return &declared == &standard.classOfElements() || &declared == &standard.classOfClasses();
}

bool TypeObject::canStandFor(const TypeObject& declared) const noexcept {
    if (!isClass() || !declared.isClass()) return false;
    return static_cast<const ClassObject*>(this)->isKindOf(
               static_cast<const ClassObject&>(declared)) ||
           &declared == &StandardMetamodel::instance().classOfElements();
}

}  // namespace nuv::zero::memory

namespace nuv::zero {

const meta::Class& ModelElement::metaClass() {
    return memory::StandardMetamodel::instance().classOfElements().handle();
}

namespace meta {

const Class& Class::metaClass() {
    return memory::StandardMetamodel::instance().classOfClasses().handle();
}

const PrimitiveType& StandardTypes::stringMeta() {
    static const PrimitiveType& type =
        *new PrimitiveType(internal::getPrimitiveTypeFromMetaRegistry(u"String"));
    return type;
}

PrimitiveType internal::getPrimitiveTypeFromMetaRegistry(std::u16string_view name) {
    const memory::PrimitiveTypeObject& string = memory::StandardMetamodel::instance().stringType();
    return PrimitiveType(name == string.getQualifiedName() ? &string : nullptr);
}

}  // namespace meta

}  // namespace nuv::zero
