#include "model/memory/Type.h"

#include "model/memory/Class.h"
#include "model/memory/StandardMetamodel.h"

namespace nuv::zero::memory {

TypeObject::TypeObject(Kind kind, std::u16string_view name, std::u16string_view qualifiedName,
                       const meta::Class& metaClass, Storage& storage)
    : Object(metaClass, storage), name_(name), qualifiedName_(qualifiedName), kind_(kind) {}

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

namespace {

/// The last part of a qualified name.
std::u16string_view simpleName(std::u16string_view qualifiedName) {
    const std::size_t separator = qualifiedName.rfind(u"::");
    return separator == std::u16string_view::npos ? qualifiedName
                                                  : qualifiedName.substr(separator + 2);
}

}  // namespace

PrimitiveTypeObject::PrimitiveTypeObject(Kind kind, std::u16string_view qualifiedName,
                                         const meta::Class& metaClass, Storage& storage)
    : StructuredTypeObject(kind, simpleName(qualifiedName), qualifiedName, metaClass, storage) {}

}  // namespace nuv::zero::memory

namespace nuv::zero::meta {

const PrimitiveType& StandardTypes::stringMeta() {
    static const PrimitiveType& type =
        *new PrimitiveType(internal::getPrimitiveTypeFromMetaRegistry(u"String"));
    return type;
}

PrimitiveType internal::getPrimitiveTypeFromMetaRegistry(std::u16string_view name) {
    const memory::PrimitiveTypeObject& string = memory::StandardMetamodel::instance().stringType();
    return PrimitiveType(name == string.getQualifiedName() ? &string : nullptr);
}

}  // namespace nuv::zero::meta
