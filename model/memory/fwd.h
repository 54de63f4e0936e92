#pragma once

/// Names of the in-memory model for headers that only pass them on.

namespace nuv::zero {
class Value;
}

namespace nuv::zero::meta {
class Class;
class Property;
class Type;
}  // namespace nuv::zero::meta

namespace nuv::zero::memory {
class ClassObject;
class ElementView;
class Lending;
class MetamodelStorage;
class ModelStorage;
class Object;
class Payload;
class PropertyObject;
class Storage;
}  // namespace nuv::zero::memory
