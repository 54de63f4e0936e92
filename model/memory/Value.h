#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "../Export.h"
#include "ElementView.h"
#include "Type.h"

namespace nuv::zero {

namespace memory {
/// What a value may hold, whether or not that fits its type; monostate for nothing.
using Content =
    std::variant<std::monostate, ModelElement, std::vector<ModelElement>, std::u16string,
                 std::vector<std::u16string>, std::int64_t, std::vector<std::int64_t>>;
}  // namespace memory

/// What a value is: its type, and whether it is single or a collection. By default, and after a
/// move, a single value of no type.
class ValueMeta {
  public:
    ValueMeta() = default;
    ValueMeta(meta::Type type, bool many) noexcept : type_(std::move(type)), many_(many) {}
    ValueMeta(const ValueMeta&) noexcept = default;
    ValueMeta(ValueMeta&& other) noexcept
        : type_(std::move(other.type_)), many_(std::exchange(other.many_, false)) {}
    ValueMeta& operator=(ValueMeta other) noexcept {
        std::swap(type_, other.type_);
        std::swap(many_, other.many_);
        return *this;
    }
    ~ValueMeta() = default;

    const meta::Type& getType() const noexcept { return type_; }
    bool isSingle() const noexcept { return !many_; }
    bool isMany() const noexcept { return many_; }

  private:
    meta::Type type_;
    bool many_ = false;
};

/// The value of one property of one element, as it stood when it was read.
///
/// A value keeps what it holds: later edits of the model do not reach it. Copies share the payload.
/// A value that was moved from is like one made by default: of no type, and not set. Each
/// conversion first checks that the value is of the right kind and throws
/// `CannotCastIncompatibleTypes` with the name of the value's type when it is not.
class MODELING_NUV0_MODEL_EXPORT Value {
  public:
    Value() = default;
    Value(ValueMeta meta, memory::HeldWord held) noexcept
        : meta_(std::move(meta)), held_(std::move(held)) {}

    const ValueMeta& getMeta() const noexcept { return meta_; }
    /// Whether the value holds something; an unset single value does not, an empty collection does.
    bool isSet() const noexcept;

    /// The element of a single value of a class type; null when unset.
    ModelElement asElement() const;
    /// The elements of a collection of a class type, which must hold a payload, possibly empty.
    std::vector<ModelElement> asElements() const;
    /// The text of a single value of the standard string type; empty when unset.
    std::u16string asString() const;

    /// The same as `asElement` and `asElements`, without copying what a collection holds; null is
    /// no element.
    memory::ElementView viewElement() const;
    memory::ElementView viewElements() const;

    /// What the value holds, for tools that print it.
    memory::Content content() const;

  private:
    const memory::Payload* payload(memory::Payload::Kind kind) const noexcept;
    bool isOfClass() const noexcept;
    [[noreturn]] void fail() const;

    ValueMeta meta_;
    memory::HeldWord held_;
};

}  // namespace nuv::zero
