#include "model/memory/Object.h"

#include "model/memory/Class.h"
#include "model/memory/Storage.h"
#include "model/memory/Value.h"

namespace nuv::zero::memory {

void Object::becomeReferenced() const noexcept {
    storage_->retain();
}
void Object::becomeUnreferenced() const noexcept {
    storage_->release();
}

void Object::giveUp() const noexcept {
    std::uint32_t own = 1;
    if (references_.compare_exchange_strong(own, 0, std::memory_order_acq_rel)) return;
    // Somebody holds a handle, and with it the storage from here on.
    storage_->retain();
    release();
}

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
