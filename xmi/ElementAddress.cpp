#include "xmi/ElementAddress.h"

#include "xmi/EscapedText.h"

namespace nuv::zero::xmi {

std::string ElementAddress::text() const {
    if (empty()) return {};
    std::string shown;
    for (const char each : escaped(path)) {
        // The first one in a text begins the fragment.
        each == '#' ? void(shown += "\\u{23}") : void(shown += each);
    }
    return escaped(root) + ":" + shown + "#" + escaped(fragment);
}

std::optional<ElementAddress> ElementAddress::of(std::string_view text) {
    const std::size_t colon = text.find(':');
    const std::size_t hash = text.find('#');
    if (hash == std::string_view::npos || colon == 0 || colon > hash) return std::nullopt;
    return ElementAddress{unescaped(text.substr(0, colon)),
                          unescaped(text.substr(colon + 1, hash - colon - 1)),
                          unescaped(text.substr(hash + 1))};
}

}  // namespace nuv::zero::xmi
