#include "benchmarks/Shapes.h"

#include <algorithm>
#include <array>
#include <random>
#include <stdexcept>
#include <utility>

namespace nuv::zero::benchmarks {
namespace {

using memory::PropertyFlags;
constexpr PropertyFlags reference = PropertyFlags::Association;
constexpr PropertyFlags containment = PropertyFlags::Association | PropertyFlags::Composite;

/// A number below `bound`. `std::uniform_int_distribution` differs between standard libraries.
std::size_t below(std::mt19937_64& random, std::size_t bound) {
    return static_cast<std::size_t>(random() % bound);
}

/// The rules of the shapes of one class: the walked property and seven more, none of which any
/// element has a value of, each with a predicate that accepts no element's class.
void addIdleRules(Shape& shape, const meta::Class& type, const meta::Property& walked) {
    const meta::Class unused = shape.metamodel.addClass(u"Unused", {type});
    shape.idleRules.push_back({walked, unused});
    for (char16_t letter = u'a'; letter < u'a' + 7; ++letter) {
        shape.idleRules.push_back(
            {shape.metamodel.addProperty(unused, std::u16string(1, letter), type, memory::unbounded,
                                         containment),
             unused});
    }
}

/// A shape of one class whose elements contain each other by one property.
struct PlainShape {
    explicit PlainShape(Shape& shape, std::u16string_view propertyName, int upperBound)
        : type(shape.metamodel.addClass(u"Node")),
          below(shape.metamodel.addProperty(type, propertyName, type, upperBound, containment)) {
        addIdleRules(shape, type, below);
        shape.followed = {below};
    }
    meta::Class type;
    meta::Property below;
};

void makeElements(Shape& shape, const meta::Class& type, std::size_t size) {
    shape.elements.reserve(size);
    while (shape.elements.size() < size) shape.elements.push_back(shape.model.create(type));
    shape.roots = {shape.elements.front()};
}

void makeTree(Shape& shape, std::size_t size) {
    constexpr std::size_t fanOut = 8;
    const PlainShape plain(shape, u"children", memory::unbounded);
    makeElements(shape, plain.type, size);
    for (std::size_t child = 1; child < size; ++child) {
        shape.model.add(shape.elements[(child - 1) / fanOut], plain.below, shape.elements[child]);
    }
}

void makeChain(Shape& shape, std::size_t size) {
    const PlainShape plain(shape, u"next", 1);
    makeElements(shape, plain.type, size);
    for (std::size_t i = 1; i < size; ++i) {
        shape.model.set(shape.elements[i - 1], plain.below, shape.elements[i]);
    }
}

void makeStar(Shape& shape, std::size_t size) {
    const PlainShape plain(shape, u"children", memory::unbounded);
    makeElements(shape, plain.type, size);
    for (std::size_t i = 1; i < size; ++i) {
        shape.model.add(shape.roots.front(), plain.below, shape.elements[i]);
    }
}

/// One root class, three classes below it, eight below those. Elements are of the eight; each of
/// these has four properties from the root class and one from each of the two levels below it.
struct RichClasses {
    explicit RichClasses(memory::Metamodel& metamodel)
        : item(metamodel.addClass(u"Item")),
          owner(metamodel.addProperty(item, u"owner", item, 1, reference)),
          parts(metamodel.addProperty(item, u"parts", item, memory::unbounded, containment)),
          uses(metamodel.addProperty(item, u"uses", item, memory::unbounded, reference)),
          peer(metamodel.addProperty(item, u"peer", item, 1, reference)) {
        const meta::Type& text = meta::StandardTypes::stringMeta();
        const auto number = metamodel.addPrimitive(u"Number", memory::TypeObject::Kind::Integer);
        texts = {metamodel.addProperty(item, u"name", text),
                 metamodel.addProperty(item, u"label", text)};
        numbers = {metamodel.addProperty(item, u"id", number),
                   metamodel.addProperty(item, u"rank", number)};
        for (const char16_t letter : std::u16string_view(u"ABC")) {
            const auto type = metamodel.addClass(std::u16string(u"Group") + letter, {item});
            groups.push_back(type);
            notes.push_back(
                metamodel.addProperty(type, u"notes", item, memory::unbounded, containment));
            groupTexts.push_back(metamodel.addProperty(type, u"comment", text));
        }
        for (std::size_t i = 0; i < 8; ++i) {
            const auto letter = static_cast<char16_t>(u'a' + i);
            const auto type =
                metamodel.addClass(std::u16string(u"Kind") + letter, {groups[i % groups.size()]});
            kinds.push_back(type);
            extras.push_back(
                metamodel.addProperty(type, u"extras", item, memory::unbounded, reference));
            kindNumbers.push_back(metamodel.addProperty(type, u"weight", number));
        }
    }

