#include "traversal/internal/UniquenessMaintainer.h"

#include <cstddef>
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
        if (!insert(source, target, ends)) return false;
        // Where one link stands for both, its reverse is there as well.
        return ends.areMutual || !ends.opposite || insert(target, source, endsOf(ends.opposite));
    }
    std::unique_ptr<UniquenessMaintainer> clone() const override {
        return std::make_unique<UniqueLinkMaintainer>(*this);
    }
    bool remembers() const noexcept override { return true; }
    std::size_t bytes() const noexcept override {
        std::size_t bytes = pseudoLinks_.bytes() + ends_.bytes();
        for (const PairSet& links : links_) bytes += sizeof(PairSet) + links.bytes();
        return bytes;
    }

  private:
    /// What is known of a property and its opposite.
    struct Ends {
        meta::Property opposite;
        /// Which set holds the property's links.
        std::size_t set = 0;
        /// Whether they are two, and each the other's opposite. A link and its reverse are then
        /// never seen one without the other: one pair in one set stands for both.
        bool areMutual = false;
        /// Whether that pair begins with the source of the property's own links.
        bool isForward = true;
    };

    bool insert(const ModelElement& source, const ModelElement& target, const Ends& ends) {
        PairSet& links = links_[ends.set];
        return ends.isForward ? links.insert(source, target) : links.insert(target, source);
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
