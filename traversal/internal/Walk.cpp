#include "traversal/internal/Walk.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "traversal/internal/TraversalProcessor.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER::internal {

namespace {

/// Marks a walk as under way for as long as a step takes.
class Step {
  public:
    explicit Step(bool& isUnderWay) noexcept : isUnderWay_(isUnderWay) { isUnderWay_ = true; }
    Step(const Step&) = delete;
    Step& operator=(const Step&) = delete;
    ~Step() { isUnderWay_ = false; }

  private:
    bool& isUnderWay_;
};

/// Gives back what is left of a budget, however the step ends.
class Returned {
  public:
    Returned(std::size_t& steps, const std::size_t& left) noexcept : steps_(steps), left_(left) {}
    Returned(const Returned&) = delete;
    Returned& operator=(const Returned&) = delete;
    ~Returned() { steps_ = left_; }

  private:
    std::size_t& steps_;
    const std::size_t& left_;
};

}  // namespace

const Cursor::Settings Walk::noSettings;

Walk::Walk(std::shared_ptr<TraversalResult> result)
    : result_(std::move(result)),
      number_(++result_->walks_),
      store_(result_->isDepthFirst() ? makeDfsStore() : makeBfsStore()),
      maintainer_(result_->createUniquenessMaintainer()) {
    if (!maintainer_->remembers()) maintainer_.reset();
    if (result_->upTo_) {
        const bool isKnownByDepth = !result_->isDepthFirst() && result_->inputs_.size() == 1;
        reach_ = std::make_unique<Reach>(*result_->upTo_, isKnownByDepth);
    }
    if (result_->remembersPaths_) ways_ = std::make_unique<Ways>();
}

Walk::Walk(const Walk& other)
    : result_(other.result_),
      number_(++result_->walks_),
      keeper_(other.keeper_),
      entered_(other.entered_),
      store_(other.store_->clone()),
      maintainer_(other.maintainer_ ? other.maintainer_->clone() : nullptr),
      current_(other.current_),
      reach_(other.reach_ ? std::make_unique<Reach>(*other.reach_) : nullptr),
      ways_(other.ways_ ? std::make_unique<Ways>(*other.ways_) : nullptr),
      nextInput_(other.nextInput_),
      currentInput_(other.currentInput_),
      hasEnded_(other.hasEnded_) {}

Walk::~Walk() = default;

void Walk::refuseStep() {
    throw std::logic_error("A walk cannot be advanced or assigned from its own callbacks.");
}

void Walk::advance() {
    refuseWhileUnderWay();
    const Step step(isUnderWay_);
    stepsLeft_ = withoutLimit;
    goOn();
}

Progress Walk::advanceWithin(std::size_t& steps) {
    refuseWhileUnderWay();
    if (hasEnded_) return Progress::Ended;
    const Step step(isUnderWay_);
    stepsLeft_ = steps;
    const Returned returned(steps, stepsLeft_);
    return goOn();
}

inline Progress Walk::goOn() {
    while (true) {
        if (isToExplore() && !reach_->explore(*this, result_->inputs_)) return Progress::Paused;
        switch (store_->advance(*this)) {
            case AbstractStore::Outcome::Reported:
                return Progress::OnLink;
            case AbstractStore::Outcome::Paused:
                return Progress::Paused;
            case AbstractStore::Outcome::ToExplore:
                continue;
            case AbstractStore::Outcome::NothingLeft:
                break;
        }
        if (!mayGoOn()) return Progress::Paused;
        if (!startNextInput()) return Progress::Ended;
    }
}

bool Walk::standsWhere(const Walk& other) const {
    return result_ == other.result_ && nextInput_ == other.nextInput_ &&
           store_->equals(*other.store_) && current() == other.current() &&
           currentInput_ == other.currentInput_ && hasEnded_ == other.hasEnded_;
}

Cursor* Walk::findUnfinished(const ModelElement& element) {
    return hasEntered(element) ? store_->findUnfinished(*this, element) : nullptr;
}

Pruned Walk::pruneAllChildren() {
    const ModelElement& target = current().getTarget();
    Cursor* cursor = findUnfinished(target);
    const Pruned pruned = cursor == nullptr ? Pruned::TooLate : cursor->pruneAllChildren();
    return tell(Pruning::AllChildren, {}, target && hasEntered(target) ? pruned : Pruned::Nothing);
}

Pruned Walk::pruneChildren(const meta::Property& property) {
    const ModelElement& target = current().getTarget();
    Cursor* cursor = findUnfinished(target);
    const Pruned pruned = cursor == nullptr ? Pruned::TooLate : cursor->pruneProperty(property);
    const bool isFollowed = target && hasEntered(target) &&
                            result_->provider_->isFollowed(access::classOf(target), property);
    return tell(Pruning::Children, property, isFollowed ? pruned : Pruned::Nothing);
}

