#pragma once

#include "../../model/Framework.h"
#include "../Export.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER::internal {

/// Observes a walk. Derive from it and override the events of interest; the others do nothing.
///
/// Events are delivered on the thread that advances the walk, in the middle of the advance. An
/// event that throws ends that advance with its exception; the walk can go on. The library never
/// owns an observer: it has to live as long as any walk that tells it may still advance.
///
/// | event                | fired                                                             |
/// |----------------------|-------------------------------------------------------------------|
/// | onEnterInputElement  | before anything else of that input                                |
/// | onEnterElement       | before the first property of an element is looked at              |
/// | onEnterProperty      | for each followed property, also an empty or a pruned one         |
/// | onExitProperty       | after its last value                                              |
/// | onExitElement        | after the last property; once, only if `onEnterElement` was sent  |
/// | onExitInputElement   | when nothing of that input is left; again for each later `advance` |
///
/// Depth-first, the brackets of elements nest. Breadth-first they do not: a child's bracket follows
/// its parent's.
class MODELING_NUV0_TRAVERSAL_EXPORT TraversalProcessor {
  public:
    TraversalProcessor();
    TraversalProcessor(const TraversalProcessor& other);
    TraversalProcessor& operator=(const TraversalProcessor& other);
    virtual ~TraversalProcessor();

    virtual void onEnterInputElement(const ModelElement& element);
    virtual void onEnterElement(const ModelElement& element);
    virtual void onEnterProperty(const ModelElement& element, const meta::Property& property);
    virtual void onExitProperty(const ModelElement& element, const meta::Property& property);
    virtual void onExitElement(const ModelElement& element);
    virtual void onExitInputElement(const ModelElement& element);
};

}  // namespace nuv::zero::traversal::internal
