#pragma once

#include <memory>
#include <vector>

#include "../AssociationSetting.h"
#include "../Export.h"
#include "EventPoint.h"
#include "Link.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER::internal {

/// The cursor over the links that leave one element: property by property in the order of the
/// settings, value by value in the order of the model. Walks move such cursors for their users;
/// this is one to be moved by hand.
///
///     const auto settings = provider->getPropertiesToTraverse(link.getTarget());
///     ElementProgress cursor(link, &observer, settings);
///     while (!cursor.processedAll()) {
///         if (const Link next = cursor.advanceAndGetCurrent(); !!next) use(next);
///     }
///
/// The values of a property are those that stood there when the cursor came to it. Reading a
/// property whose value is not made of elements throws `CannotCastIncompatibleTypes`; the next step
/// then goes on behind that property. A property is never read when it was pruned before its turn,
/// but its enter and exit events are sent all the same.
///
/// A cursor keeps its element and its settings alive; the observer has to outlive it. A copy is an
/// independent cursor at the same place. One thread at a time.
class MODELING_NUV0_TRAVERSAL_EXPORT ElementProgress {
  public:
    /// A placeholder without links.
    ElementProgress();
    /// A fresh cursor over the target of the link. The observer may be null, and so may the
    /// settings: there is nothing to follow then.
    ElementProgress(const Link& link, TraversalProcessor* processor,
                    const std::shared_ptr<std::vector<AssociationSetting>>& settings);
    ElementProgress(const ElementProgress& other);
    ElementProgress& operator=(const ElementProgress& other);
    ~ElementProgress();

    /// Moves on and returns the link found, cascading; the empty link when there is none left.
    Link advanceAndGetCurrent();
    /// Whether no link is left. The first such answer sends the exit event of the element, unless
    /// the cursor was finished before its first step.
    bool processedAll();

    /// Whether the link to the element itself has been handled.
    bool hasReportedSelf() const;
    void setReportedSelf();

    /// No further links. Sends no event by itself.
    void pruneAllChildren();
    /// No further values of the current property. Before the first step: leaves the first property
    /// out, without its events.
    void pruneCurrentProperty();
    /// The same for the named property, now or when its turn comes. Without effect on a property
    /// that has been passed.
    void pruneProperty(const meta::Property& property);

  private:
    struct Kept;
    std::unique_ptr<Kept> kept_;
};

}  // namespace nuv::zero::traversal::internal
