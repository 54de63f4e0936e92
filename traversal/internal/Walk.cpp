#include "traversal/internal/Walk.h"

#include <stdexcept>
#include <utility>

#include "traversal/internal/TraversalProcessor.h"

namespace nuv::zero::traversal::internal {

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

}  // namespace

const Cursor::Settings Walk::noSettings;

Walk::Walk(std::shared_ptr<TraversalResult> result)
    : result_(std::move(result)),
      store_(result_->isDepthFirst() ? makeDfsStore() : makeBfsStore()),
      maintainer_(result_->createUniquenessMaintainer()) {
    if (!maintainer_->remembers()) maintainer_.reset();
}

Walk::Walk(const Walk& other)
    : result_(other.result_),
      keeper_(other.keeper_),
      entered_(other.entered_),
      store_(other.store_->clone()),
      maintainer_(other.maintainer_ ? other.maintainer_->clone() : nullptr),
      current_(other.current_),
      nextInput_(other.nextInput_),
      currentInput_(other.currentInput_) {}

Walk::~Walk() = default;

void Walk::refuse() {
    throw std::logic_error("A walk cannot be advanced or assigned from its own callbacks.");
}

void Walk::advance() {
    refuseWhileUnderWay();
    const Step step(isUnderWay_);
    while (!store_->advance(*this)) {
        if (!startNextInput()) return;
    }
}

bool Walk::standsWhere(const Walk& other) const {
    return result_ == other.result_ && nextInput_ == other.nextInput_ &&
           store_->equals(*other.store_) && current() == other.current() &&
           currentInput_ == other.currentInput_;
}

Cursor* Walk::findUnfinished(const ModelElement& element) {
    return hasEntered(element) ? store_->findUnfinished(*this, element) : nullptr;
}

bool Walk::startNextInput() {
    notifyExitInput();
    if (nextInput_ == result_->inputs_.size()) {
        current_ = LentLink();
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
    // Asked first, because it remembers: what a filter refuses counts as seen.
    if (maintainer_ != nullptr && !maintainer_->shouldReport(link)) return false;
    return result_->runFilters(link) != ResultPolicy::WalkOnly;
}

void Walk::notifyEnterInput() {
    if (observer() != nullptr) observer()->onEnterInputElement(currentInput_);
}

void Walk::notifyExitInput() {
    if (observer() != nullptr && currentInput_) observer()->onExitInputElement(currentInput_);
}

}  // namespace nuv::zero::traversal::internal
