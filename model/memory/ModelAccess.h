#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Class.h"
#include "Text.h"
#include "Value.h"

/// What the traversal library asks of a framework beyond its handles, as free functions: a host
/// that brings its own framework writes these few for it.
namespace nuv::zero::access {

/// The class of a null element. Not local to the function, which would look every time whether it
/// has been made.
inline constinit const meta::Class nullClass;

/// The class of an element. The class of a null element is a null class.
inline const meta::Class& classOf(const ModelElement& element) noexcept {
    return element ? element->getClass() : nullClass;
}

/// The value of a property, read with public access. REQUIRES: both handles are not null.
inline Value read(const ModelElement& element, const meta::Property& property) {
    return element->get(property, ModelElement::Impl::ReflectionPrivateTag::PUBLIC_ACCESS);
}

inline const std::u16string& nameOf(const meta::Class& type) noexcept {
    return type->getName();
}
inline const std::u16string& nameOf(const meta::Property& property) noexcept {
    return property->getName();
}
inline const std::u16string& qualifiedNameOf(const meta::Class& type) noexcept {
    return type->getQualifiedName();
}

/// The properties of a class, inherited ones included; none for a null class.
inline std::vector<meta::Property> allProperties(const meta::Class& type) {
    return type ? type->getAllClassProperties() : std::vector<meta::Property>();
}
/// The property of that name; null where the class has none.
inline meta::Property propertyNamed(const meta::Class& type, std::u16string_view name) {
    return type ? type->getProperty(name) : meta::Property();
}
inline bool hasProperty(const meta::Class& type, const meta::Property& property) noexcept {
    return type && property && type->hasProperty(property);
}
/// Whether a class is another one or a subclass of it.
inline bool conformsTo(const meta::Class& type, const meta::Type& other) noexcept {
    return type && other && type->conformsTo(other);
}

/// The class that declares a property; null for a null property.
inline meta::Class owningClass(const meta::Property& property) {
    return property ? meta::Class(property->getOwningType()) : meta::Class();
}
/// The other end of a property; null where there is none. REQUIRES: the property is not null.
inline const meta::Property& oppositeOf(const meta::Property& property) noexcept {
    return property->getOpposite();
}
/// The property as the element that it also is.
inline const ModelElement& asElement(const meta::Property& property) noexcept {
    return property;
}
/// Flags; a null property has none.
inline bool isAssociation(const meta::Property& property) noexcept {
    return property && property->isAssociation();
}
inline bool isDerived(const meta::Property& property) noexcept {
    return property && property->isDerived();
}
inline bool isComposite(const meta::Property& property) noexcept {
    return property && property->isComposite();
}
inline bool isSingleValued(const meta::Property& property) noexcept {
    return property->isSingleValued();
}

/// Whether a value holds something, and the three conversions, which throw
/// `CannotCastIncompatibleTypes` when the value is of another kind.
inline bool isSet(const Value& value) noexcept {
    return value.isSet();
}
inline ModelElement toElement(const Value& value) {
    return value.asElement();
}
inline std::vector<ModelElement> toElements(const Value& value) {
    return value.asElements();
}
inline std::u16string toString(const Value& value) {
    return value.asString();
}

inline std::string toUtf8(std::u16string_view text) {
    return text::toUtf8(text);
}

}  // namespace nuv::zero::access
