#include "traversal/PropertyMatcher.h"

#include <utility>

namespace nuv::zero::traversal MODELING_NUV0_OVER {

PropertyMatcher::PropertyMatcher(const Property& property)
    : property_(property),
      matcher_(EveryClass()),
      owner_(property ? Class(access::owningClass(property)) : Class()) {}

PropertyMatcher::PropertyMatcher(const Property& property,
                                 const std::function<bool(const Class&)>& matcher,
                                 const Class& owner)
    : property_(property), matcher_(matcher), owner_(owner) {}

PropertyMatcher::PropertyMatcher(const PropertyMatcher& other) = default;
PropertyMatcher::PropertyMatcher(PropertyMatcher&& other) noexcept
    : property_(std::move(other.property_)),
      matcher_(std::exchange(other.matcher_, nullptr)),
      owner_(std::move(other.owner_)) {}
PropertyMatcher& PropertyMatcher::operator=(const PropertyMatcher& other) = default;
PropertyMatcher& PropertyMatcher::operator=(PropertyMatcher&& other) noexcept {
    PropertyMatcher taken(std::move(other));
    property_ = std::move(taken.property_);
    matcher_.swap(taken.matcher_);
    owner_ = std::move(taken.owner_);
    return *this;
}
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
