#include "model/memory/Describe.h"

#include "model/memory/Text.h"
#include "model/memory/Value.h"

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

std::string element(const Object& element) {
    const meta::Class& elementClass = element.getClass();
    std::string name;
    if (const meta::Property nameProperty = elementClass->getProperty(u"name")) {
        const Value value = element.get(nameProperty, Object::ReflectionPrivateTag::PUBLIC_ACCESS);
        const Content content = value.content();
        if (const auto* text = std::get_if<std::u16string>(&content)) name = text::toUtf8(*text);
    }
    return type(*elementClass.get()) + "'" + name + "'";
}

}  // namespace nuv::zero::memory::describe
