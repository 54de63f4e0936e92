#pragma once

#include <string>
#include <string_view>

#include "../Export.h"
#include "Class.h"
#include "Value.h"

namespace nuv::zero::memory {

/// The value of an attribute as text, in UTF-8, for whoever shows or compares it:
///
///     std::cout << memory::textOf(pump, u"name") << ' ' << memory::textOf(pump, pressure);
///
/// A text as it stands, an integer in decimal, the values of a collection with a comma and a space
/// between them, and nothing for what is not set. Throws `ModelError`, which names what it was
/// given, for a null handle, for a property that the element's class does not have, and for a value
/// that is elements.
MODELING_NUV0_MODEL_EXPORT std::string textOf(const ModelElement& element,
                                              const meta::Property& attribute);
MODELING_NUV0_MODEL_EXPORT std::string textOf(const ModelElement& element,
                                              std::u16string_view attribute);

}  // namespace nuv::zero::memory
