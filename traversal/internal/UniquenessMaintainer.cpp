#include "traversal/internal/UniquenessMaintainer.h"

#include <optional>
#include <unordered_set>

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
    bool shouldReport(const Link& link) override { return seen_.insert(link.getTarget()).second; }
    std::unique_ptr<UniquenessMaintainer> clone() const override {
        auto copy = std::make_unique<UniqueElementsMaintainer>();
        copy->seen_ = seen_;
        return copy;
    }
    bool remembers() const noexcept override { return true; }

  private:
    std::unordered_set<ModelElement> seen_;
};

class UniqueLinkMaintainer final : public UniquenessMaintainer {
  public:
    /// A link and its reverse are one association. Both are remembered whichever comes first; a
    /// new link whose reverse was met is refused.
    bool shouldReport(const Link& link) override {
        if (!seen_.insert(link).second) return false;
        const std::optional<Link> opposite = link.getOpposite();
        return !opposite || seen_.insert(*opposite).second;
    }
    std::unique_ptr<UniquenessMaintainer> clone() const override {
        auto copy = std::make_unique<UniqueLinkMaintainer>();
        copy->seen_ = seen_;
        return copy;
    }
    bool remembers() const noexcept override { return true; }

  private:
    std::unordered_set<Link, LinkHasher> seen_;
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
