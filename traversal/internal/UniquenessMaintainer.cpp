#include "traversal/internal/UniquenessMaintainer.h"

#include <cstddef>
#include <unordered_map>
#include <vector>

#include "traversal/support/ElementSet.h"
#include "traversal/support/FlatMap.h"
#include "traversal/support/PairSet.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER::internal {

UniquenessMaintainer::~UniquenessMaintainer() = default;

namespace {

class NoUniquenessMaintainer final : public UniquenessMaintainer {
  public:
    bool shouldReport(const Link& /*link*/) override { return true; }
    std::unique_ptr<UniquenessMaintainer> clone() const override {
        return std::make_unique<NoUniquenessMaintainer>();
    }
    bool remembers() const noexcept override { return false; }
    std::size_t bytes() const noexcept override { return 0; }
};

class UniqueElementsMaintainer final : public UniquenessMaintainer {
  public:
    bool shouldReport(const Link& link) override { return seen_.insert(link.getTarget()); }
    std::unique_ptr<UniquenessMaintainer> clone() const override {
        return std::make_unique<UniqueElementsMaintainer>(*this);
    }
    bool remembers() const noexcept override { return true; }
    std::size_t bytes() const noexcept override { return seen_.bytes(); }

  private:
    ElementSet seen_;
};

class UniqueLinkMaintainer final : public UniquenessMaintainer {
  public:
    /// A link and its reverse are one association. Both count as seen whichever comes first; a new
    /// link whose reverse was met is refused.
    bool shouldReport(const Link& link) override {
        const meta::Property& property = link.getProperty();
        const ModelElement& source = link.getSource();
        const ModelElement& target = link.getTarget();
        if (!property) return insert(pseudoLinks_, source, target);
        const Ends ends = endsOf(property);
        if (!ends.areMutual) {
            return insert(source, target, ends) &&
                   (!ends.opposite || insertReverse(target, source, ends.opposite));
        }
        if (alone_.empty()) return insert(source, target, ends);
        if (isAlone(source, target, property)) return false;
        const bool isReverseNew = !isAlone(target, source, ends.opposite);
        return insert(source, target, ends) && isReverseNew;
    }
    std::unique_ptr<UniquenessMaintainer> clone() const override {
        return std::make_unique<UniqueLinkMaintainer>(*this);
    }
    bool remembers() const noexcept override { return true; }
    std::size_t bytes() const noexcept override {
        return bytesOfPairs_ + ends_.bytes() + (links_.size() + alone_.size()) * sizeof(PairSet);
    }

  private:
    /// What is known of a property and its opposite.
    struct Ends {
        meta::Property opposite;
        /// Which set holds the property's links.
        std::size_t set = 0;
        /// Whether they are two, and each the other's opposite. A link and its reverse are then
        /// seen together: one pair in one set stands for both.
        bool areMutual = false;
        /// Whether that pair begins with the source of the property's own links.
        bool isForward = true;
    };

    bool insert(const ModelElement& source, const ModelElement& target, const Ends& ends) {
        PairSet& links = links_[ends.set];
        return ends.isForward ? insert(links, source, target) : insert(links, target, source);
    }
    bool insert(PairSet& links, const ModelElement& first, const ModelElement& second) {
        const std::size_t before = links.bytes();
        const bool isNew = links.insert(first, second);
        bytesOfPairs_ += links.bytes() - before;
        return isNew;
    }
    /// Inserts the reverse of a link whose property is not the opposite of its own opposite.
    bool insertReverse(const ModelElement& one, const ModelElement& other,
                       const meta::Property& property) {
        const Ends ends = endsOf(property);
        if (!ends.areMutual) return insert(one, other, ends);
        const PairSet& links = links_[ends.set];
        const bool isKnown =
            ends.isForward ? links.contains(one, other) : links.contains(other, one);
        return !isKnown && insert(alone_[property], one, other);
    }
    bool isAlone(const ModelElement& one, const ModelElement& other,
                 const meta::Property& property) const {
        const auto links = alone_.find(property);
        return links != alone_.end() && links->second.contains(one, other);
    }
    const Ends& endsOf(const meta::Property& property) {
        const Ends* known = ends_.find(property);
        return known != nullptr ? *known : ends_.insert(property, askForEnds(property));
    }
    Ends askForEnds(const meta::Property& property) {
        Ends ends;
        ends.opposite = access::oppositeOf(property);
        if (ends.opposite && !(ends.opposite == property)) {
            const meta::Property back = access::oppositeOf(ends.opposite);
            ends.areMutual = back == property;
        }
        const Ends* other = ends.areMutual ? ends_.find(ends.opposite) : nullptr;
        if (other != nullptr) {
            ends.set = other->set;
            ends.isForward = false;
            return ends;
        }
        ends.set = links_.size();
        links_.emplace_back();
        return ends;
    }

    PairSet pseudoLinks_;
    /// One for each association met.
    std::vector<PairSet> links_;
    /// Links of mutual ends that count as seen without their reverses, because a third property
    /// has named their own as its opposite. Few metamodels have such properties.
    std::unordered_map<meta::Property, PairSet> alone_;
    FlatMap<meta::Property, meta::Property, Ends, WalkSupport::Hash<meta::Property>> ends_;
    /// What all sets take: a listener may ask for each link.
    std::size_t bytesOfPairs_ = 0;
};

}  // namespace

std::unique_ptr<UniquenessMaintainer> makeUniquenessMaintainer(UniquenessMode mode) {
    switch (mode) {
        case UniquenessMode::UniqueLinks:
            return std::make_unique<UniqueLinkMaintainer>();
        case UniquenessMode::UniqueElements:
            return std::make_unique<UniqueElementsMaintainer>();
        case UniquenessMode::NoUniqueness:
            break;
    }
    return std::make_unique<NoUniquenessMaintainer>();
}

}  // namespace nuv::zero::traversal::internal
