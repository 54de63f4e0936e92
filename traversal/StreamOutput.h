#pragma once

#include <concepts>
#include <ostream>

#include "Export.h"
#include "internal/Dumps.h"

/// Elements and links on streams, for who includes this:
///
///     std::cout << link << '\n';
///     EXPECT_EQ(link.getTarget(), pump);   // GoogleTest shows both elements by name
///
/// The texts are those of `dumpElement` and `dumpLink`, written as a `std::string` is: a width
/// holds for all of it. When making the text throws, nothing has been written.
///
/// Not part of `traversal/Traversal.h`: a program that has an output of its own for elements
/// does without this header. Of a program that prints elements through templates, as tests do,
/// every source includes it or none: GoogleTest's printers are made once for all of them.

namespace nuv::zero {

/// Elements only, nothing that converts to one: a framework may have an output for its classes,
/// and for its elements too, which then is used in place of this.
template <std::same_as<ModelElement> Element>
std::ostream& operator<<(std::ostream& out, const Element& element) {
    return out << traversal::internal::dumpElement(element);
}

}  // namespace nuv::zero

namespace nuv::zero::traversal MODELING_NUV0_OVER::internal {

inline std::ostream& operator<<(std::ostream& out, const Link& link) {
    return out << dumpLink(link);
}

}  // namespace nuv::zero::traversal::internal
