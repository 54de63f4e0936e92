#pragma once

#include <cstdint>

/// Forward declarations of the in-memory model.

namespace nuv::zero {
class ModelElement;
class Value;
class ValueMeta;
}  // namespace nuv::zero

namespace nuv::zero::meta {
class Class;
class PrimitiveType;
class Property;
class StructuredType;
class Type;
}  // namespace nuv::zero::meta

namespace nuv::zero::memory {
class ClassObject;
class ElementView;
class Lending;
class Metamodel;
class MetamodelStorage;
class Model;
class ModelStorage;
class Object;
struct Payload;
class PrimitiveTypeObject;
class PropertyObject;
class Storage;
class StructuredTypeObject;
class TypeObject;
}  // namespace nuv::zero::memory
