#pragma once

#include "../Compiler.h"
#include "Class.h"
#include "ElementView.h"

namespace nuv::zero::memory {

/// Reads one property from many elements of one class: it has looked up the number of their slot
/// once. An element of another class is read by way of its own class.
///
/// A reader keeps its class. A slot's number never changes, so a reader stays valid while the
/// metamodel grows. Any number of threads may share one.
class PropertyReader {
  public:
    PropertyReader() noexcept = default;
    PropertyReader(const meta::Class& type, const meta::Property& property) noexcept {
        if (!type || !property) return;
        slot_ = type.get()->layout().slotOf(*property.get());
        // A class that lacks the property may still inherit it one day.
        if (slot_ == ClassLayout::noSlot) return;
        type_ = type;
        isEmptyWhenNeverSet_ = property.get()->isEmptyWhenNeverSet();
    }

    /// The same as `Object::view` gives for the property that the reader was made for, but nothing
    /// of the same model is counted. REQUIRES: whoever reads has pinned the model of the element,
    /// and keeps it pinned as long as the view is used.
    ElementView read(const ModelElement& element, const meta::Property& property) const {
        const Object& object = *element.get();
        if (object.getClass().get() == type_.get()) {
            const SlotWord word = object.slotAt(slot_);
            const bool isPlain =
                word.isNeverSet()
                    ? isEmptyWhenNeverSet_
                    : word.isReference() || (word.isPayload() && !word.isWithoutPayload() &&
                                             word.payload()->kind() == Payload::Kind::Elements);
            if (isPlain) return ElementView::pinned(word);
        }
        return object.view(property, Object::ReflectionPrivateTag::PUBLIC_ACCESS);
    }

    /// Begins to load the list that `read` looks at soon. REQUIRES: the element is not null.
    void prefetch(const ModelElement& element) const noexcept {
        const Object& object = *element.get();
        if (object.getClass().get() != type_.get()) return;
        const SlotWord word = object.slotAt(slot_);
        if (word.isPayload()) access::prefetchLine(word.payload());
    }

  private:
    meta::Class type_;
    ClassLayout::Slot slot_ = ClassLayout::noSlot;
    bool isEmptyWhenNeverSet_ = false;
};

}  // namespace nuv::zero::memory
