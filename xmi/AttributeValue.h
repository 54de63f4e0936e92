#pragma once

#include <optional>
#include <string>

#include "xmi/LoadedMetamodel.h"

namespace nuv::zero::xmi {

/// What a single-valued attribute of an element holds, as its metamodel declares it: what the file
/// says, or the default.
///
///     const AttributeValue value = AttributeValue::of(metamodel, element, isActive);
///     std::cout << value.text.value_or("nothing") << (value.isSet ? "" : " by default");
struct AttributeValue {
    /// As files write it; nothing where the attribute holds nothing.
    std::optional<std::string> text;
    /// Whether it was set. Of an attribute that is not unsettable, a value that is the default
    /// counts as none, since writing it and leaving it out are the same.
    bool isSet = false;

    /// REQUIRES: the element has the attribute. Throws `std::bad_alloc` only.
    static AttributeValue of(const LoadedMetamodel& metamodel, const ModelElement& element,
                             const meta::Property& attribute);
};

}  // namespace nuv::zero::xmi
