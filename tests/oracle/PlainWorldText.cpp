#include <array>

#include "tests/oracle/PlainWorld.h"

/// Worlds and rules as text, for the log of a failed case.
namespace nuv::zero::oracle {

namespace {

/// Names as numbers of code units, since their order is what matters.
std::string unitsOf(const std::u16string& name) {
    std::string text;
    for (const char16_t unit : name) {
        text += text.empty() ? "" : ",";
        text += std::to_string(static_cast<unsigned>(unit));
    }
    return text;
}

std::string describe(const PropertyDefinition& property) {
    std::string text = className(property.owner) + " -> " + className(property.type);
    text += property.upperBound == 1 ? " single" : " many";
    if (!property.association) text += " no-association";
    if (property.derived) text += " derived";
    if (property.composite) text += " composite";
    if (property.opposite != none) text += " opposite " + propertyName(property.opposite);
    return text + " name " + unitsOf(property.name);
}

std::string describe(const ValueDefinition& value) {
    std::string text = (value.many ? "many " : "single ") + className(value.type);
    switch (value.payload) {
        case ValueDefinition::Payload::Nothing:
            return text + " nothing";
        case ValueDefinition::Payload::Text:
            return text + " a text";
        case ValueDefinition::Payload::Integer:
            return text + " an integer";
        case ValueDefinition::Payload::Elements:
            break;
    }
    for (const int element : value.elements) text += ' ' + elementName(element);
    return text;
}

std::string describe(const PredicateDefinition& predicate) {
    constexpr std::array names = {"all", "none", "kindOf", "exactly", "alternating", "empty"};
    return names[static_cast<std::size_t>(predicate.kind)] + (' ' + className(predicate.operand));
}

std::string describe(const FilterDefinition& filter) {
    constexpr std::array names = {"pass",          "veto",        "three", "no pseudo",
                                  "only property", "not element", "empty"};
    return names[static_cast<std::size_t>(filter.kind)] + (' ' + std::to_string(filter.operand));
}

}  // namespace

std::string describe(const PlainWorld& world) {
    std::string text;
    for (std::size_t index = 0; index < world.classes.size(); ++index) {
        text += "class " + className(static_cast<int>(index)) + " name " +
                unitsOf(world.classes[index].qualifiedName);
        for (const int superclass : world.classes[index].superclasses) {
            text += " : " + className(superclass);
        }
        text += '\n';
    }
    for (std::size_t index = 0; index < world.properties.size(); ++index) {
        text += "property " + propertyName(static_cast<int>(index)) + ' ' +
                describe(world.properties[index]) + '\n';
    }
    for (std::size_t index = 0; index < world.elements.size(); ++index) {
        text += "element " + elementName(static_cast<int>(index)) + ' ' +
                className(world.elements[index]) + '\n';
    }
    for (const auto& [place, value] : world.values) {
        text += "value " + elementName(place.first) + ' ' + propertyName(place.second) + " = " +
                describe(value) + '\n';
    }
    for (std::size_t index = 0; index < world.predicates.size(); ++index) {
        text += "predicate " + std::to_string(index) + " is " + describe(world.predicates[index]) +
                ", filter " + std::to_string(index) + " is " + describe(world.filters[index]) +
                '\n';
    }
    for (const int call : world.failingCalls) {
        text += "callback " + std::to_string(call) + " throws\n";
    }
    return text;
}

std::string describe(const RuleOperation& rule) {
    constexpr std::array names = {"add", "add with", "set policy of", "pseudo"};
    std::string text = names[static_cast<std::size_t>(rule.kind)];
    if (rule.kind != RuleOperation::Kind::Pseudo) {
        text += ' ' + propertyName(rule.property) + " predicate " + std::to_string(rule.predicate) +
                " owner " + className(rule.owner);
    }
    if (rule.kind == RuleOperation::Kind::AddWith) {
        text += " with predicate " + std::to_string(rule.otherPredicate);
    }
    return text + " policy " + std::to_string(rule.policy);
}

}  // namespace nuv::zero::oracle
