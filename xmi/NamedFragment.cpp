#include "xmi/NamedFragment.h"

#include "xmi/Fragment.h"

namespace nuv::zero::xmi {

std::optional<NamedFragment> parseNamedFragment(std::string_view text) {
    constexpr std::string_view mark = "?type=";
    const std::size_t at = text.rfind(mark);
    if (at == std::string_view::npos || text.starts_with('/')) return std::nullopt;
    NamedFragment fragment{{}, percentDecoded(text.substr(at + mark.size()))};
    std::string_view names = text.substr(0, at);
    for (std::size_t slash = names.find('/'); slash != std::string_view::npos;
         slash = names.find('/')) {
        fragment.names.push_back(percentDecoded(names.substr(0, slash)));
        names.remove_prefix(slash + 1);
    }
    fragment.names.push_back(percentDecoded(names));
    return fragment;
}

}  // namespace nuv::zero::xmi
