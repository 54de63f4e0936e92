#include "xmi/AttributeValue.h"

#include <variant>

#include "model/memory/ModelAccess.h"
#include "model/memory/Text.h"

namespace nuv::zero::xmi {
namespace {

std::optional<std::string> storedText(const ModelElement& element,
                                      const meta::Property& attribute) {
    const Value value = access::read(element, attribute);
    if (!value.isSet()) return std::nullopt;
    const memory::Content content = value.content();
    if (const auto* text = std::get_if<std::u16string>(&content)) return text::toUtf8(*text);
    if (const auto* number = std::get_if<std::int64_t>(&content)) return std::to_string(*number);
    return std::nullopt;
}

std::optional<std::string> defaultText(const LoadedMetamodel& metamodel,
                                       const meta::Property& attribute) {
    const FeatureDeclaration& declared = metamodel.declaration(attribute);
    if (declared.defaultText) return declared.defaultText;
    const DataType* const type = metamodel.dataType(attribute);
    const std::string* const initial = type == nullptr ? nullptr : type->initialText();
    return initial == nullptr ? std::nullopt : std::optional(*initial);
}

}  // namespace

AttributeValue AttributeValue::of(const LoadedMetamodel& metamodel, const ModelElement& element,
                                  const meta::Property& attribute) {
    const std::optional<std::string> stored = storedText(element, attribute);
    const std::optional<std::string> otherwise = defaultText(metamodel, attribute);
    if (!stored) return {otherwise, false};
    const bool isUnsettable = metamodel.declaration(attribute).isUnsettable;
    return {stored, isUnsettable || stored != otherwise};
}

}  // namespace nuv::zero::xmi
