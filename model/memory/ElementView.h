#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

#include "model/memory/Payload.h"

namespace nuv::zero::memory {

/// The elements that one property of one element designates, viewed where the model keeps them.
///
/// A view of a many-valued property shares the stored list: one counter update, whatever the number
/// of elements, and an edit of the model does not reach the view. A view of a single-valued
/// property counts nothing: its element has to be taken before the model can change, or be kept
/// alive by `Pins`. A copy shares the list.
class ElementView {
  public:
    ElementView() noexcept = default;
    /// A view of one element, not counted.
    explicit ElementView(const Object* single) noexcept
        : word_(reinterpret_cast<std::uintptr_t>(single)) {}
    /// A view of a payload that holds a list of elements.
    explicit ElementView(PayloadPointer list) noexcept
        : word_(reinterpret_cast<std::uintptr_t>(list.detach()) | listTag) {}
    ElementView(const ElementView& other) noexcept : word_(other.word_) {
        if (isList()) PayloadPointer::share(payload()).detach();
    }
    ElementView(ElementView&& other) noexcept : word_(std::exchange(other.word_, 0)) {}
    ElementView& operator=(const ElementView& other) noexcept { return *this = ElementView(other); }
    ElementView& operator=(ElementView&& other) noexcept {
        const std::uintptr_t word = std::exchange(other.word_, 0);
        clear();
        word_ = word;
        return *this;
    }
    ~ElementView() { clear(); }

    void clear() noexcept {
        if (isList()) PayloadPointer released(payload());
        word_ = 0;
    }
    std::size_t size() const noexcept { return isList() ? list().size() : (word_ != 0 ? 1 : 0); }

    /// The element at a place, as a handle that does not count (see `Lending`). REQUIRES: `index`
    /// is below `size()`.
    ModelElement lend(std::size_t index) const noexcept {
        return Lending::lend<ModelElement>(isList() ? list()[index].get()
                                                    : reinterpret_cast<const Object*>(word_));
    }

  private:
    static constexpr std::uintptr_t listTag = 1;
    bool isList() const noexcept { return (word_ & listTag) != 0; }
    Payload* payload() const noexcept { return reinterpret_cast<Payload*>(word_ & ~listTag); }
    const std::vector<ModelElement>& list() const noexcept {
        return *std::get_if<std::vector<ModelElement>>(&payload()->data);
    }

    std::uintptr_t word_ = 0;
};

// In the header, because a walk asks this for every property of every element.
inline SlotWord Object::slot(const PropertyObject& property) const noexcept {
    return slotAt(class_->layout().slotOf(property));
}
inline SlotWord Object::slotAt(std::size_t number) const noexcept {
    if (number < inlineSlotCount_) return inlineSlots()[number];
    // Also where the class lacks the property: its number is above all others then.
    const std::size_t late = number - inlineSlotCount_;
    if (lateSlots_ == nullptr || late >= lateSlots_->size()) return {};
    return (*lateSlots_)[late];
}

inline ElementView Object::view(const meta::Property& property, ReflectionPrivateTag) const {
    if (!property) return {};
    const PropertyObject& declaration = *property.get();
    const SlotWord word = slot(declaration);
    if (word.isReference()) return ElementView(word.target());
    if (word.isNeverSet() && declaration.isEmptyWhenNeverSet()) return {};
    return viewPayload(declaration, word);
}

}  // namespace nuv::zero::memory
