#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "model/Framework.h"
#include "traversal/internal/TraversalResult.h"

/// What a walk holds where it stands, read from the walk itself.
namespace nuv::zero::readme {

/// A link by the names of its ends; a pseudo-link has no source.
struct SnapshotLink {
    std::string source;
    std::string target;

    friend bool operator==(const SnapshotLink& a, const SnapshotLink& b) {
        return a.source == b.source && a.target == b.target;
    }
};

/// The cursor over one element.
struct SnapshotCursor {
    enum class State { NotStarted, UnderWay, Exhausted };

    State state = State::NotStarted;
    /// The values of the property where it stands, and which of them it has given last.
    std::vector<std::string> values;
    std::size_t index = 0;
};

/// A link on the frontier, and the cursor over its target where there is one.
struct SnapshotPlace {
    SnapshotLink link;
    bool cascades = true;
    std::vector<SnapshotCursor> cursor;
};

struct WalkSnapshot {
    /// The one to handle first comes first.
    std::vector<SnapshotPlace> frontier;
    SnapshotLink current;
    std::vector<std::string> entered;

    bool hasEntered(const std::string& element) const;
    bool hasCursor(const std::string& element) const;
};

std::string nameOf(const ModelElement& element);
SnapshotLink linkOf(const traversal::internal::Link& link);

/// Which of the elements were entered is asked for each; a walk does not list them.
WalkSnapshot snapshotOf(const traversal::internal::TraversalResult::IterationContext& walk,
                        bool isDepthFirst, const std::vector<ModelElement>& elements);

}  // namespace nuv::zero::readme