    meta::Class item;
    meta::Property owner, parts, uses, peer;
    std::vector<meta::Property> texts, numbers;
    std::vector<meta::Class> groups, kinds;
    /// Properties that stay empty, one of each group and one of each kind.
    std::vector<meta::Property> notes, extras;
    std::vector<meta::Property> groupTexts, kindNumbers;
};

ModelElement makeRichElement(Shape& shape, const RichClasses& classes, std::size_t number) {
    const std::size_t kind = number * 7 % classes.kinds.size();
    ModelElement made = shape.model.create(classes.kinds[kind]);
    const std::string digits = std::to_string(number);
    const std::u16string text(digits.begin(), digits.end());
    const auto value = static_cast<std::int64_t>(number);
    for (const auto& property : classes.texts) shape.model.set(made, property, text);
    for (const auto& property : classes.numbers) shape.model.set(made, property, value);
    shape.model.set(made, classes.groupTexts[kind % classes.groups.size()], text);
    shape.model.set(made, classes.kindNumbers[kind], value);
    return made;
}

void makeRich(Shape& shape, std::size_t size) {
    const RichClasses classes(shape.metamodel);
    std::mt19937_64 random(20240229);

    // Elements are made in the order in which a reader would meet them in a file: each before what
    // it contains, and that before its next sibling.
    constexpr std::size_t deepest = 12;
    std::vector<ModelElement> path;
    shape.elements.reserve(size);
    for (std::size_t i = 0; i < size; ++i) {
        const ModelElement made = makeRichElement(shape, classes, i);
        if (!path.empty()) {
            shape.model.add(path.back(), classes.parts, made);
            shape.model.set(made, classes.owner, path.back());
        }
        shape.elements.push_back(made);
        path.push_back(made);
        // Up by one level in half of the cases, by two in a quarter, and so on; never off the root.
        while (path.size() > 1 && (path.size() > deepest || below(random, 2) == 0)) path.pop_back();
    }
    for (const ModelElement& element : shape.elements) {
        shape.model.add(element, classes.uses, shape.elements[below(random, size)]);
        shape.model.set(element, classes.peer, shape.elements[below(random, size)]);
    }

    shape.roots = {shape.elements.front()};
    shape.followed = {classes.parts, classes.uses, classes.peer, classes.owner};
    // Two levels of classes have no elements, so predicates on them can be asked and say no.
    const meta::Class unused = shape.metamodel.addClass(u"Unused", {classes.item});
    for (const auto& property : {classes.parts, classes.uses, classes.peer}) {
        shape.idleRules.push_back({property, unused});
    }
    for (std::size_t i = 0; i < 3; ++i) {
        shape.idleRules.push_back({classes.notes[i], classes.groups[i]});
    }
    for (std::size_t i = 0; i < 2; ++i) {
        shape.idleRules.push_back({classes.extras[i], classes.kinds[i]});
    }
}

struct Generator {
    std::string_view name;
    std::size_t size;
    std::size_t walks;
    void (*make)(Shape&, std::size_t);
};
constexpr std::array<Generator, 5> generators = {{
    {"tree", 1'000'000, 1, makeTree},
    {"rich", 500'000, 1, makeRich},
    {"chain", 1'000'000, 1, makeChain},
    {"star", 1'000'000, 1, makeStar},
    {"small", 10'000, 100, makeRich},
}};

const Generator& generatorOf(std::string_view name) {
    const auto* const found = std::find_if(generators.begin(), generators.end(),
                                           [&](const Generator& g) { return g.name == name; });
    if (found == generators.end()) {
        throw std::invalid_argument("there is no shape called '" + std::string(name) + "'");
    }
    return *found;
}

}  // namespace

const std::vector<std::string>& shapeNames() {
    static const std::vector<std::string> names = [] {
        std::vector<std::string> all;
        all.reserve(generators.size());
        for (const Generator& generator : generators) all.emplace_back(generator.name);
        return all;
    }();
    return names;
}

std::size_t shapeSize(std::string_view name) {
    return generatorOf(name).size;
}

std::unique_ptr<Shape> makeShape(std::string_view name, std::size_t size) {
    const Generator& generator = generatorOf(name);
    auto shape = std::make_unique<Shape>();
    shape->name = name;
    shape->walks = generator.walks;
    generator.make(*shape, size);
    return shape;
}

}  // namespace nuv::zero::benchmarks
