#include <iostream>

#include "Consumer.h"

namespace nuv_consumer {

namespace {
int failures = 0;
int arguments = 0;
}  // namespace

void expect(bool holds, const std::string& what) {
    if (holds) return;
    ++failures;
    std::cerr << "not so: " << what << '\n';
}

bool never() {
    return arguments > 1000;
}

Station::Station() {
    using memory::PropertyFlags;
    name = metamodel.addProperty(block, u"name", meta::StandardTypes::stringMeta());
    parts = metamodel.addProperty(block, u"parts", block, memory::unbounded,
                                  PropertyFlags::Association | PropertyFlags::Composite);
    next = metamodel.addProperty(block, u"next", block, 1, PropertyFlags::Association);
    previous = metamodel.addProperty(block, u"previous", block, 1, PropertyFlags::Association);
    metamodel.setOpposites(next, previous);
    model.set(one, name, u"one");
    model.set(two, name, u"two");
    model.set(three, name, u"three");
    model.add(one, parts, two);
    model.add(one, parts, three);
    model.set(one, next, two);
}

}  // namespace nuv_consumer

int main(int argc, char** /*argv*/) {
    using namespace nuv_consumer;
    arguments = argc;
    for (void (*call)(Station&) : {callHandles, callAccess, callMetamodelObjects, callStoredValues,
                                   callModels, callWalkSupport, callRules, callBuilders, callWalks,
                                   callPositions, callListeners, callLinks, callEngineParts}) {
        Station station;
        call(station);
    }
    return failures == 0 ? 0 : 1;
}
