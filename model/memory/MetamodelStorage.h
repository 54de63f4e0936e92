#pragma once

#include <deque>
#include <string>
#include <string_view>

#include "Class.h"
#include "Pins.h"
#include "Storage.h"

namespace nuv::zero::memory {

/// The memory of one metamodel: its classes with their properties, its primitive types, and the
/// pins that keep other metamodels alive whose types these use.
class MetamodelStorage final : public Storage {
  public:
    explicit MetamodelStorage(std::u16string_view name) : name_(name) {}

    const std::u16string& name() const noexcept { return name_; }
    std::deque<ClassObject>& classes() noexcept { return classes_; }
    std::deque<PrimitiveTypeObject>& primitives() noexcept { return primitives_; }
    Pins& pins() noexcept { return pins_; }
    const Pins& pins() const noexcept { return pins_; }

    /// Whether this storage keeps another one alive, directly or by way of more.
    bool reaches(const Storage& other) const;

    /// Gives up the reference with which each object started; handles keep some of them.
    void giveUpObjects() noexcept;

  private:
    ~MetamodelStorage() override;

    std::u16string name_;
    /// Declared before the classes, which are taken out of foreign hierarchies when they die.
    Pins pins_;
    std::deque<PrimitiveTypeObject> primitives_;
    std::deque<ClassObject> classes_;
};

}  // namespace nuv::zero::memory
