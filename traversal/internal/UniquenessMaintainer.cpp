#include "traversal/internal/UniquenessMaintainer.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include "traversal/support/ElementSet.h"
#include "traversal/support/FlatMap.h"
#include "traversal/support/PairSet.h"

namespace nuv::zero::traversal::internal {

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
        if (!property) return pseudoLinks_.insert(source, target);
        const Ends ends = endsOf(property);
        if (ends.areMutual) {
            if (isAlone(source, target, property)) return false;
            // Where one link stands for both, its reverse is there as well.
            return insert(source, target, ends) && !isAlone(target, source, ends.opposite);
        }
        if (!insert(source, target, ends)) return false;
        return !ends.opposite || insertReverse(target, source, ends.opposite);
    }
    std::unique_ptr<UniquenessMaintainer> clone() const override {
        return std::make_unique<UniqueLinkMaintainer>(*this);
    }
    bool remembers() const noexcept override { return true; }
    std::size_t bytes() const noexcept override {
        std::size_t bytes = pseudoLinks_.bytes() + ends_.bytes();
        for (const PairSet& links : links_) bytes += sizeof(PairSet) + links.bytes();
        for (const auto& [property, links] : alone_) bytes += sizeof(links) + links.bytes();
        return bytes;
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
        return ends.isForward ? links.insert(source, target) : links.insert(target, source);
    }
    /// The same for the reverse of a link whose property is not the opposite of its opposite: of
    /// two that are each other's opposites, such a link has one seen without the other.
    bool insertReverse(const ModelElement& source, const ModelElement& target,
                       const meta::Property& property) {
        const Ends ends = endsOf(property);
        if (!ends.areMutual) return insert(source, target, ends);
        const PairSet& links = links_[ends.set];
        const bool isSeen =
            ends.isForward ? links.contains(source, target) : links.contains(target, source);
        return !isSeen && aloneOf(property).insert(source, target);
    }
    bool isAlone(const ModelElement& source, const ModelElement& target,
                 const meta::Property& property) const {
        return std::any_of(alone_.begin(), alone_.end(), [&](const auto& entry) {
            return entry.first == property && entry.second.contains(source, target);
        });
    }
    PairSet& aloneOf(const meta::Property& property) {
        const auto known = std::find_if(alone_.begin(), alone_.end(),
                                        [&](const auto& entry) { return entry.first == property; });
        return known != alone_.end() ? known->second
                                     : alone_.emplace_back(property, PairSet()).second;
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
    /// What was seen of a property without its reverse, although they are mutual. None but where a
    /// third property names one of two as its opposite.
    std::vector<std::pair<meta::Property, PairSet>> alone_;
    FlatMap<meta::Property, meta::Property, Ends, WalkSupport::Hash<meta::Property>> ends_;
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