Pruned Walk::pruneSiblings() {
    const ModelElement& source = current().getSource();
    Cursor* cursor = findUnfinished(source);
    const AssociationSetting* at = cursor == nullptr ? nullptr : cursor->property();
    const Pruned pruned = cursor == nullptr ? Pruned::TooLate : cursor->pruneCurrentProperty();
    return tell(Pruning::Siblings, at == nullptr ? meta::Property() : at->property(),
                source ? pruned : Pruned::Nothing);
}

std::vector<Link> Walk::pathTo(const ModelElement& element) {
    return hasEntered(element) ? store_->pathTo(*this, element) : std::vector<Link>();
}

/// The way from the target of the link on which the walk stands, back to it over that link.
std::vector<Link> Walk::cycle() {
    if (!result_->isDepthFirst() || meeting() != Meeting::Open) return {};
    std::vector<Link> links = path();
    const ModelElement& target = links.back().getTarget();
    const auto entered = std::find_if(links.begin(), links.end(),
                                      [&](const Link& link) { return link.getTarget() == target; });
    links.erase(links.begin(), entered + 1);
    return links;
}

std::size_t Walk::bytesHeld() const noexcept {
    std::size_t bytes = entered_.bytes() + store_->bytes();
    if (maintainer_ != nullptr) bytes += maintainer_->bytes();
    if (reach_ != nullptr) bytes += reach_->bytes();
    if (ways_ != nullptr) bytes += ways_->bytes();
    return bytes;
}

const Ways& Walk::ways() const {
    if (ways_ != nullptr) return *ways_;
    throw std::logic_error(
        "This walk does not remember how it came to its elements: call "
        "ResultSetup::rememberPaths() before the walk begins.");
}

void Walk::rememberWay(const ModelElement& element, const Cursor* from) noexcept {
    if (from == nullptr) {
        ways_->remember(element, ModelElement(), nullptr);
    } else {
        ways_->remember(element, from->element(), &from->setting());
    }
}

/// Tells of a link that does not enter its target; always false. The link may be reported all the
/// same, so its target is kept alive as if it were entered.
bool Walk::refuse(const Cursor& from, const ModelElement& target) {
    keeper_.pin(target);
    const LentLink link(from.element(), target, from.setting().property(), false);
    tell(link.get(), Fate::NotDescended);
    return false;
}

bool Walk::startNextInput() {
    notifyExitInput();
    if (nextInput_ == result_->inputs_.size()) {
        current_ = LentLink();
        hasEnded_ = true;
        return false;
    }
    // Moved on before the event: an observer that throws loses this input, not the whole walk.
    currentInput_ = result_->inputs_[nextInput_++];
    notifyEnterInput();
    store_->push(Link(ModelElement(), currentInput_, meta::Property()));
    return true;
}

bool Walk::tryReportInput(const ModelElement& input) {
    const LentLink link(ModelElement(), input, meta::Property());
    // The link of a null input is the empty link, which marks the end.
    if (!input || !isWanted(link.get())) return false;
    current_ = link;
    return true;
}

bool Walk::isWanted(const Link& link) {
    std::size_t filter = 0;
    const Fate fate = fateOf(link, filter);
    if (result_->isTraced()) tell(link, fate, filter);
    return fate == Fate::Reported;
}

/// What becomes of a link that is not silent, and which filter leaves it out.
inline Fate Walk::fateOf(const Link& link, std::size_t& filter) {
    // Asked first, because it remembers: what a filter refuses counts as seen.
    if (maintainer_ != nullptr && !maintainer_->shouldReport(link)) return Fate::Repeated;
    if (result_->dropsPseudoLinks_ && !link.getProperty()) return Fate::PseudoLinkLeftOut;
    return result_->passesFilters(link, filter) ? Fate::Reported : Fate::Filtered;
}

void Walk::tell(const Link& link, Fate fate, std::size_t filter) {
    // By index: a listener may attach another.
    for (std::size_t index = 0; index < result_->listeners_.size(); ++index) {
        result_->listeners_[index]->onLink(WalkView(*this), link, fate, filter);
    }
}

Pruned Walk::tell(Pruning pruning, const meta::Property& property, Pruned outcome) {
    if (reach_ != nullptr && outcome == Pruned::Cut) reach_->distrustDepths();
    for (std::size_t index = 0; index < result_->listeners_.size(); ++index) {
        result_->listeners_[index]->onPrune(WalkView(*this), current(), pruning, property, outcome);
    }
    return outcome;
}

void Walk::notifyEnterInput() {
    if (observer() != nullptr) observer()->onEnterInputElement(currentInput_);
}

void Walk::notifyExitInput() {
    if (observer() != nullptr && currentInput_) observer()->onExitInputElement(currentInput_);
}

}  // namespace nuv::zero::traversal::internal
