#include "model/memory/Value.h"

#include "model/memory/MessageException.h"

namespace nuv::zero {

bool Value::isSet() const noexcept {
    return !std::holds_alternative<std::monostate>(data());
}

ModelElement Value::asElement() const {
    const meta::Type& type = meta_.getType();
    const bool isElement =
        meta_.isSingle() && type && type->isClass() && type->conformsTo(ModelElement::metaClass());
    if (!isElement) fail();
    if (!isSet()) return {};
    const auto* element = std::get_if<ModelElement>(&data());
    if (element == nullptr) fail();
    return *element;
}

std::vector<ModelElement> Value::asElements() const {
    const meta::Type& type = meta_.getType();
    const auto* elements = std::get_if<std::vector<ModelElement>>(&data());
    const bool isList = meta_.isMany() && type && type->isClass() && elements != nullptr;
    if (!isList) fail();
    return *elements;
}

std::u16string Value::asString() const {
    const bool isString = meta_.isSingle() && meta_.getType() == meta::StandardTypes::stringMeta();
    if (!isString) fail();
    if (!isSet()) return {};
    const auto* text = std::get_if<std::u16string>(&data());
    if (text == nullptr) fail();
    return *text;
}

const memory::Payload::Data& Value::data() const noexcept {
    static const memory::Payload::Data nothing;
    return payload_ ? payload_->data : nothing;
}

void Value::fail() const {
    const meta::Type& type = meta_.getType();
    throw CannotCastIncompatibleTypes(type ? type->getQualifiedName() : std::u16string());
}

}  // namespace nuv::zero
