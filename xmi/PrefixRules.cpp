#include "xmi/PrefixRules.h"

#include <array>

#include "xmi/Fragment.h"

namespace nuv::zero::xmi {
namespace {

/// The profiles, metamodels and libraries of UML stand under short names in one plug-in; and what
/// its standard calls by addresses of the web, in another, whatever its date.
constexpr std::array<BuiltInPrefix, 5> builtIn = {{
    {"pathmap://UML_PROFILES/", "platform:/plugin/org.eclipse.uml2.uml.resources/profiles/"},
    {"pathmap://UML_METAMODELS/", "platform:/plugin/org.eclipse.uml2.uml.resources/metamodels/"},
    {"pathmap://UML_LIBRARIES/", "platform:/plugin/org.eclipse.uml2.uml.resources/libraries/"},
    {"http://www.omg.org/spec/UML/20110701/", "platform:/plugin/org.eclipse.uml2/model/"},
    {"http://www.omg.org/spec/UML/20131001/", "platform:/plugin/org.eclipse.uml2/model/"},
}};

/// What stands in front of a name, and whether it may be that of a folder.
struct Naming {
    std::string_view prefix;
    bool isAnywhere;
};
constexpr std::array<Naming, 3> namings = {{
    {"platform:/plugin/", true},
    {"platform:/resource/", true},
    {"pathmap://", false},
}};

}  // namespace

std::optional<std::string_view> behindPrefix(std::string_view reference, std::string_view prefix) {
    if (prefix.empty() || !reference.starts_with(prefix)) return std::nullopt;
    const std::string_view behind = reference.substr(prefix.size());
    if (behind.empty() || prefix.ends_with('/') || prefix.ends_with(':')) return behind;
    if (!behind.starts_with('/')) return std::nullopt;
    return behind.substr(1);
}

std::optional<NamedFolder> namedFolderIn(std::string_view reference) {
    for (const Naming& each : namings) {
        if (!reference.starts_with(each.prefix)) continue;
        const std::string_view behind = reference.substr(each.prefix.size());
        const std::size_t slash = behind.find('/');
        if (slash == std::string_view::npos) return std::nullopt;
        NamedFolder named{percentDecoded(behind.substr(0, slash)), behind.substr(slash + 1),
                          each.isAnywhere};
        const bool isName = !named.name.empty() && named.name != "." && named.name != ".." &&
                            named.name.find('/') == std::string::npos;
        if (!isName) return std::nullopt;
        return named;
    }
    return std::nullopt;
}

std::span<const BuiltInPrefix> builtInPrefixes() noexcept {
    return builtIn;
}

}  // namespace nuv::zero::xmi
