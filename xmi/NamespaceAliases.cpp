#include "xmi/NamespaceAliases.h"

#include <algorithm>
#include <array>
#include <utility>

namespace nuv::zero::xmi {
namespace {

constexpr std::string_view uml = "http://www.eclipse.org/uml2/5.0.0/UML";
constexpr std::string_view types = "http://www.eclipse.org/uml2/5.0.0/Types";
constexpr std::string_view standard = "http://www.eclipse.org/uml2/5.0.0/UML/Profile/Standard";
constexpr std::string_view cmof = "http://www.omg.org/spec/MOF/20131001/cmof.xmi";

/// The standard has a namespace for each version, of which files of later ones read the same.
constexpr std::array<NamespaceAliases::BuiltIn, 10> rows = {{
    {"http://www.omg.org/spec/UML/20110701", uml},
    {"http://www.omg.org/spec/UML/20131001", uml},
    {"http://www.omg.org/spec/UML/20161101", uml},
    {"http://www.eclipse.org/uml2/4.0.0/UML", uml},
    {"http://www.eclipse.org/uml2/4.0.0/Types", types},
    {"http://www.eclipse.org/uml2/4.0.0/UML/Profile/Standard", standard},
    {"http://www.omg.org/spec/UML/20131001/StandardProfile", standard},
    {"http://www.omg.org/spec/MOF/20110701", cmof},
    {"http://www.omg.org/spec/MOF/20131001", cmof},
    {"http://www.omg.org/spec/MOF/20110701/cmof.xmi", cmof},
}};

}  // namespace

std::span<const NamespaceAliases::BuiltIn> NamespaceAliases::builtIn() noexcept {
    return rows;
}

std::string_view NamespaceAliases::builtInMeaning(std::string_view nsUri) noexcept {
    const auto* const found = std::find_if(
        rows.begin(), rows.end(), [&](const BuiltIn& each) { return each.nsUri == nsUri; });
    return found == rows.end() ? std::string_view() : found->meant;
}

NamespaceAliases& NamespaceAliases::add(std::string nsUri, std::string meant) {
    added_.insert_or_assign(std::move(nsUri), std::move(meant));
    return *this;
}

std::string_view NamespaceAliases::meaning(std::string_view nsUri) const noexcept {
    const auto found = added_.find(nsUri);
    return found == added_.end() ? std::string_view() : found->second;
}

}  // namespace nuv::zero::xmi
