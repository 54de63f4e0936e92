#include "traversal/internal/Link.h"

#include <functional>

namespace nuv::zero::traversal MODELING_NUV0_OVER::internal {

Link::Link() = default;
Link::Link(const ModelElement& source, const ModelElement& target, const meta::Property& property)
    : source_(source), target_(target), property_(property) {}
Link::Link(const Link& other) = default;
Link::Link(Link&& other) noexcept = default;
Link& Link::operator=(const Link& other) = default;
Link& Link::operator=(Link&& other) noexcept = default;
Link::~Link() = default;

Link Link::empty() {
    static const Link instance;
    return instance;
}

std::optional<Link> Link::getOpposite() const {
    if (!property_) return std::nullopt;
    const meta::Property opposite = access::oppositeOf(property_);
    if (!opposite) return std::nullopt;
    return Link(target_, source_, opposite);
}

std::size_t LinkHasher::operator()(const Link& link) const {
    const std::hash<ModelElement> hash;
    // A property is an element too, and is hashed as one.
    return hash(link.getSource()) ^ hash(link.getTarget()) ^ hash(link.getProperty());
}

}  // namespace nuv::zero::traversal::internal
