#include "model/memory/Value.h"

#include "model/memory/Class.h"
#include "model/memory/MessageException.h"

namespace nuv::zero {

using memory::Content;
using memory::ElementView;
using memory::HeldWord;
using memory::Object;
using memory::Payload;
using memory::SlotWord;

namespace {

template <class Entry, class Stored = Entry>
std::vector<Entry> listOf(const Payload& payload) {
    std::vector<Entry> list;
    list.reserve(payload.size());
    for (std::size_t i = 0; i < payload.size(); ++i) {
        list.emplace_back(payload.entries<Stored>()[i]);
    }
    return list;
}

Content contentOf(const Payload& payload) {
    switch (payload.kind()) {
        case Payload::Kind::Elements:
            return listOf<ModelElement, const Object*>(payload);
        case Payload::Kind::Texts:
            return listOf<std::u16string>(payload);
        case Payload::Kind::Integers:
            return listOf<std::int64_t>(payload);
        case Payload::Kind::Element:
            return ModelElement(payload.entries<const Object*>()[0]);
        case Payload::Kind::Text:
            return std::u16string(payload.entries<char16_t>(), payload.size());
        case Payload::Kind::Integer:
            return payload.entries<std::int64_t>()[0];
        case Payload::Kind::Planted:
            break;
    }
    return {};
}

/// A collection of the declared type that holds nothing.
Content emptyCollection(const meta::Type& type) {
    const auto kind = type ? type->kind() : memory::TypeObject::Kind::Class;
    if (kind == memory::TypeObject::Kind::Text) return std::vector<std::u16string>();
    if (kind == memory::TypeObject::Kind::Integer) return std::vector<std::int64_t>();
    return std::vector<ModelElement>();
}

}  // namespace

bool Value::isSet() const noexcept {
    const SlotWord& word = held_.word();
    return word.isNeverSet() ? meta_.isMany() : !word.isWithoutPayload();
}

ElementView Value::viewElement() const {
    if (!meta_.isSingle() || !isOfClass()) fail();
    const SlotWord& word = held_.word();
    if (!isSet()) return {};
    if (word.isReference()) return ElementView(held_);
    const Payload* single = payload(Payload::Kind::Element);
    if (single == nullptr) fail();
    const Object* element = single->entries<const Object*>()[0];
    return element == nullptr ? ElementView()
                              : ElementView(HeldWord::keeping(SlotWord::own(*element)));
}

ElementView Value::viewElements() const {
    const SlotWord& word = held_.word();
    const bool isList =
        word.isNeverSet() || word.isReference() || payload(Payload::Kind::Elements) != nullptr;
    if (!meta_.isMany() || !isOfClass() || !isList) fail();
    return ElementView(held_);
}

ModelElement Value::asElement() const {
    const ElementView view = viewElement();
    return view.size() == 0 ? ModelElement() : ModelElement(view[0]);
}

std::vector<ModelElement> Value::asElements() const {
    const ElementView view = viewElements();
    std::vector<ModelElement> elements;
    elements.reserve(view.size());
    for (std::size_t i = 0; i < view.size(); ++i) elements.emplace_back(view[i]);
    return elements;
}

std::u16string Value::asString() const {
    const bool isString = meta_.isSingle() && meta_.getType() == meta::StandardTypes::stringMeta();
    if (!isString) fail();
    if (!isSet()) return {};
    Content held = content();
    auto* text = std::get_if<std::u16string>(&held);
    if (text == nullptr) fail();
    return std::move(*text);
}

Content Value::content() const {
    const SlotWord& word = held_.word();
    if (!isSet()) return {};
    if (word.isNeverSet()) return emptyCollection(meta_.getType());
    if (word.isNumber()) return word.number();
    if (word.isText()) return word.text();
    if (word.isPayload()) return contentOf(*word.payload());
    ModelElement element(word.target());
    if (meta_.isMany()) return std::vector<ModelElement>{std::move(element)};
    return element;
}

const Payload* Value::payload(Payload::Kind kind) const noexcept {
    const SlotWord& word = held_.word();
    const Payload* payload = word.isPayload() ? word.payload() : nullptr;
    return payload != nullptr && payload->kind() == kind ? payload : nullptr;
}

bool Value::isOfClass() const noexcept {
    return meta_.getType() && meta_.getType()->isClass();
}

void Value::fail() const {
    const meta::Type& type = meta_.getType();
    throw CannotCastIncompatibleTypes(type ? type->getQualifiedName() : std::u16string());
}

}  // namespace nuv::zero

/// The one place that turns what is stored into values; what a view shows comes from here as well.
namespace nuv::zero::memory {

Value Object::get(const meta::Property& property, ReflectionPrivateTag) const {
    if (!property) return {};
    const PropertyObject& declaration = *property.get();
    const SlotWord word = slotAt(class_->get()->layout().slotOf(declaration));
    const Payload* payload = word.isPayload() ? word.payload() : nullptr;
    if (payload != nullptr && payload->kind() == Payload::Kind::Planted) {
        const auto& planted = payload->entries<Payload::Planted>()[0];
        return {ValueMeta(planted.type, planted.many), HeldWord::keeping(planted.word)};
    }
    return {ValueMeta(declaration.getType(), !declaration.isSingleValued()),
            HeldWord::keeping(word)};
}

ElementView Object::view(const meta::Property& property, ReflectionPrivateTag access) const {
    const Value value = get(property, access);
    if (!property || (property->isSingleValued() && !value.isSet())) return {};
    return property->isSingleValued() ? value.viewElement() : value.viewElements();
}

}  // namespace nuv::zero::memory
