#include "tests/readme/WalkSnapshot.h"

#include <algorithm>
#include <memory>

#include "tests/support/PrivateAccess.h"
#include "traversal/internal/AbstractStore.h"
#include "traversal/internal/Cursor.h"
#include "traversal/internal/Walk.h"
#include "traversal/support/Lent.h"

namespace nuv::zero::testing_support {

using traversal::internal::Cursor;
using traversal::internal::TraversalResult;
using traversal::internal::Walk;

struct ContextWalk {
    friend auto pointerTo(ContextWalk);
};
struct WalkStore {
    friend auto pointerTo(WalkStore);
};
struct CursorValues {
    friend auto pointerTo(CursorValues);
};
struct CursorIndex {
    friend auto pointerTo(CursorIndex);
};
struct CursorPlace {
    friend auto pointerTo(CursorPlace);
};

template struct Expose<ContextWalk, &TraversalResult::IterationContext::walk_>;
template struct Expose<WalkStore, &Walk::store_>;
template struct Expose<CursorValues, &Cursor::values_>;
template struct Expose<CursorIndex, &Cursor::valueIndex_>;
template struct Expose<CursorPlace, &Cursor::place_>;

}  // namespace nuv::zero::testing_support

namespace nuv::zero::readme {

using testing_support::ContextWalk;
using testing_support::CursorIndex;
using testing_support::CursorPlace;
using testing_support::CursorValues;
using testing_support::WalkStore;
using traversal::internal::AbstractStore;
using traversal::internal::Cursor;
using traversal::internal::Lent;
using traversal::internal::Link;
using traversal::internal::Walk;

namespace {

SnapshotCursor cursorOf(const Cursor& cursor) {
    SnapshotCursor read;
    if (cursor.isFinished()) {
        read.state = SnapshotCursor::State::Exhausted;
    } else if (static_cast<int>(cursor.*pointerTo(CursorPlace())) != 0) {
        read.state = SnapshotCursor::State::UnderWay;
        const auto& values = cursor.*pointerTo(CursorValues());
        for (std::size_t i = 0; i < values.size(); ++i) {
            const auto value = Lent<ModelElement>::adopt(values.lend(i));
            read.values.push_back(nameOf(value.get()));
        }
        read.index = cursor.*pointerTo(CursorIndex());
    }
    return read;
}

}  // namespace

bool WalkSnapshot::hasEntered(const std::string& element) const {
    return std::find(entered.begin(), entered.end(), element) != entered.end();
}

bool WalkSnapshot::hasCursor(const std::string& element) const {
    return std::any_of(frontier.begin(), frontier.end(), [&element](const SnapshotPlace& place) {
        return place.link.target == element && !place.cursor.empty();
    });
}

std::string nameOf(const ModelElement& element) {
    if (!element) return {};
    const meta::Property name = access::propertyNamed(access::classOf(element), u"name");
    return access::toUtf8(access::toString(access::read(element, name)));
}

SnapshotLink linkOf(const Link& link) {
    return {nameOf(link.getSource()), nameOf(link.getTarget())};
}

WalkSnapshot snapshotOf(const traversal::internal::TraversalResult::IterationContext& walk,
                        bool isDepthFirst, const std::vector<ModelElement>& elements) {
    // A copy stands at the same place, and may be taken apart.
    const traversal::internal::TraversalResult::IterationContext copy(walk);
    Walk& inner = *(copy.*pointerTo(ContextWalk()));
    AbstractStore& store = *(inner.*pointerTo(WalkStore()));

    WalkSnapshot snapshot;
    snapshot.current = linkOf(copy.getCurrent());
    for (const ModelElement& element : elements) {
        if (inner.hasEntered(element)) snapshot.entered.push_back(nameOf(element));
    }
    for (const auto rest = store.clone(); !rest->empty(); rest->pop()) {
        const Link link = rest->top();
        SnapshotPlace place{linkOf(link), link.shouldCascade(), {}};
        // Breadth-first, the element at the front has its turn, and only that has a cursor; asking
        // for another one would make it.
        if (isDepthFirst || snapshot.frontier.empty()) {
            const Cursor* cursor = store.findUnfinished(inner, link.getTarget());
            if (cursor != nullptr) place.cursor.push_back(cursorOf(*cursor));
        }
        snapshot.frontier.push_back(place);
    }
    return snapshot;
}

}  // namespace nuv::zero::readme
