#include <functional>
#include <memory>
#include <sstream>
#include <utility>
#include <vector>

#include "Consumer.h"
#include "traversal/StreamOutput.h"
#include "traversal/Traversal.h"
#include "traversal/internal/ElementProgress.h"

namespace nuv_consumer {

namespace {

using namespace nuv::zero::traversal;

void callLink(const Station& station) {
    Link none;
    const Link link(station.one, station.two, station.next);
    Link copy(link);
    Link moved(std::move(copy));
    copy = moved;
    none = std::move(moved);
    expect(none.getSource() == station.one && none.getTarget() == station.two &&
               none.getProperty() == station.next,
           "a link keeps its three ends");
    expect(none == link && !(none != link) && !none == false && !Link::empty(),
           "links are compared");
    none.setNoCascade();
    expect(!none.shouldCascade() && link.shouldCascade(), "a link may lead no further");
    expect(link.getOpposite()->getTarget() == station.one, "a link has a way back");
    expect(
        LinkHasher()(none) == LinkHasher()(link) && std::hash<Link>()(none) == LinkHasher()(link),
        "equal links hash alike");
    expect(static_cast<bool>(link) && !static_cast<bool>(Link()), "a link is one or none");
    std::ostringstream shown;
    shown << station.one << ' ' << link;
    expect(shown.str() == "Block'one' Block'one'-[next]-Block'two'", "streams show links");
    expect(dumpElement(station.one) == "Block'one'" &&
               dumpLink(link) == "Block'one'-[next]-Block'two'",
           "links are shown");
}

void callElementProgress(const Station& station) {
    const auto settings = std::make_shared<std::vector<AssociationSetting>>();
    settings->emplace_back(station.parts, ResultPolicy::Report);
    const Link toOne({}, station.one, {});
    internal::ElementProgress none;
    internal::ElementProgress cursor(toOne, nullptr, settings);
    expect(!cursor.processedAll(), "a cursor begins");
    expect(cursor.advanceAndGetCurrent().getTarget() == station.two, "a cursor finds links");
    internal::ElementProgress copy(cursor);
    none = copy;
    none.pruneCurrentProperty();
    copy.pruneProperty(station.parts);
    cursor.pruneAllChildren();
    cursor.setReportedSelf();
    expect(cursor.hasReportedSelf() && cursor.processedAll(), "a cursor ends");
}

}  // namespace

void callLinks(Station& station) {
    callLink(station);
    callElementProgress(station);
}

}  // namespace nuv_consumer
