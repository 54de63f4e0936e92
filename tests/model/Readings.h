#pragma once

#include <string>
#include <variant>

#include "model/memory/ElementView.h"
#include "model/memory/MessageException.h"
#include "tests/model/Blocks.h"

namespace nuv::zero::test {

/// What a reading of a property gives: the elements, or the type that the failure names.
using Reading = std::variant<Elements, std::u16string>;

inline Elements taken(const memory::ElementView& view) {
    Elements elements;
    for (std::size_t i = 0; i < view.size(); ++i) {
        ModelElement lent = view.lend(i);
        elements.push_back(lent);
        memory::Lending::forget(lent);
    }
    return elements;
}

/// Calls what reads elements.
template <class Read>
Reading readingOf(const Read& read) {
    try {
        return read();
    } catch (const CannotCastIncompatibleTypes& failure) {
        return failure.arguments().at(0);
    }
}

inline memory::ElementView view(const ModelElement& element, const meta::Property& property) {
    return element->view(property, ModelElement::Impl::ReflectionPrivateTag::PUBLIC_ACCESS);
}
inline Reading viewed(const ModelElement& element, const meta::Property& property) {
    return readingOf([&] { return taken(view(element, property)); });
}

}  // namespace nuv::zero::test
