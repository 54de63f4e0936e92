#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "xmi/ReadError.h"

namespace nuv::zero::xmi {

/// Something of a model set that is not as it should be, and what was left out for it.
struct ModelSetFinding {
    enum class Kind : std::uint8_t {
        /// A reference leads into a file that is in none of the file roots.
        Missing,
        /// It leads out of its root.
        Outside,
        /// Two files are meant alike.
        Ambiguous,
        /// The file is there and cannot be read as a model.
        Unreadable,
        /// The file is there and holds no such element.
        NoElement,
        /// The element is there and may not stand in the property.
        NoFit,
        /// The element is contained already.
        ContainedTwice,
        /// The element would contain itself, by way of other files.
        ContainedInItself,
    };

    Kind kind;
    /// Where the reference stands.
    std::string file;
    Position position;
    /// As it is written, with the property: what leads where.
    std::string reference;
    std::string property;
    /// Whether an element was to be contained, so that everything below it is missing.
    bool isContainment = false;
    /// One line, without the place.
    std::string reason;
    /// The places where the file was looked for.
    std::vector<std::string> tried;

    /// `file:line:column: reason`.
    std::string text() const { return ReadError(file, position, reason).what(); }
};

}  // namespace nuv::zero::xmi
