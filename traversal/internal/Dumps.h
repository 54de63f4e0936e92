#pragma once

#include <string>

#include "../Export.h"
#include "Link.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER::internal {

/// An element as one line of UTF-8: its class and, in apostrophes, its name, as in `Block'b1'`. An
/// unset name and a class without a property "name" give `Block''`; a null element gives
/// `Not an element`. Throws `CannotCastIncompatibleTypes` when the name is not a single string.
MODELING_NUV0_TRAVERSAL_EXPORT std::string dumpElement(const ModelElement& element);

/// A link as one line of UTF-8: source, property and target, as in `Block'b1'-[ports]-Port'p1'`.
/// The property of a pseudo-link is `[pseudo]`. Throws as `dumpElement` does, for the target first.
MODELING_NUV0_TRAVERSAL_EXPORT std::string dumpLink(const Link& link);

}  // namespace nuv::zero::traversal::internal
