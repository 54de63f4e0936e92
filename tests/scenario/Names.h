#pragma once

#include <map>
#include <string>
#include <utility>

#include "tests/scenario/Scenario.h"

namespace nuv::zero::scenario {

/// The objects of one kind that a scenario has declared, by identifier.
template <class Object>
class Names {
  public:
    /// `kind` is how messages call the objects.
    explicit Names(std::string kind) : kind_(std::move(kind)) {}

    /// Declares an object, in place of an earlier one of that identifier.
    Object& put(const std::string& name, Object object) {
        return objects_.insert_or_assign(name, std::move(object)).first->second;
    }
    void remove(const std::string& name) { objects_.erase(name); }

    /// Throws `Malformed` when nothing of that identifier has been declared.
    Object& get(const std::string& name) {
        if (Object* const object = find(name)) return *object;
        throw Malformed("there is no " + kind_ + " called " + name);
    }
    /// Null when nothing of that identifier has been declared.
    Object* find(const std::string& name) {
        const auto entry = objects_.find(name);
        return entry == objects_.end() ? nullptr : &entry->second;
    }

  private:
    std::string kind_;
    std::map<std::string, Object> objects_;
};

}  // namespace nuv::zero::scenario
