#include "tests/oracle/PlainWorld.h"

#include <algorithm>
#include <array>

namespace nuv::zero::oracle {

namespace {

using Payload = ValueDefinition::Payload;

/// Beginnings of names that sort differently by code unit, by code point and by locale.
constexpr char16_t highSurrogate = 0xD83D;
constexpr char16_t lowSurrogate = 0xDE00;
constexpr std::array<char16_t, 6> initials = {u'a', u'Z', u'~', 0x8000, highSurrogate, 0xFF21};

std::u16string makeName(Choices& choices, std::size_t unique) {
    std::u16string name(1, initials[static_cast<std::size_t>(choices.index(initials.size()))]);
    if (name.front() == highSurrogate) name += lowSurrogate;
    return name + static_cast<char16_t>(u'0' + unique);
}

ClassDefinition makeClass(const PlainWorld& world, Choices& choices) {
    ClassDefinition made;
    const std::size_t index = world.classes.size();
    // Two classes may share a qualified name.
    made.qualifiedName = u"m::" + makeName(choices, choices.percent(90) ? index : 0);
    const int wanted = index == 0 ? 0 : choices.upTo(2);
    for (int count = 0; count < wanted; ++count) {
        const int superclass = choices.index(index);
        if (std::count(made.superclasses.begin(), made.superclasses.end(), superclass) == 0) {
            made.superclasses.push_back(superclass);
        }
    }
    return made;
}

PropertyDefinition makeProperty(const PlainWorld& world, Choices& choices) {
    PropertyDefinition made;
    made.owner = choices.index(world.classes.size());
    made.name = makeName(choices, world.properties.size());
    made.type = choices.percent(95) ? choices.index(world.classes.size()) : integerType;
    made.upperBound = choices.percent(30) ? 1 : (choices.percent(80) ? -1 : 2);
    made.association = choices.percent(95);
    made.derived = choices.percent(4);
    made.composite = choices.percent(50);
    return made;
}

int elementOrNull(const PlainWorld& world, Choices& choices, std::uint32_t nullChance) {
    if (world.elements.empty() || choices.percent(nullChance)) return none;
    return choices.index(world.elements.size());
}

ValueDefinition makeIllTypedValue(const PropertyDefinition& property, Choices& choices) {
    ValueDefinition made;
    made.type = property.type;
    made.many = property.upperBound != 1;
    switch (choices.upTo(3)) {
        case 0:
            made.type = stringType;
            made.many = false;
            made.payload = Payload::Text;
            break;
        case 1:
            made.type = integerType;
            made.many = false;
            made.payload = Payload::Integer;
            break;
        case 2:
            made.many = !made.many;
            made.payload = Payload::Elements;
            if (!made.many) made.elements.push_back(none);
            break;
        default:
            break;
    }
    return made;
}

ValueDefinition makeValue(const PlainWorld& world, const PropertyDefinition& property,
                          Choices& choices) {
    if (choices.percent(4)) return makeIllTypedValue(property, choices);
    ValueDefinition made;
    made.type = property.type;
    made.many = property.upperBound != 1;
    made.payload = Payload::Elements;
    const int count = made.many ? choices.upTo(4) : 1;
    for (int entry = 0; entry < count; ++entry) {
        made.elements.push_back(elementOrNull(world, choices, made.many ? 6 : 15));
    }
    return made;
}

PredicateDefinition makePredicate(const PlainWorld& world, Choices& choices) {
    using Kind = PredicateDefinition::Kind;
    constexpr std::array kinds = {Kind::All,     Kind::KindOf,      Kind::Exactly, Kind::All,
                                  Kind::KindOf,  Kind::None,        Kind::All,     Kind::KindOf,
                                  Kind::Exactly, Kind::Alternating, Kind::Empty};
    PredicateDefinition made;
    made.kind = kinds[static_cast<std::size_t>(choices.index(kinds.size()))];
    // An empty predicate makes walks short, so it is rarer still.
    if (made.kind == Kind::Empty && choices.percent(70)) made.kind = Kind::All;
    made.operand = choices.index(world.classes.size());
    return made;
}

FilterDefinition makeFilter(const PlainWorld& world, Choices& choices) {
    using Kind = FilterDefinition::Kind;
    constexpr std::array kinds = {Kind::Pass,         Kind::NotElement, Kind::Three,
                                  Kind::OnlyProperty, Kind::NoPseudo,   Kind::NotElement,
                                  Kind::Veto,         Kind::Pass,       Kind::Empty};
    FilterDefinition made;
    made.kind = kinds[static_cast<std::size_t>(choices.index(kinds.size()))];
    if (made.kind == Kind::Empty && choices.percent(70)) made.kind = Kind::Pass;
    if (made.kind == Kind::OnlyProperty) made.operand = choices.index(world.properties.size());
    if (made.kind == Kind::NotElement) made.operand = elementOrNull(world, choices, 10);
    return made;
}

/// Gives some pairs of properties an opposite, some one way only, some to themselves.
void connectOpposites(PlainWorld& world, Choices& choices) {
    for (PropertyDefinition& property : world.properties) {
        if (property.opposite != none || !choices.percent(30)) continue;
        const int opposite = choices.index(world.properties.size());
        property.opposite = opposite;
        PropertyDefinition& other = world.properties[static_cast<std::size_t>(opposite)];
        if (other.opposite == none && choices.percent(80)) {
            other.opposite = static_cast<int>(&property - world.properties.data());
        }
    }
}

std::string numbered(char letter, int index) {
    return index == none ? "null" : letter + std::to_string(index);
}

}  // namespace

bool PlainWorld::isKindOf(int type, int ancestor) const {
    if (type < 0 || ancestor < 0) return false;
    if (type == ancestor) return true;
    const std::vector<int>& direct = classes[static_cast<std::size_t>(type)].superclasses;
    return std::any_of(direct.begin(), direct.end(),
                       [&](int superclass) { return isKindOf(superclass, ancestor); });
}

std::vector<int> PlainWorld::propertiesOf(int type) const {
    std::vector<int> all;
    if (type < 0) return all;
    for (const int superclass : classes[static_cast<std::size_t>(type)].superclasses) {
        for (const int property : propertiesOf(superclass)) {
            if (std::count(all.begin(), all.end(), property) == 0) all.push_back(property);
        }
    }
    for (std::size_t property = 0; property < properties.size(); ++property) {
        if (properties[property].owner == type) all.push_back(static_cast<int>(property));
    }
    return all;
}

PlainWorld makeWorld(Choices& choices) {
    PlainWorld world;
    // Few classes and many elements make long paths with many links back.
    const bool isDense = choices.percent(15);
    const int classes = isDense ? choices.between(1, 2) : choices.between(1, 6);
    for (int count = 0; count < classes; ++count)
        world.classes.push_back(makeClass(world, choices));
    const int properties = isDense ? choices.between(1, 3) : choices.between(1, 7);
    for (int count = 0; count < properties; ++count) {
        world.properties.push_back(makeProperty(world, choices));
    }
    connectOpposites(world, choices);

    const int elements = isDense ? choices.between(12, 30) : choices.upTo(9);
    for (int count = 0; count < elements; ++count) {
        world.elements.push_back(choices.index(world.classes.size()));
    }
    for (int element = 0; element < elements; ++element) {
        for (int property = 0; property < properties; ++property) {
            const int type = world.elements[static_cast<std::size_t>(element)];
            if (!world.hasProperty(type, property) || choices.percent(25)) continue;
            world.values[{element, property}] =
                makeValue(world, world.properties[static_cast<std::size_t>(property)], choices);
        }
    }
    for (int count = 0; count < 4; ++count) {
        world.predicates.push_back(makePredicate(world, choices));
        world.filters.push_back(makeFilter(world, choices));
    }
    const int failures = choices.percent(30) ? choices.between(1, 3) : 0;
    for (int count = 0; count < failures; ++count) world.failingCalls.push_back(choices.upTo(99));
    return world;
}

RuleOperation makeRule(const PlainWorld& world, Choices& choices) {
    RuleOperation rule;
    const int kind = choices.upTo(9);
    rule.kind = kind < 6   ? RuleOperation::Kind::Add
                : kind < 7 ? RuleOperation::Kind::AddWith
                : kind < 9 ? RuleOperation::Kind::SetPolicy
                           : RuleOperation::Kind::Pseudo;
    rule.policy = choices.upTo(2);
    rule.property = choices.percent(3) ? none : choices.index(world.properties.size());
    rule.otherPredicate = choices.index(world.predicates.size());
    if (choices.percent(60)) {
        rule.predicate = choices.index(world.predicates.size());
        rule.owner = choices.index(world.classes.size());
    } else if (rule.property != none) {
        rule.owner = world.properties[static_cast<std::size_t>(rule.property)].owner;
    }
    return rule;
}

const char* nameOf(Kind kind) {
    switch (kind) {
        case Kind::Additive:
            return "Additive";
        case Kind::Composition:
            return "Composition";
        case Kind::Subtractive:
            break;
    }
    return "Subtractive";
}

std::string elementName(int element) {
    return numbered('e', element);
}

std::string propertyName(int property) {
    return numbered('p', property);
}

std::string className(int type) {
    if (type == stringType) return "String";
    if (type == integerType) return "Integer";
    return numbered('C', type);
}

std::string describe(const IndexedLink& step) {
    return std::string(step.cascade ? "cascade " : "nocascade ") + elementName(step.source) + ' ' +
           propertyName(step.property) + ' ' + elementName(step.target);
}

}  // namespace nuv::zero::oracle
