#include <stdexcept>
#include <utility>

#include "traversal/PropertyProvider.h"
#include "traversal/internal/AbstractStore.h"
#include "traversal/internal/ProgressTable.h"
#include "traversal/internal/TraversalProcessor.h"
#include "traversal/internal/TraversalResult.h"
#include "traversal/internal/UniquenessMaintainer.h"

namespace nuv::zero::traversal::internal {

namespace {

const std::shared_ptr<TraversalResult>& required(const std::shared_ptr<TraversalResult>& result) {
    if (result == nullptr) throw std::invalid_argument("A walk needs a result to start from.");
    return result;
}

/// Marks a walk as under way. A step that was begun from one of its own callbacks would pull the
/// cursors out from under the outer step.
class Step {
  public:
    explicit Step(bool& isUnderWay) : isUnderWay_(isUnderWay) {
        if (isUnderWay) refuse();
        isUnderWay = true;
    }
    Step(const Step&) = delete;
    Step& operator=(const Step&) = delete;
    ~Step() { isUnderWay_ = false; }

    [[noreturn]] static void refuse() {
        throw std::logic_error("A walk cannot be advanced or assigned from its own callbacks.");
    }

  private:
    bool& isUnderWay_;
};

}  // namespace

TraversalResult::IterationContext::IterationContext() = default;

TraversalResult::IterationContext::IterationContext(const std::shared_ptr<TraversalResult>& result)
    : result_(required(result)),
      store_(result->isDepthFirst() ? makeDfsStore() : makeBfsStore()),
      maintainer_(result->createUniquenessMaintainer()),
      progress_(std::make_unique<ProgressTable>(result->isDepthFirst()
                                                    ? ProgressTable::Discipline::DepthFirst
                                                    : ProgressTable::Discipline::BreadthFirst,
                                                *result->provider_, result->processor_)) {
    advance();
}

TraversalResult::IterationContext::IterationContext(const IterationContext& other)
    : result_(other.result_),
      store_(other.store_ ? other.store_->clone() : nullptr),
      maintainer_(other.maintainer_ ? other.maintainer_->clone() : nullptr),
      progress_(other.progress_ ? std::make_unique<ProgressTable>(*other.progress_) : nullptr),
      nextInput_(other.nextInput_),
      current_(other.current_),
      currentInput_(other.currentInput_) {}

void TraversalResult::IterationContext::operator=(const IterationContext& other) {
    if (this == &other) return;
    if (isUnderWay_) Step::refuse();
    IterationContext copy(other);
    // From here on nothing can fail. What the lent handles rely on goes last.
    current_ = copy.current_;
    store_.swap(copy.store_);
    maintainer_.swap(copy.maintainer_);
    progress_.swap(copy.progress_);
    std::swap(nextInput_, copy.nextInput_);
    std::swap(currentInput_, copy.currentInput_);
    result_.swap(copy.result_);
}

TraversalResult::IterationContext::~IterationContext() = default;

bool TraversalResult::IterationContext::operator==(const IterationContext& other) const {
    if (!result_ || !other.result_) {
        if (!result_ && !other.result_) return true;
        return !(result_ ? *this : other).getCurrent();
    }
    return result_ == other.result_ && nextInput_ == other.nextInput_ &&
           store_->equals(*other.store_) && getCurrent() == other.getCurrent() &&
           currentInput_ == other.currentInput_;
}

/// A link whose cascade flag is set stays on the frontier while the links of its target are
/// produced; it is removed when its target's cursor is exhausted. A loop, not a recursion: chains
/// are as long as the model.
void TraversalResult::IterationContext::advance() {
    if (!result_) return;
    const Step step(isUnderWay_);
    while (true) {
        if (ElementProgress* cursor = progress_->cursorOfTop()) {
            if (produceChildren(cursor)) return;
        } else if (store_->empty() && !startNextInput()) {
            return;
        } else if (handleTop()) {
            return;
        }
    }
}

bool TraversalResult::IterationContext::startNextInput() {
    notifyExitInput();
    if (nextInput_ == result_->inputs_.size()) {
        current_ = LentLink();
        return false;
    }
    // Moved on before the event: an observer that throws loses this input, not the whole walk.
    currentInput_ = result_->inputs_[nextInput_++];
    notifyEnterInput();
    store_->push(LentLink(ModelElement(), currentInput_, meta::Property()).get());
    return true;
}

/// Handles a link at the top of the frontier for whose target there is no cursor: makes one, or
/// tries to report a link that does not lead on. True when it was reported.
bool TraversalResult::IterationContext::handleTop() {
    const Link& top = store_->top();
    if (top.shouldCascade()) {
        if (!progress_->openTop(top, result_->processor_)) store_->pop();
        return false;
    }
    const LentLink link(top);
    // Removed before it is tried: a filter that throws does not get it again.
    store_->pop();
    return tryReport(link.get());
}

/// Takes the links of the top's target one after another; depth-first, goes on from each that leads
/// on. True when a link was reported, false when the cursor at the top was exhausted and removed.
bool TraversalResult::IterationContext::produceChildren(ElementProgress* cursor) {
    const bool isDepthFirst = result_->isDepthFirst();
    const bool isReportingSelfFirst = result_->isReportingSelfFirst();
    if (isReportingSelfFirst && tryReportSelf(*cursor)) return true;
    while (!cursor->processedAll()) {
        if (!cursor->step()) continue;
        cursor->lookAhead([this](const ModelElement& next)
                              __attribute__((always_inline)) { progress_->prefetch(next); });
        const Lent<ModelElement> target = cursor->currentTarget();
        ProgressTable::Meeting meeting = progress_->meet(target.get());
        const bool cascade = !meeting.hasEntered();
        const LentLink link(cursor->element(), target.get(), cursor->currentProperty(), cascade);
        if (cascade) {
            progress_->prepareToEnter(meeting, target.get(), result_->processor_);
            store_->push(link.get());
            progress_->enter(meeting, target.get(), result_->processor_);
            if (isDepthFirst) {
                cursor = progress_->cursorOfTop();
                if (!isReportingSelfFirst) continue;
                cursor->setReportedSelf();
            }
        } else if (!isDepthFirst) {
            store_->push(link.get());
            continue;
        }
        // A link that does not cascade would, depth-first, be the next one to handle anyway.
        if (tryReport(link.get())) return true;
    }
    if (tryReportSelf(*cursor)) return true;
    store_->pop();
    progress_->finishTop();
    return false;
}

/// The link to the element of the cursor at the top, unless it was tried before.
bool TraversalResult::IterationContext::tryReportSelf(ElementProgress& cursor) {
    if (cursor.hasReportedSelf()) return false;
    cursor.setReportedSelf();
    return tryReport(store_->top());
}

bool TraversalResult::IterationContext::tryReport(const Link& link) {
    if (!link) return false;
    if (link.getProperty() &&
        result_->provider_->getResultPolicy(access::classOf(link.getSource()),
                                            link.getProperty()) == ResultPolicy::WalkOnly) {
        return false;
    }
    if (!maintainer_->shouldReport(link)) return false;
    if (result_->runFilters(link) == ResultPolicy::WalkOnly) return false;
    current_ = LentLink(link);
    return true;
}

void TraversalResult::IterationContext::notifyEnterInput() {
    if (result_->processor_ != nullptr) result_->processor_->onEnterInputElement(currentInput_);
}

void TraversalResult::IterationContext::notifyExitInput() {
    if (result_->processor_ != nullptr && currentInput_) {
        result_->processor_->onExitInputElement(currentInput_);
    }
}

void TraversalResult::IterationContext::pruneAllChildren() {
    if (!progress_) return;
    ElementProgress* cursor = progress_->findUnfinished(getCurrent().getTarget());
    if (cursor != nullptr) cursor->pruneAllChildren();
}

void TraversalResult::IterationContext::pruneChildren(const meta::Property& property) {
    if (!progress_) return;
    ElementProgress* cursor = progress_->findUnfinished(getCurrent().getTarget());
    if (cursor != nullptr) cursor->pruneProperty(property);
}

void TraversalResult::IterationContext::pruneSiblings() {
    if (!progress_) return;
    ElementProgress* cursor = progress_->findUnfinished(getCurrent().getSource());
    if (cursor != nullptr) cursor->pruneCurrentProperty();
}

}  // namespace nuv::zero::traversal::internal
