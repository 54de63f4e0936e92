#include "traversal/PropertyMatcher.h"

namespace nuv::zero::traversal {

PropertyMatcher::PropertyMatcher(const Property& property)
    : property_(property), matcher_(EveryClass()), owner_(access::owningClass(property)) {}

PropertyMatcher::PropertyMatcher(const Property& property,
                                 const std::function<bool(const Class&)>& matcher,
                                 const Class& owner)
    : property_(property), matcher_(matcher), owner_(owner) {}

PropertyMatcher::PropertyMatcher(const PropertyMatcher& other) = default;
PropertyMatcher::PropertyMatcher(PropertyMatcher&& other) noexcept = default;
PropertyMatcher& PropertyMatcher::operator=(const PropertyMatcher& other) = default;
PropertyMatcher& PropertyMatcher::operator=(PropertyMatcher&& other) noexcept = default;
PropertyMatcher::~PropertyMatcher() = default;

const Property& PropertyMatcher::getProperty() const {
    return property_;
}
const std::function<bool(const Class&)>& PropertyMatcher::getMatcher() const {
    return matcher_;
}
const Class& PropertyMatcher::getOwner() const {
    return owner_;
}
bool PropertyMatcher::matches(const Class& type) const {
    return matcher_(type);
}

}  // namespace nuv::zero::traversal
