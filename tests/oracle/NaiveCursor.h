#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <vector>

#include "tests/oracle/Callbacks.h"
#include "tests/oracle/PlainWorld.h"
#include "tests/oracle/Rules.h"

namespace nuv::zero::oracle {

/// What became of a call that prunes: there was nothing that it could mean, nothing was left of it,
/// or it is cut away.
enum class Cutting : std::uint8_t { Nothing, TooLate, Cut };

/// The links of one element: those of one property after the other.
struct NaiveCursor {
    /// What one step over it comes to: a link, a property without values, or no more.
    enum class Step : std::uint8_t { Link, NoValues, Over };

    Step step(const PlainWorld& world, Callbacks& callbacks);
    /// Whether no link is left; the first such answer tells the observer.
    bool processedAll(Callbacks& callbacks);
    Cutting pruneCurrentProperty();

    bool isAtProperty() const { return propertyIndex < settings->size(); }
    int property() const { return settings->at(propertyIndex).property; }
    IndexedLink link() const { return {element, property(), values.at(valueIndex)}; }

    int element = none;
    Hearers hearers;
    bool reportedSelf = false;
    bool started = false;
    bool finished = false;
    bool exitNotified = false;
    Settings settings;
    std::size_t propertyIndex = 0;
    /// Whether the property was entered and not left yet.
    bool inProperty = false;
    std::vector<int> values;
    std::size_t valueIndex = 0;
    std::set<int> prunedProperties;

  private:
    void leaveProperty(Callbacks& callbacks, int left);
    void notify(Callbacks& callbacks, Event event, int about = none) const {
        for (const Hearer& hearer : hearers) {
            if (!hearer.only || *hearer.only == event) {
                callbacks.event(hearer.index, event, element, about);
            }
        }
    }
};

}  // namespace nuv::zero::oracle
