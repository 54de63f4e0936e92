#pragma once

#include <vector>

#include "Export.h"
#include "PropertyMatcher.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER {

/// The rules for the references by which elements of a class refer to what contains them: for each
/// association that is an opposite of a containment, and no containment itself, the rule for all
/// classes. For the subtractive kind, which else climbs out of any subtree:
///
///     builder->prune(containerReferencesOf(port));
///     builder->prune(containerReferencesOf(metamodel.classes()));
///
/// A function over classes, and no switch of the builders, so that what cuts is rules like any
/// other, each of one property: they can be looked at, left out one by one and replaced, and what
/// is told about rules is told about these.
///
/// Considered are the properties that the classes have, inherited ones included, and the opposites
/// of their containments. What a subclass declares is found through the subclass. Opposites count
/// from either end. In the order of the classes and of their properties, each once. Throws
/// `std::invalid_argument` for a null class.
MODELING_NUV0_TRAVERSAL_EXPORT std::vector<PropertyMatcher> containerReferencesOf(
    const Class& type);
MODELING_NUV0_TRAVERSAL_EXPORT std::vector<PropertyMatcher> containerReferencesOf(
    const std::vector<Class>& types);

}  // namespace nuv::zero::traversal
