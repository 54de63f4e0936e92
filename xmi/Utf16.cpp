#include "xmi/Utf16.h"

#include <cstddef>

#include "model/memory/Text.h"
#include "xmi/Ascii.h"

namespace nuv::zero::xmi {

void assignUtf16(std::u16string& to, std::string_view text) {
    const std::size_t plain = asciiLength(text);
    to.resize(plain);
    for (std::size_t i = 0; i < plain; ++i) to[i] = static_cast<unsigned char>(text[i]);
    if (plain != text.size()) to += text::toUtf16(text.substr(plain));
}

}  // namespace nuv::zero::xmi
