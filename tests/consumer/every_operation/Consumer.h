#pragma once

#include <string>

#include "model/memory/Metamodel.h"
#include "model/memory/Model.h"

/// A program that calls every operation of every installed header. Linking it is the test: what a
/// header offers and the libraries keep to themselves is an undefined reference here. It runs too,
/// and looks at some of what comes back.
namespace nuv_consumer {

using namespace nuv::zero;

/// Counts what is not as it should be, and says so.
void expect(bool holds, const std::string& what);

/// Never true, which no compiler can know: what stands behind it is linked, and not run. For
/// operations that take what only the library makes.
bool never();

/// `one` contains `two` and `three` by way of `parts`, and leads to `two` by way of `next`, whose
/// opposite is `previous`.
struct Station {
    Station();

    memory::Metamodel metamodel{u"station"};
    meta::Class block = metamodel.addClass(u"Block");
    meta::Property name;
    meta::Property parts;
    meta::Property next;
    meta::Property previous;
    memory::Model model;
    ModelElement one = model.create(block);
    ModelElement two = model.create(block);
    ModelElement three = model.create(block);
};

// One room each.
void callHandles(Station& station);
void callAccess(Station& station);
void callMetamodelObjects(Station& station);
void callStoredValues(Station& station);
void callModels(Station& station);
void callWalkSupport(Station& station);
void callRules(Station& station);
void callBuilders(Station& station);
void callWalks(Station& station);
void callPositions(Station& station);
void callListeners(Station& station);
void callLinks(Station& station);
void callEngineParts(Station& station);

}  // namespace nuv_consumer
