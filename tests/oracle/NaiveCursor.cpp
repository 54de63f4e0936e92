#include "tests/oracle/NaiveCursor.h"

namespace nuv::zero::oracle {

namespace {

/// The elements that a property of an element designates. Throws `ReadFailure` for values of
/// another kind.
std::vector<int> read(const PlainWorld& world, int element, int property) {
    using Payload = ValueDefinition::Payload;
    const bool single = world.properties[static_cast<std::size_t>(property)].upperBound == 1;
    const auto stored = world.values.find({element, property});
    if (stored == world.values.end()) {
        const int type = world.properties[static_cast<std::size_t>(property)].type;
        // Never set: unset, or an empty collection of the declared type.
        if (single || type >= 0) return {};
        throw ReadFailure{type};
    }
    const ValueDefinition& value = stored->second;
    if (!single) {
        if (!value.many || value.type < 0 || value.payload == Payload::Nothing) {
            throw ReadFailure{value.type};
        }
        return value.elements;
    }
    if (value.payload == Payload::Nothing) return {};
    if (value.many || value.type < 0) throw ReadFailure{value.type};
    if (value.elements.front() == none) return {};
    return value.elements;
}

}  // namespace

Cutting NaiveCursor::pruneCurrentProperty() {
    if (finished) return Cutting::TooLate;
    if (!started) {
        if (!isAtProperty()) return Cutting::TooLate;
        ++propertyIndex;
        return Cutting::Cut;
    }
    if (valueIndex + 1 >= values.size()) return Cutting::TooLate;
    values.resize(valueIndex + 1);
    return Cutting::Cut;
}

NaiveCursor::Step NaiveCursor::step(const PlainWorld& world, Callbacks& callbacks) {
    if (finished) return Step::Over;
    if (inProperty) {
        ++valueIndex;
        if (valueIndex < values.size()) return Step::Link;
        leaveProperty(callbacks, property());
    } else if (!started) {
        notify(callbacks, Event::EnterElement);
        started = true;
    }
    if (!isAtProperty()) finished = true;
    if (finished) return Step::Over;

    const int current = property();
    inProperty = true;
    notify(callbacks, Event::EnterProperty, current);
    if (prunedProperties.count(current) == 0) {
        callbacks.remember();
        const std::vector<int> found = read(world, element, current);
        if (!found.empty() && finished) return Step::Over;
        values = found;
    }
    if (!values.empty()) return Step::Link;
    leaveProperty(callbacks, current);
    return Step::NoValues;
}

void NaiveCursor::leaveProperty(Callbacks& callbacks, int left) {
    notify(callbacks, Event::ExitProperty, left);
    inProperty = false;
    values.clear();
    valueIndex = 0;
    ++propertyIndex;
}

bool NaiveCursor::processedAll(Callbacks& callbacks) {
    if (!finished) return false;
    if (started && !exitNotified) {
        exitNotified = true;
        notify(callbacks, Event::ExitElement);
    }
    return true;
}

}  // namespace nuv::zero::oracle
