#include "model/memory/Object.h"

#include "model/memory/ElementView.h"
#include "model/memory/MessageException.h"
#include "model/memory/Storage.h"
#include "model/memory/Value.h"

namespace nuv::zero::memory {
namespace {

/// A collection of the declared type that holds nothing.
Payload::Data emptyCollection(TypeObject::Kind kind) {
    switch (kind) {
        case TypeObject::Kind::Text:
            return std::vector<std::u16string>();
        case TypeObject::Kind::Integer:
            return std::vector<std::int64_t>();
        case TypeObject::Kind::Class:
            break;
    }
    return std::vector<ModelElement>();
}

bool holdsNothing(const Payload* payload) noexcept {
    return payload == nullptr || std::holds_alternative<std::monostate>(payload->data);
}

[[noreturn]] void failCast(const TypeObject* type) {
    throw CannotCastIncompatibleTypes(type != nullptr ? type->getQualifiedName()
                                                      : std::u16string());
}

/// The element of a single-valued property that holds a payload, which keeps the element alive.
ElementView viewSingle(const Payload* payload, const TypeObject* type, bool isMany) {
    if (holdsNothing(payload)) return {};
    const auto* element = std::get_if<ModelElement>(&payload->data);
    const bool isElement = element != nullptr && !isMany && type != nullptr && type->isClass();
    if (!isElement) failCast(type);
    return ElementView(element->get());
}

/// The elements of a many-valued property that holds a payload.
ElementView viewMany(Payload* payload, const TypeObject* type, bool isMany) {
    const auto* elements =
        payload != nullptr ? std::get_if<std::vector<ModelElement>>(&payload->data) : nullptr;
    const bool isList = elements != nullptr && isMany && type != nullptr && type->isClass();
    if (!isList) failCast(type);
    if (elements->empty()) return {};
    return ElementView(PayloadPointer::share(payload));
}

}  // namespace

void Object::becomeReferenced() const noexcept {
    storage_->retain();
}
void Object::becomeUnreferenced() const noexcept {
    storage_->release();
}

Value Object::get(const meta::Property& property, ReflectionPrivateTag) const {
    if (!property) return {};
    const PropertyObject& declaration = *property.get();
    const SlotWord word = slot(declaration);
    const bool many = !declaration.isSingleValued();

    PayloadPointer payload;
    if (word.isPayload()) {
        payload = PayloadPointer::share(word.payload());
        if (payload && payload->planted) {
            const ValueMeta meta(payload->plantedType, payload->plantedMany);
            return {meta, holdsNothing(payload.get()) ? PayloadPointer() : std::move(payload)};
        }
    } else if (word.isReference()) {
        payload = PayloadPointer(
            new Payload(std::in_place_type<ModelElement>, ModelElement(word.target())));
    } else if (many) {
        payload = PayloadPointer(new Payload(emptyCollection(declaration.type().kind())));
    }
    return {ValueMeta(declaration.getType(), many), std::move(payload)};
}

ElementView Object::viewPayload(const PropertyObject& declaration, SlotWord word) const {
    const bool many = !declaration.isSingleValued();
    // Never set, and no collection of elements: an empty collection of texts, say.
    if (word.isNeverSet()) failCast(&declaration.type());
    Payload* payload = word.payload();
    const bool planted = payload != nullptr && payload->planted;
    const TypeObject* type = planted ? payload->plantedType.get() : &declaration.type();
    const bool holdsMany = planted ? payload->plantedMany : many;
    return many ? viewMany(payload, type, holdsMany) : viewSingle(payload, type, holdsMany);
}

}  // namespace nuv::zero::memory
