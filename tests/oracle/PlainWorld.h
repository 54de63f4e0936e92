#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "tests/oracle/Choices.h"

/// A metamodel, a model, and the callbacks of a case, as plain data: everything is named by its
/// index, and nothing of the library or the model framework is used.
namespace nuv::zero::oracle {

/// The index that stands for a null element, class or property.
inline constexpr int none = -1;
/// The indices that stand for primitive types where a type is expected.
inline constexpr int stringType = -2;
inline constexpr int integerType = -3;

struct ClassDefinition {
    std::u16string qualifiedName;
    std::vector<int> superclasses;
};

struct PropertyDefinition {
    int owner = none;
    /// Unique in a world, so that sorting by name leaves nothing open.
    std::u16string name;
    int type = none;
    int upperBound = 1;
    bool association = true;
    bool derived = false;
    bool composite = false;
    int opposite = none;
};

/// What one property of one element holds.
struct ValueDefinition {
    enum class Payload : std::uint8_t { Nothing, Elements, Text, Integer };
    int type = none;
    bool many = false;
    Payload payload = Payload::Nothing;
    /// Null entries are `none`.
    std::vector<int> elements;
};

struct PredicateDefinition {
    enum class Kind : std::uint8_t { All, None, KindOf, Exactly, Alternating, Empty };
    Kind kind = Kind::All;
    int operand = none;
};

struct FilterDefinition {
    enum class Kind : std::uint8_t { Pass, Veto, Three, NoPseudo, OnlyProperty, NotElement, Empty };
    Kind kind = Kind::Pass;
    int operand = none;
};

struct PlainWorld {
    std::vector<ClassDefinition> classes;
    std::vector<PropertyDefinition> properties;
    /// The class of each element.
    std::vector<int> elements;
    /// By element and property.
    std::map<std::pair<int, int>, ValueDefinition> values;
    std::vector<PredicateDefinition> predicates;
    std::vector<FilterDefinition> filters;
    /// Which callbacks fail, counted over all callbacks of a case from zero.
    std::vector<int> failingCalls;

    /// Whether a class is another one or a subclass of it.
    bool isKindOf(int type, int ancestor) const;
    bool hasProperty(int type, int property) const {
        return property != none &&
               isKindOf(type, properties[static_cast<std::size_t>(property)].owner);
    }
    /// The properties of a class in the order that the framework promises: inherited ones first,
    /// superclass by superclass, each once; then the class's own.
    std::vector<int> propertiesOf(int type) const;
};

PlainWorld makeWorld(Choices& choices);

enum class Kind : std::uint8_t { Additive, Composition, Subtractive };
const char* nameOf(Kind kind);

/// A rule given to a builder.
struct RuleOperation {
    enum class Kind : std::uint8_t { Add, AddWith, SetPolicy, Pseudo };
    Kind kind = Kind::Add;
    int property = none;
    /// `none` is the rule that a property alone makes.
    int predicate = none;
    int owner = none;
    /// The predicate given beside the matcher.
    int otherPredicate = none;
    int policy = 1;
};

RuleOperation makeRule(const PlainWorld& world, Choices& choices);

/// For logs: `e1`, `p2`, `C3`, `null`.
std::string elementName(int element);
std::string propertyName(int property);
std::string className(int type);
std::string describe(const PlainWorld& world);
std::string describe(const RuleOperation& rule);

/// A link by indices.
struct IndexedLink {
    int source = none;
    int property = none;
    int target = none;
    bool cascade = true;
    /// Whether a boundary refused it.
    bool refused = false;

    bool isEmpty() const { return source == none && property == none && target == none; }
    bool isSameStep(const IndexedLink& other) const {
        return source == other.source && property == other.property && target == other.target;
    }
};
std::string describe(const IndexedLink& step);

}  // namespace nuv::zero::oracle
