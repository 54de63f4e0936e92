#include "traversal/internal/UniquenessMaintainer.h"

#include "traversal/support/ElementSet.h"
#include "traversal/support/FlatMap.h"
#include "traversal/support/LinkSet.h"

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
};

class UniqueElementsMaintainer final : public UniquenessMaintainer {
  public:
    bool shouldReport(const Link& link) override { return seen_.insert(link.getTarget()); }
    std::unique_ptr<UniquenessMaintainer> clone() const override {
        return std::make_unique<UniqueElementsMaintainer>(*this);
    }
    bool remembers() const noexcept override { return true; }

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
        if (!property) return seen_.insert(source, target, property);
        const Ends ends = endsOf(property);
        if (!insert(source, target, property, ends)) return false;
        // Where one link stands for both, its reverse is there as well.
        return ends.areMutual || !ends.opposite ||
               insert(target, source, ends.opposite, endsOf(ends.opposite));
    }
    std::unique_ptr<UniquenessMaintainer> clone() const override {
        return std::make_unique<UniqueLinkMaintainer>(*this);
    }
    bool remembers() const noexcept override { return true; }

  private:
    /// What is known of a property and its opposite.
    struct Ends {
        meta::Property opposite;
        /// Whether they are two, and each the other's opposite. A link and its reverse are then
        /// never seen one without the other, and one of both stands for both.
        bool areMutual = false;
        /// Whether it is the property's own links that stand for both.
        bool isFirst = true;
    };

    bool insert(const ModelElement& source, const ModelElement& target,
                const meta::Property& property, const Ends& ends) {
        return !ends.areMutual || ends.isFirst ? seen_.insert(source, target, property)
                                               : seen_.insert(target, source, ends.opposite);
    }
    const Ends& endsOf(const meta::Property& property) {
        const Ends* known = ends_.find(property);
        return known != nullptr ? *known : ends_.insert(property, askForEnds(property));
    }
    Ends askForEnds(const meta::Property& property) const {
        Ends ends;
        ends.opposite = access::oppositeOf(property);
        if (!ends.opposite || ends.opposite == property) return ends;
        const meta::Property back = access::oppositeOf(ends.opposite);
        ends.areMutual = back == property;
        ends.isFirst = ends_.find(ends.opposite) == nullptr;
        return ends;
    }

    LinkSet seen_;
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
