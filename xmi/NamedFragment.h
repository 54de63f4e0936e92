#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nuv::zero::xmi {

/// A fragment that says what an element and its class are called: `Timer?type=Stimulus`. In front
/// of the name may stand those of its containers: `Core_1/port?type=HwPort`.
struct NamedFragment {
    /// The element's own is the last.
    std::vector<std::string> names;
    std::string type;
};

/// Nothing for a text of another form.
std::optional<NamedFragment> parseNamedFragment(std::string_view text);

}  // namespace nuv::zero::xmi
