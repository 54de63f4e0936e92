#pragma once

#include <cstddef>
#include <memory>

#include "model/Compiler.h"
#include "traversal/PropertyProvider.h"
#include "traversal/internal/AbstractStore.h"
#include "traversal/internal/Cursor.h"
#include "traversal/internal/LentLink.h"
#include "traversal/internal/TraversalResult.h"
#include "traversal/internal/UniquenessMaintainer.h"
#include "traversal/support/ElementSet.h"

namespace nuv::zero::traversal::internal {

/// One walk over a result, and what an `IterationContext` stands for: takes one input after the
/// other, and offers the frontier what both orders do with a link, to enter its target and to try
/// to report it. In which order that happens is the frontier's affair.
///
/// A walk keeps alive what its lent handles rely on: the result, whose provider holds properties
/// and settings, and the models of the elements met. It stays where it is; a copy is independent.
class Walk {
  public:
    /// A walk before its first link.
    explicit Walk(std::shared_ptr<TraversalResult> result);
    Walk(const Walk& other);
    Walk(Walk&&) = delete;
    Walk& operator=(const Walk&) = delete;
    Walk& operator=(Walk&&) = delete;
    ~Walk();

    const Link& current() const noexcept { return current_.get(); }
    /// Moves on to the next link, or to the empty link at the end.
    void advance();
    /// Throws `std::logic_error` when one of the walk's own callbacks is running: another step
    /// would pull the cursors out from under the one that called it.
    void refuseWhileUnderWay() const {
        if (isUnderWay_) refuse();
    }
    bool standsWhere(const Walk& other) const;

    /// The cursor of an element that may still give links, to prune it; null where there is none.
    Cursor* findUnfinished(const ModelElement& element);

    // What follows is for the frontier.

    bool isReportingSelfFirst() const noexcept { return result_->isReportingSelfFirst(); }
    /// The observer that elements are entered under at this moment.
    TraversalProcessor* observer() const noexcept { return result_->processor_; }

    bool hasEntered(const ModelElement& element) noexcept { return entered_.contains(element); }
    /// Enters an element: it is kept alive and never entered again, and the settings of its class
    /// say what to follow from it. Throws what a predicate, the model or an allocation throws, and
    /// then the element is not entered. REQUIRES: the element was not entered.
    const Cursor::Settings& enter(const ModelElement& element) {
        // What may run the caller's code comes first: it sees the walk as it was.
        const Cursor::Settings& settings = settingsOf(element);
        keeper_.pin(element);
        entered_.insert(element);
        return settings;
    }
    /// The settings of an element's class.
    const Cursor::Settings& settingsOf(const ModelElement& element) {
        return element ? result_->provider_->settingsOf(access::classOf(element)) : noSettings;
    }

    /// Reports a link, unless its policy, uniqueness or a filter is against it. The setting is the
    /// one by which the link was found.
    bool tryReport(const ModelElement& source, const AssociationSetting& setting,
                   const ModelElement& target, bool cascade) {
        if (isSilent(source, setting)) return false;
        const LentLink link(source, target, setting.property(), cascade);
        if (isAsking() && !isWanted(link.get())) return false;
        current_ = link;
        return true;
    }
    /// The same for an input's own link.
    bool tryReportInput(const ModelElement& input);

    /// Begins to load an element that is met soon.
    MODELING_NUV0_ALWAYS_INLINE void announce(const ModelElement& element) const noexcept {
        entered_.prefetch(element);
        WalkSupport::prefetch(element);
    }

  private:
    static const Cursor::Settings noSettings;

    [[noreturn]] static void refuse();
    bool startNextInput();
    static bool isSilent(const ModelElement& source, const AssociationSetting& setting) {
        const CompositeMatcher* rules = setting.rules();
        const ResultPolicy policy =
            rules == nullptr ? setting.policy() : rules->getPolicy(access::classOf(source));
        return policy == ResultPolicy::WalkOnly;
    }
    /// Whether anybody has to be asked about a link besides its policy.
    bool isAsking() const noexcept { return maintainer_ != nullptr || result_->hasFilters(); }
    bool isWanted(const Link& link);
    void notifyEnterInput();
    void notifyExitInput();

    std::shared_ptr<TraversalResult> result_;
    WalkSupport::Keeper keeper_;
    ElementSet entered_;
    std::unique_ptr<AbstractStore> store_;
    /// None where every repeat is reported.
    std::unique_ptr<UniquenessMaintainer> maintainer_;
    LentLink current_;
    std::size_t nextInput_ = 0;
    ModelElement currentInput_;
    bool isUnderWay_ = false;
};

}  // namespace nuv::zero::traversal::internal
