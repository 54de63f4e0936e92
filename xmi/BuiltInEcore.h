#pragma once

#include <string>
#include <string_view>

#include "xmi/XmlDocument.h"

namespace nuv::zero::xmi {

/// What stands for the path of the file where Ecore itself is read without one.
inline constexpr std::string_view builtInEcoreFile = "Ecore.ecore";
/// And for the name of its file root.
inline constexpr std::string_view builtInRoot = "built-in";

/// The metamodel of metamodels as an Ecore file, for everybody who has none at hand. Made when
/// first asked for.
const std::string& builtInEcoreText();
/// The same, parsed.
XmlDocument builtInEcore();

}  // namespace nuv::zero::xmi
