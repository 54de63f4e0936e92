#pragma once

#include <map>
#include <span>
#include <string>
#include <string_view>

namespace nuv::zero::xmi {

/// Namespaces that mean the metamodel of another one.
///
///     NamespaceAliases aliases;
///     aliases.add("http://plant.org/1.0", "http://plant.org/1.1");
class NamespaceAliases {
  public:
    /// A namespace under which files of one metamodel are known besides its own.
    struct BuiltIn {
        std::string_view nsUri;
        std::string_view meant;
    };
    /// Those that everybody who makes such models has to know; only looked at when no metamodel of
    /// the namespace itself is found.
    static std::span<const BuiltIn> builtIn() noexcept;
    /// The meaning of a built-in alias; empty for any other namespace.
    static std::string_view builtInMeaning(std::string_view nsUri) noexcept;

    /// Says that a namespace means another one, whatever metamodels there are.
    NamespaceAliases& add(std::string nsUri, std::string meant);
    /// What was said of a namespace; empty where nothing was.
    std::string_view meaning(std::string_view nsUri) const noexcept;

  private:
    std::map<std::string, std::string, std::less<>> added_;
};

}  // namespace nuv::zero::xmi
