#pragma once

#include "Class.h"
#include "Pins.h"

namespace nuv::zero::memory {

/// The classes and types that every model shares, behind the static functions of the handles:
/// which class is whose is defined beside this one, as is what conforms to it.
///
/// There is one for the whole process. It is made on first use and never destroyed, so that handles
/// in static objects may outlive everything else.
class StandardMetamodel {
  public:
    static const StandardMetamodel& instance();

    const ClassObject& classOfElements() const noexcept { return *elements_; }
    const ClassObject& classOfClasses() const noexcept { return *classes_; }
    const ClassObject& classOfProperties() const noexcept { return *properties_; }
    const ClassObject& classOfPrimitiveTypes() const noexcept { return *primitiveTypes_; }
    const PrimitiveTypeObject& stringType() const noexcept { return *string_; }

  private:
    StandardMetamodel();

    /// Keeps the storage: its objects are not counted as users of it, because they stay for good.
    Pins storage_;
    const ClassObject* elements_;
    const ClassObject* classes_;
    const ClassObject* properties_;
    const ClassObject* primitiveTypes_;
    const PrimitiveTypeObject* string_;
};

}  // namespace nuv::zero::memory
