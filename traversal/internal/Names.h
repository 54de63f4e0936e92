#pragma once

#include <cstddef>
#include <string>

#include "../../model/Framework.h"
#include "../Export.h"

/// What texts for people call things.
namespace nuv::zero::traversal MODELING_NUV0_OVER::internal {

/// Stands for the property of an input's own link.
inline constexpr const char* noProperty = "[pseudo]";

inline std::string qualifiedName(const meta::Class& type) {
    return type ? access::toUtf8(access::qualifiedNameOf(type)) : "no class";
}
inline std::string qualifiedName(const meta::Property& property) {
    if (!property) return "no property";
    const meta::Class& owner = access::owningClass(property);
    return qualifiedName(owner) + "." + access::toUtf8(access::nameOf(property));
}

inline std::string plainName(const meta::Property& property) {
    return property ? access::toUtf8(access::nameOf(property)) : noProperty;
}

/// A rule by its number and, where the caller gave it one, its name.
inline std::string ruleName(std::size_t number, const std::string& name) {
    return "rule " + std::to_string(number) + (name.empty() ? "" : " \"" + name + "\"");
}

}  // namespace nuv::zero::traversal::internal
