#include "traversal/internal/ElementProgress.h"

#include <cstddef>
#include <limits>

#include "traversal/internal/Cursor.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER::internal {

/// A cursor, with what it moves over.
struct ElementProgress::Kept {
    Kept() = default;
    Kept(const ModelElement& over, TraversalProcessor* processor,
         const std::shared_ptr<std::vector<AssociationSetting>>& followed)
        : element(over), settings(followed) {
        static const std::vector<AssociationSetting> none;
        keeper.pin(element);
        cursor.restart(element, processor, settings == nullptr ? none : *settings);
    }

    ModelElement element;
    WalkSupport::Keeper keeper;
    std::shared_ptr<std::vector<AssociationSetting>> settings;
    /// Last, because it relies on the others.
    Cursor cursor;
};

ElementProgress::ElementProgress() : kept_(std::make_unique<Kept>()) {}
ElementProgress::ElementProgress(const Link& link, TraversalProcessor* processor,
                                 const std::shared_ptr<std::vector<AssociationSetting>>& settings)
    : kept_(std::make_unique<Kept>(link.getTarget(), processor, settings)) {}
ElementProgress::ElementProgress(const ElementProgress& other)
    : kept_(std::make_unique<Kept>(*other.kept_)) {}
ElementProgress& ElementProgress::operator=(const ElementProgress& other) {
    if (this != &other) kept_ = std::make_unique<Kept>(*other.kept_);
    return *this;
}
ElementProgress::~ElementProgress() = default;

Link ElementProgress::advanceAndGetCurrent() {
    const Cursor& cursor = kept_->cursor;
    std::size_t budget = std::numeric_limits<std::size_t>::max();
    if (kept_->cursor.step(budget) != Cursor::Step::Link) return Link::empty();
    return Link(cursor.element(), cursor.target().get(), cursor.setting().property());
}
bool ElementProgress::processedAll() {
    return kept_->cursor.processedAll();
}
bool ElementProgress::hasReportedSelf() const {
    return kept_->cursor.hasReportedSelf();
}
void ElementProgress::setReportedSelf() {
    kept_->cursor.setReportedSelf();
}
void ElementProgress::pruneAllChildren() {
    kept_->cursor.pruneAllChildren();
}
void ElementProgress::pruneCurrentProperty() {
    kept_->cursor.pruneCurrentProperty();
}
void ElementProgress::pruneProperty(const meta::Property& property) {
    kept_->cursor.pruneProperty(property);
}

}  // namespace nuv::zero::traversal::internal
