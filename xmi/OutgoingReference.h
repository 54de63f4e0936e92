#pragma once

#include <cstdint>
#include <string>

#include "model/memory/Metamodel.h"
#include "xmi/XmlDocument.h"

namespace nuv::zero::xmi {

/// A reference of one file that leads into another, and where it belongs once its target is there.
struct OutgoingReference {
    /// The number of the element that refers.
    std::uint32_t element;
    /// Kept alive by the class of the element.
    const memory::PropertyObject* property;
    /// The XML element that it stands in, and the number of that one's first byte.
    Node node;
    std::uint32_t offset;
    /// What of the property's values in this file stands in front of it: for contents all elements
    /// with a smaller number, for others so many entries of the list.
    std::uint32_t before;
    /// As it is written.
    std::string text;
    /// The path in this file ends at an XML element whose element is kept elsewhere, and leads
    /// where the reference there does; `noNode` for a reference that names the other file itself.
    Node through;
};

}  // namespace nuv::zero::xmi
