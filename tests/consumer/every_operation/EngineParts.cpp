#include <utility>

#include "Consumer.h"
#include "traversal/Traversal.h"
#include "traversal/support/FlatMap.h"
#include "traversal/support/Lent.h"

/// What installed headers need of the engine, and so bring along.
namespace nuv_consumer {

namespace {

using namespace nuv::zero::traversal::internal;

void callLent(const Station& station) {
    Lent<ModelElement> lent(station.one);
    Lent<ModelElement> copy(lent);
    Lent<ModelElement> moved(std::move(copy));
    lent = moved;
    copy = std::move(moved);
    moved = Lent<ModelElement>();
    moved = Lent<ModelElement>::adopt(WalkSupport::lend(station.one));
    expect(lent.get() == station.one && copy.get() == moved.get(), "lent handles are copied");
}

void callFlatMap(const Station& station) {
    FlatMap<ModelElement, ModelElement, int> map;
    map.reserveOne();
    const auto place = map.locate(station.one);
    expect(!place.isTaken() && map.size() == 0 && map.bytes() > 0, "a map begins empty");
    map.insert(station.one, 1, place);
    map.insert(station.two, 2);
    map.prefetch(station.two);
    expect(map.contains(station.one) && *std::as_const(map).find(station.two) == 2 &&
               *map.find(station.one) == 1,
           "a map finds what it holds");
}

}  // namespace

void callEngineParts(Station& station) {
    callLent(station);
    callFlatMap(station);
}

}  // namespace nuv_consumer
