#pragma once

#include <concepts>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "ChosenFramework.h"

/// Everything that the traversal library requires of a model framework.
///
/// A framework supplies handles in `nuv::zero` and `nuv::zero::meta`, and one small set of
/// functions in `nuv::zero::access`. This header checks both at compile time and says what is
/// missing. It names nothing of the in-memory model, so it holds for any framework.
///
/// What the compiler cannot check: two handles are equal exactly when they designate the same
/// object; a property as an element hashes as the property does; copying a handle keeps the object
/// alive.
///
/// Null handles are copied, moved, assigned, destroyed, tested, compared and hashed like any other.
/// The functions of `access` and `->` are never called with one, so a framework need not look out
/// for them. Their answers may be null handles, and lists of elements may hold some.
///
/// Names and other texts are anything that converts to `std::u16string_view`, by value or by
/// reference: strings, views, pointers to characters that end with a zero. The library turns each
/// answer into a view before it looks at it, and compares texts by their UTF-16 code units.
namespace nuv::zero::access::contract {

// The calls below are unqualified on purpose: a function that is missing from `access` then makes a
// concept false, and the assertion speaks, instead of the compiler about an unknown name.

/// One pointer to a counted object: cheap to copy, null by default, compared by identity. Walks
/// copy handles where nothing can be undone any more, so a copy must not throw. A handle that
/// turned into a number or a bool by itself would be compared and hashed as one.
template <class H>
concept Handle = std::is_nothrow_default_constructible_v<H> && std::copyable<H> &&
                 std::is_nothrow_copy_constructible_v<H> && std::is_nothrow_copy_assignable_v<H> &&
                 std::is_nothrow_move_constructible_v<H> && std::is_nothrow_move_assignable_v<H> &&
                 std::is_nothrow_destructible_v<H> && std::is_constructible_v<bool, const H&> &&
                 !std::is_convertible_v<const H&, bool> &&
                 std::equality_comparable<H>;

template <class H>
concept Hashed = requires(const H& handle) {
    { std::hash<H>()(handle) } -> std::same_as<std::size_t>;
};

/// Text of a framework, by value or by reference, or a pointer to its first character.
template <class T>
concept Utf16 = std::convertible_to<T, std::u16string_view>;

template <class Element, class Property>
concept ReadByReflection = requires(const Element& element, const Property& property) {
    { read(element, property) } -> std::convertible_to<Value>;
    Element::Impl::ReflectionPrivateTag::PUBLIC_ACCESS;
};

template <class Element, class Class>
concept ElementWithClass = requires(const Element& element) {
    { Element::metaClass() } -> std::same_as<const Class&>;
    { classOf(element) } -> std::convertible_to<const Class&>;
};

template <class Class>
concept NamedClass = requires(const Class& type) {
    { Class::metaClass() } -> std::same_as<const Class&>;
    { nameOf(type) } -> Utf16;
    { qualifiedNameOf(type) } -> Utf16;
};

template <class Class, class Property>
concept ClassWithProperties = requires(const Class& type, const Property& property,
                                       std::u16string_view name) {
    { allProperties(type) } -> std::convertible_to<std::vector<Property>>;
    { propertyNamed(type, name) } -> std::convertible_to<Property>;
    { hasProperty(type, property) } -> std::same_as<bool>;
};

template <class Class, class Type>
concept ConformingClass = std::convertible_to<const Class&, const Type&> &&
    requires(const Class& type, const Type& other) {
    { conformsTo(type, other) } -> std::same_as<bool>;
};

template <class Property>
concept DescribedProperty = requires(const Property& property) {
    { nameOf(property) } -> Utf16;
    { isSingleValued(property) } -> std::same_as<bool>;
    { isAssociation(property) } -> std::same_as<bool>;
    { isDerived(property) } -> std::same_as<bool>;
    { isComposite(property) } -> std::same_as<bool>;
};

template <class Property, class Class, class Element>
concept PropertyInPlace = std::convertible_to<const Property&, Element> &&
    requires(const Property& property) {
    { oppositeOf(property) } -> std::convertible_to<Property>;
    { owningClass(property) } -> std::convertible_to<Class>;
};

template <class Type, class PrimitiveType>
concept NamedType = requires(const Type& type) {
    { type->getQualifiedName() } -> Utf16;
}
&&std::convertible_to<const PrimitiveType&, const Type&>;

template <class Structured, class Type, class Class>
concept TypeOfOwners = std::convertible_to<const Structured&, const Type&> &&
    std::constructible_from<Class, Structured>;

template <class Value, class Type>
concept DescribedValue = std::copy_constructible<Value> && requires(const Value& value) {
    { isSet(value) } -> std::same_as<bool>;
    { value.getMeta().getType() } -> std::convertible_to<const Type&>;
};

template <class Value, class Element>
concept ConvertibleValue = requires(const Value& value) {
    { toElement(value) } -> std::convertible_to<Element>;
    { toElements(value) } -> std::convertible_to<std::vector<Element>>;
    { toString(value) } -> Utf16;
};

template <class Text>
concept ConvertedText = requires(const Text& text) {
    { toUtf8(text) } -> std::convertible_to<std::string>;
};

static_assert(Handle<ModelElement>,
              "nuv::zero::ModelElement has to be a handle: default (null), noexcept copies and "
              "moves, an explicit operator bool and == by identity");
static_assert(
    Hashed<ModelElement>,
    "std::hash<nuv::zero::ModelElement> is missing: it hashes the identity of the object");
static_assert(ElementWithClass<ModelElement, meta::Class>,
              "an element has to tell its class: const meta::Class& ModelElement::metaClass() and "
              "const meta::Class& access::classOf(element)");
static_assert(ReadByReflection<ModelElement, meta::Property>,
              "a property of an element has to be readable: access::read(element, property), with "
              "ModelElement::Impl::ReflectionPrivateTag::PUBLIC_ACCESS");

static_assert(Handle<meta::Class>,
              "nuv::zero::meta::Class has to be a handle: default (null), noexcept copies and "
              "moves, an explicit operator bool and == by identity");
static_assert(Hashed<meta::Class>,
              "std::hash<nuv::zero::meta::Class> is missing: it hashes the identity of the class");
static_assert(NamedClass<meta::Class>,
              "a class has to be named: const meta::Class& Class::metaClass(), UTF-16 "
              "access::nameOf(class) and access::qualifiedNameOf(class)");
static_assert(ClassWithProperties<meta::Class, meta::Property>,
              "a class has to tell its properties: access::allProperties(class), "
              "access::propertyNamed(class, name) and access::hasProperty(class, property)");
static_assert(ConformingClass<meta::Class, meta::Type>,
              "a class has to convert to meta::Type and to tell whether it is another class or a "
              "subclass: access::conformsTo(class, type)");

static_assert(Handle<meta::Property>,
              "nuv::zero::meta::Property has to be a handle: default (null), noexcept copies and "
              "moves, an explicit operator bool and == by identity");
static_assert(Hashed<meta::Property>,
              "std::hash<nuv::zero::meta::Property> is missing: it hashes the property's identity "
              "as an element");
static_assert(DescribedProperty<meta::Property>,
              "a property has to describe itself: UTF-16 access::nameOf(property), and bool "
              "isSingleValued, isAssociation, isDerived and isComposite in namespace access");
static_assert(PropertyInPlace<meta::Property, meta::Class, ModelElement>,
              "a property has to convert to ModelElement and to tell its other end and its class: "
              "access::oppositeOf(property) and access::owningClass(property)");

static_assert(Handle<meta::Type> && Handle<meta::StructuredType> && Handle<meta::PrimitiveType>,
              "meta::Type, meta::StructuredType and meta::PrimitiveType have to be handles: "
              "default (null), noexcept copies and moves, an explicit operator bool and == by "
              "identity");
static_assert(NamedType<meta::Type, meta::PrimitiveType>,
              "a type has to be named: UTF-16 Type::Impl::getQualifiedName(), reached by ->; a "
              "primitive type has to convert to meta::Type");
static_assert(TypeOfOwners<meta::StructuredType, meta::Type, meta::Class>,
              "a structured type has to convert to meta::Type, and a meta::Class has to be "
              "constructible from it");

static_assert(DescribedValue<Value, meta::Type>,
              "nuv::zero::Value has to tell what it is: bool access::isSet(value) and the type "
              "value.getMeta().getType()");
static_assert(ConvertibleValue<Value, ModelElement>,
              "a value has to convert: access::toElement(value), access::toElements(value) and "
              "UTF-16 access::toString(value)");
static_assert(
    ConvertedText<std::u16string_view>,
    "the framework's text conversion is missing: std::string access::toUtf8(UTF-16 text)");

}  // namespace nuv::zero::access::contract
