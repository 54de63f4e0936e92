#pragma once

#include <string>
#include <string_view>

#include "Class.h"

/// How error texts name things, in UTF-8.
namespace nuv::zero::memory::describe {

/// `'b1'`
std::string quoted(std::u16string_view text);
/// `Block`
std::string type(const TypeObject& type);
/// `Block.ports`: the declaring class and the name.
std::string property(const PropertyObject& property);

}  // namespace nuv::zero::memory::describe
