#include "traversal/WalkBoundaries.h"

#include <algorithm>
#include <unordered_set>

#include "traversal/internal/WalkAccess.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER {

using internal::Link;
using internal::Walk;
using internal::WalkAccess;

namespace {

/// Links to what a walk has not entered, each once.
class NeverEntered {
  public:
    explicit NeverEntered(Walk& walk) : walk_(walk) {}

    void add(const Link& link) {
        if (link.getTarget() && !walk_.hasEntered(link.getTarget()) && known_.insert(link).second) {
            links_.push_back(link);
        }
    }
    void addCut(const WalkBoundaries::Cut& cut) {
        const ModelElement& element = cut.element();
        const auto* settings = walk_.knownSettingsOf(access::classOf(element));
        if (settings == nullptr) return;
        for (const AssociationSetting& setting : *settings) {
            if (cut.property && !(cut.property == setting.property())) continue;
            const auto values = setting.read(element);
            for (std::size_t index = 0; index < values.size(); ++index) {
                const auto value = internal::Lent<ModelElement>::adopt(values.lend(index));
                add(Link(element, value.get(), setting.property()));
            }
        }
    }
    std::vector<Link> take() { return std::move(links_); }

  private:
    Walk& walk_;
    std::vector<Link> links_;
    std::unordered_set<Link, internal::LinkHasher> known_;
};

}  // namespace

WalkBoundaries::WalkBoundaries() = default;
WalkBoundaries::WalkBoundaries(const WalkBoundaries& other) = default;
WalkBoundaries& WalkBoundaries::operator=(const WalkBoundaries& other) {
    // Copied first, so that a failure changes nothing.
    WalkBoundaries copy(other);
    refusals_.swap(copy.refusals_);
    cuts_.swap(copy.cuts_);
    return *this;
}
WalkBoundaries::~WalkBoundaries() = default;

void WalkBoundaries::onLink(const WalkView& walk, const Link& link, Fate fate,
                            std::size_t /*filter*/) {
    if (fate == Fate::NotDescended) refusals_.push_back({walk.number(), link});
}

void WalkBoundaries::onPrune(const WalkView& walk, const Link& link, Pruning pruning,
                             const meta::Property& property, Pruned outcome) {
    if (outcome == Pruned::Cut) cuts_.push_back({walk.number(), link, pruning, property});
}

const WalkBoundaries::Refusal* WalkBoundaries::findRefusal(const Link& link) const noexcept {
    const auto found = std::find_if(refusals_.begin(), refusals_.end(),
                                    [&](const Refusal& refusal) { return refusal.link == link; });
    return found == refusals_.end() ? nullptr : &*found;
}

const WalkBoundaries::Cut* WalkBoundaries::findCut(const ModelElement& element,
                                                   const meta::Property& property) const noexcept {
    const auto found = std::find_if(cuts_.begin(), cuts_.end(), [&](const Cut& cut) {
        return cut.element() == element && (!cut.property || cut.property == property);
    });
    return found == cuts_.end() ? nullptr : &*found;
}

std::vector<Link> WalkBoundaries::neverEntered(
    const internal::TraversalResult::IterationContext& walk) const {
    return neverEntered(WalkAccess::of(walk));
}

std::vector<Link> WalkBoundaries::neverEntered(const LinkRange& walk) const {
    return neverEntered(WalkAccess::of(walk));
}

std::vector<Link> WalkBoundaries::neverEntered(const WalkView& walk) const {
    return neverEntered(WalkAccess::of(walk));
}

std::vector<Link> WalkBoundaries::neverEntered(Walk* walk) const {
    if (walk == nullptr) return {};
    NeverEntered found(*walk);
    for (const Refusal& refusal : refusals_) found.add(refusal.link);
    for (const Cut& cut : cuts_) found.addCut(cut);
    return found.take();
}

void WalkBoundaries::clear() noexcept {
    refusals_.clear();
    cuts_.clear();
}

}  // namespace nuv::zero::traversal
