#pragma once

#include <deque>
#include <mutex>
#include <vector>

#include "Class.h"

namespace nuv::zero::memory {

/// Every change of the links between classes, and of what classes derive from them.
///
/// A class knows its subclasses, and these may live in other metamodels, which may be dropped on
/// any thread. Therefore changes exclude each other for the whole process; reading needs no lock
/// because it never goes from a class to its subclasses.
class Hierarchy {
  public:
    Hierarchy() : lock_(mutex()) {}

    /// Makes room for one more subclass in each superclass, so that `link` cannot fail.
    void prepareLink(const std::vector<ClassObject*>& superclasses);
    /// Enters a new class with its superclasses.
    void link(ClassObject& type) noexcept;
    /// Enters one more superclass. Throws `std::bad_alloc`, and then has changed nothing.
    void addSuperclass(ClassObject& type, ClassObject& superclass);
    /// Adds a property to a class and to the layout of all its descendants. Throws
    /// `std::bad_alloc`, and then has changed nothing.
    PropertyObject& addProperty(const meta::Class& metaClass, ClassObject& owner,
                                std::u16string_view name, const TypeObject& type, int upperBound,
                                PropertyFlags flags);

    static void setOpposite(PropertyObject& property, const PropertyObject& opposite) noexcept;

    /// Makes the superclasses in other storages forget these classes, which are about to die.
    static void takeOutOfForeign(std::deque<ClassObject>& classes) noexcept;

  private:
    static std::mutex& mutex();
    /// A class and all its descendants, each after its superclasses among them.
    static std::vector<ClassObject*> descendants(ClassObject& type);

    std::lock_guard<std::mutex> lock_;
};

}  // namespace nuv::zero::memory
