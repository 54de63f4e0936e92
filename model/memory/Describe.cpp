#include "model/memory/Describe.h"

#include "model/memory/Text.h"

namespace nuv::zero::memory::describe {

std::string quoted(std::u16string_view text) {
    std::string out(1, '\'');
    out += text::toUtf8(text);
    out += '\'';
    return out;
}

std::string type(const TypeObject& type) {
    return text::toUtf8(type.getName());
}

std::string property(const PropertyObject& property) {
    return type(property.owner()) + "." + text::toUtf8(property.getName());
}

}  // namespace nuv::zero::memory::describe
