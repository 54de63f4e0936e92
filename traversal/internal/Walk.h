#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "../../model/Compiler.h"
#include "../Export.h"
#include "../PropertyProvider.h"
#include "../WalkListener.h"
#include "../support/ElementSet.h"
#include "AbstractStore.h"
#include "Cursor.h"
#include "LentLink.h"
#include "Reach.h"
#include "TraversalResult.h"
#include "UniquenessMaintainer.h"
#include "Ways.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER::internal {

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
    /// The same, but for as many steps at most; what is left of them is left in the argument, also
    /// where something is thrown.
    Progress advanceWithin(std::size_t& steps);
    /// Whether the walk has come to its end, where nothing is left.
    bool hasEnded() const noexcept { return hasEnded_; }
    /// Which of the walks over the result it is.
    std::size_t number() const noexcept { return number_; }
    /// Throws `std::logic_error` when one of the walk's own callbacks is running: another step
    /// would pull the cursors out from under the one that called it.
    void refuseWhileUnderWay() const {
        if (isUnderWay_) refuseStep();
    }
    bool standsWhere(const Walk& other) const;

    // Prune what the operations of `IterationContext` of the same names say.

    Pruned pruneAllChildren();
    Pruned pruneChildren(const meta::Property& property);
    Pruned pruneSiblings();

    // Where the walk stands; see `IterationContext`.

    std::size_t depth() const noexcept { return store_->depth(); }
    Meeting meeting() { return store_->meeting(*this); }
    std::vector<Link> path() const { return store_->path(*this); }
    std::vector<Link> pathTo(const ModelElement& element);
    std::vector<Link> cycle();
    std::size_t enteredCount() const noexcept { return entered_.size(); }
    std::size_t waitingCount() const noexcept { return store_->size(); }
    std::size_t bytesHeld() const noexcept;
    Algo order() const noexcept { return result_->algo_; }

    // What follows is for those who ask what the walk has left out.

    const std::shared_ptr<TraversalResult>& result() const noexcept { return result_; }
    const std::vector<ModelElement>& inputs() const noexcept { return result_->inputs_; }
    /// How many of the inputs were begun.
    std::size_t inputsBegun() const noexcept { return nextInput_; }
    /// What is followed from elements of a class, where the walk knows that already; else null.
    const Cursor::Settings* knownSettingsOf(const meta::Class& type) const noexcept {
        return result_->provider_->knownSettingsOf(type);
    }
    /// Whether no more links come from an entered element.
    bool hasLeft(const ModelElement& element) { return hasEnded_ || store_->hasLeft(element); }

    // What follows is for the frontier.

    bool isReportingSelfFirst() const noexcept { return result_->isReportingSelfFirst(); }
    /// The observer that elements are entered under at this moment.
    TraversalProcessor* observer() const noexcept { return result_->listening_.to; }

    /// Takes one step off the budget; false when it is used up.
    bool mayGoOn() noexcept {
        if (stepsLeft_ == 0) return false;
        --stepsLeft_;
        return true;
    }

    /// What is left of the budget, for work of which there may be much in one step.
    std::size_t& budget() noexcept { return stepsLeft_; }

    const ElementSet& entered() const noexcept { return entered_; }
    bool hasEntered(const ModelElement& element) noexcept { return entered_.contains(element); }
    /// Whether the link on which a cursor stands may enter its target. Throws what a predicate
    /// throws. REQUIRES: the target was not entered.
    bool leadsOn(const Cursor& from, const ModelElement& target) {
        return !result_->hasBoundaries() || mayDescend(from, target) || refuse(from, target);
    }
    /// The same, but nobody is told of a link that does not.
    bool mayDescend(const Cursor& from, const ModelElement& target) {
        const LentLink link(from.element(), target, from.setting().property());
        return result_->mayDescend(link.get());
    }
    /// Whether what leaves an element that was entered is followed.
    bool mayLeave(const ModelElement& element) noexcept {
        return reach_ == nullptr || reach_->contains(element);
    }
    /// Whether the walk has to find out how far it goes before it goes on.
    bool isToExplore() const noexcept { return reach_ != nullptr && !reach_->isExplored(); }
    /// Enters an element, from a cursor that stands on a link to it or, as an input, from none: it
    /// is kept alive and never entered again, and the settings of its class say what to follow from
    /// it. Throws what a predicate, the model or an allocation throws, and then the element is not
    /// entered. REQUIRES: the element was not entered.
    const Cursor::Settings& enter(const ModelElement& element, const Cursor* from,
                                  std::size_t depth) {
        const bool goesOn = reach_ == nullptr || reach_->enter(element, depth);
        // What may run the caller's code comes first: it sees the walk as it was.
        const Cursor::Settings& settings = goesOn ? settingsOf(element) : noSettings;
        if (ways_ != nullptr) ways_->reserveOne();
        keeper_.pin(element);
        entered_.insert(element);
        if (ways_ != nullptr) rememberWay(element, from);
        return settings;
    }
    /// Keeps an element alive that was found, but not entered.
    void pin(const ModelElement& element) { keeper_.pin(element); }
    /// How the walk came to what it has entered. Throws `std::logic_error` where it was not asked
    /// to remember that.
    const Ways& ways() const;
    /// The settings of an element's class.
    const Cursor::Settings& settingsOf(const ModelElement& element) {
        return element ? result_->provider_->settingsOf(access::classOf(element)) : noSettings;
    }

    /// Reports a link, unless its policy, uniqueness or a filter is against it. The setting is the
    /// one by which the link was found.
    bool tryReport(const ModelElement& source, const AssociationSetting& setting,
                   const ModelElement& target, bool cascade) {
        // Made before a predicate is asked: one that copies and prunes moves the source's cursor.
        const LentLink link(source, target, setting.property(), cascade);
        if (isSilent(link.get().getSource(), setting)) {
            if (result_->isTraced()) tell(link.get(), Fate::Silent);
            return false;
        }
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

    /// What is followed from elements from which nothing is.
    static const Cursor::Settings noSettings;

  private:
    static constexpr std::size_t withoutLimit = static_cast<std::size_t>(-1);

    [[noreturn]] static void refuseStep();
    Cursor* findUnfinished(const ModelElement& element);
    Progress goOn();
    bool startNextInput();
    bool refuse(const Cursor& from, const ModelElement& target);
    void rememberWay(const ModelElement& element, const Cursor* from) noexcept;
    bool isSilent(const ModelElement& source, const AssociationSetting& setting) const {
        const CompositeMatcher* rules = setting.rules();
        const ResultPolicy policy =
            rules == nullptr
                ? setting.policy()
                : result_->provider_->policyBy(*rules, access::classOf(source), setting.property());
        return policy == ResultPolicy::WalkOnly;
    }
    /// Whether anybody has to be asked about a link besides its policy.
    bool isAsking() const noexcept { return maintainer_ != nullptr || result_->isAsking(); }
    bool isWanted(const Link& link);
    Fate fateOf(const Link& link, std::size_t& filter);
    void tell(const Link& link, Fate fate, std::size_t filter = 0);
    Pruned tell(Pruning pruning, const meta::Property& property, Pruned outcome);
    void notifyEnterInput();
    void notifyExitInput();

    std::shared_ptr<TraversalResult> result_;
    std::size_t number_;
    WalkSupport::Keeper keeper_;
    ElementSet entered_;
    std::unique_ptr<AbstractStore> store_;
    /// None where every repeat is reported.
    std::unique_ptr<UniquenessMaintainer> maintainer_;
    LentLink current_;
    /// None where the walk has no limit, or it need not remember how it came to elements.
    std::unique_ptr<Reach> reach_;
    std::unique_ptr<Ways> ways_;
    std::size_t nextInput_ = 0;
    ModelElement currentInput_;
    /// What a step has left of its budget.
    std::size_t stepsLeft_ = withoutLimit;
    bool isUnderWay_ = false;
    bool hasEnded_ = false;
};

}  // namespace nuv::zero::traversal::internal
