#include "model/memory/Payload.h"

#include <limits>
#include <memory>
#include <new>
#include <stdexcept>

namespace nuv::zero::memory {
namespace {

static_assert(sizeof(Payload) % alignof(Payload::Planted) == 0 &&
                  sizeof(Payload) % alignof(std::u16string) == 0,
              "entries stand behind the payload without a gap");
static_assert(alignof(Object) > 3 && alignof(Payload) > 3,
              "the two lowest bits of an address are free");

std::size_t bytesPerEntry(Payload::Kind kind) noexcept {
    switch (kind) {
        case Payload::Kind::Elements:
        case Payload::Kind::Element:
            break;
        case Payload::Kind::Texts:
            return sizeof(std::u16string);
        case Payload::Kind::Integers:
        case Payload::Kind::Integer:
            return sizeof(std::int64_t);
        case Payload::Kind::Text:
            return sizeof(char16_t);
        case Payload::Kind::Planted:
            return sizeof(Payload::Planted);
    }
    return sizeof(void*);
}

}  // namespace

Payload& Payload::make(Kind kind, std::size_t capacity) {
    if (capacity > std::numeric_limits<std::uint32_t>::max()) {
        throw std::length_error("a model holds at most 2^32 - 1 values in one place");
    }
    void* place = ::operator new(sizeof(Payload) + capacity * bytesPerEntry(kind));
    return *::new (place) Payload(kind, static_cast<std::uint32_t>(capacity));
}

void Payload::countElements() noexcept {
    const bool holdsElements = kind_ == Kind::Elements || kind_ == Kind::Element;
    if (!holdsElements || countsElements_) return;
    for (std::size_t i = 0; i < size_; ++i) {
        const Object* element = entries<const Object*>()[i];
        if (element != nullptr) element->retain();
    }
    countsElements_ = true;
}

void Payload::destroy(Payload& payload) noexcept {
    switch (payload.kind_) {
        case Kind::Elements:
        case Kind::Element:
            for (std::size_t i = 0; payload.countsElements_ && i < payload.size_; ++i) {
                const Object* element = payload.entries<const Object*>()[i];
                if (element != nullptr) element->release();
            }
            break;
        case Kind::Texts:
            std::destroy_n(payload.entries<std::u16string>(), payload.size_);
            break;
        case Kind::Planted:
            for (std::size_t i = 0; i < payload.size_; ++i) {
                Planted& planted = payload.entries<Planted>()[i];
                const HeldWord last(planted.word);
                planted.~Planted();
            }
            break;
        case Kind::Text:
        case Kind::Integer:
        case Kind::Integers:
            break;
    }
    payload.~Payload();
    ::operator delete(&payload);
}

}  // namespace nuv::zero::memory
