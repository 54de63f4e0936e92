#pragma once

#include <compare>
#include <optional>
#include <string>
#include <string_view>

namespace nuv::zero::xmi {

/// What identifies an element among several files.
///
///     const ElementAddress address = set.address(element);
///     std::cout << address.text();    // libraries:units/si.xmi#metre
struct ElementAddress {
    /// The name of the file root, and the way from there.
    std::string root;
    std::string path;
    /// The element's identity in its file, see `LoadedModel`.
    std::string fragment;

    /// `root:path#fragment`, escaped as `escaped` does, and with `#` in the path as `\u{23}`. Empty
    /// for the address of nothing.
    std::string text() const;
    /// The address of such a text; nothing for a text that is none.
    static std::optional<ElementAddress> of(std::string_view text);

    bool empty() const noexcept { return root.empty(); }
    friend auto operator<=>(const ElementAddress&, const ElementAddress&) = default;
};

}  // namespace nuv::zero::xmi
