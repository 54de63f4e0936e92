#include "model/memory/Type.h"

namespace nuv::zero::memory {
namespace {

/// The last part of a qualified name.
std::u16string_view simpleName(std::u16string_view qualifiedName) {
    const std::size_t separator = qualifiedName.rfind(u"::");
    return separator == std::u16string_view::npos ? qualifiedName
                                                  : qualifiedName.substr(separator + 2);
}

}  // namespace

TypeObject::TypeObject(Kind kind, std::u16string_view name, std::u16string_view qualifiedName,
                       const meta::Class& metaClass, Storage& storage)
    : Object(metaClass, storage), name_(name), qualifiedName_(qualifiedName), kind_(kind) {}

PrimitiveTypeObject::PrimitiveTypeObject(Kind kind, std::u16string_view qualifiedName,
                                         const meta::Class& metaClass, Storage& storage)
    : StructuredTypeObject(kind, simpleName(qualifiedName), qualifiedName, metaClass, storage) {}

}  // namespace nuv::zero::memory
