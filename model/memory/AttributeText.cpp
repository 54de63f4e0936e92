#include "model/memory/AttributeText.h"

#include <cstdint>
#include <variant>
#include <vector>

#include "model/memory/Describe.h"
#include "model/memory/Metamodel.h"
#include "model/memory/Text.h"

namespace nuv::zero::memory {
namespace {

std::string shown(std::u16string_view text) {
    return text::toUtf8(text);
}
std::string shown(std::int64_t number) {
    return std::to_string(number);
}
template <class Entry>
std::string shown(const std::vector<Entry>& entries) {
    std::string line;
    for (const Entry& entry : entries) {
        if (&entry != &entries.front()) line += ", ";
        line += shown(entry);
    }
    return line;
}

[[noreturn]] void refuse(const ModelElement& element, const std::string& attribute) {
    if (!element) throw ModelError("The property " + attribute + " of a null element has no text.");
    throw ModelError("The class " + describe::type(*element->getClass().get()) +
                     " does not have the property " + attribute + ".");
}

[[noreturn]] void refuseElements(const std::string& attribute) {
    throw ModelError("The property " + attribute + " holds elements, which have no text.");
}

}  // namespace

std::string textOf(const ModelElement& element, const meta::Property& attribute) {
    if (!attribute) throw ModelError("A null property has no text.");
    const std::string name = describe::property(*attribute.get());
    if (!element || !element->getClass()->hasProperty(attribute)) refuse(element, name);
    if (attribute->type().isClass()) refuseElements(name);
    const Content content =
        element->get(attribute, Object::ReflectionPrivateTag::PUBLIC_ACCESS).content();
    return std::visit(
        [&name](const auto& held) -> std::string {
            using Held = std::decay_t<decltype(held)>;
            constexpr bool isElements = std::is_same_v<Held, ModelElement> ||
                                        std::is_same_v<Held, std::vector<ModelElement>>;
            if constexpr (isElements) {
                refuseElements(name);
            } else if constexpr (std::is_same_v<Held, std::monostate>) {
                return {};
            } else {
                return shown(held);
            }
        },
        content);
}

std::string textOf(const ModelElement& element, std::u16string_view attribute) {
    const meta::Property found =
        element ? element->getClass()->getProperty(attribute) : meta::Property();
    if (!found) refuse(element, describe::quoted(attribute));
    return textOf(element, found);
}

}  // namespace nuv::zero::memory
