#pragma once

#include <string>
#include <vector>

#include "model/memory/Payload.h"

namespace nuv::zero {

/// What a value is: its type, and whether it is single or a collection.
class ValueMeta {
  public:
    ValueMeta() = default;
    ValueMeta(meta::Type type, bool many) noexcept : type_(std::move(type)), many_(many) {}
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
/// Each conversion first checks that the value is of the right kind and throws
/// `CannotCastIncompatibleTypes` with the name of the value's type when it is not.
class MODELING_NUV0_MODEL_EXPORT Value {
  public:
    Value() = default;
    Value(ValueMeta meta, memory::PayloadPointer payload) noexcept
        : meta_(std::move(meta)), payload_(std::move(payload)) {}

    const ValueMeta& getMeta() const noexcept { return meta_; }
    /// Whether the value holds something; an unset single value does not, an empty collection does.
    bool isSet() const noexcept;

    /// The element of a single value of a class type; null when unset.
    ModelElement asElement() const;
    /// The elements of a collection of a class type, which must hold a payload, possibly empty.
    std::vector<ModelElement> asElements() const;
    /// The text of a single value of the standard string type; empty when unset.
    std::u16string asString() const;

    /// What the value holds, for tools that print it; monostate when unset.
    const memory::Payload::Data& data() const noexcept;

  private:
    [[noreturn]] void fail() const;

    ValueMeta meta_;
    memory::PayloadPointer payload_;
};

}  // namespace nuv::zero
