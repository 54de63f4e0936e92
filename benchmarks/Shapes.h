#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "model/Framework.h"
#include "model/memory/Model.h"

namespace nuv::zero::benchmarks {

/// A named model to walk. The same name and size give the same model everywhere: generators are
/// seeded, and take their random numbers from an engine that the standard defines to the last bit.
///
/// | name  | elements  | what it is                                                        |
/// |-------|-----------|-------------------------------------------------------------------|
/// | tree  | 1,000,000 | one class, one containment property, fan-out 8                    |
/// | rich  | 500,000   | 12 classes, 6 association properties and 6 attributes per class;  |
/// |       |           | owner, owned elements and 2 random cross references per element   |
/// | chain | 1,000,000 | each element contains the next                                    |
/// | star  | 1,000,000 | one element contains all others                                   |
/// | small | 10,000    | as rich, walked 100 times                                         |
struct Shape {
    std::string name;
    /// How many walks one measurement takes; for shapes whose one walk is too short to time.
    std::size_t walks = 1;

    memory::Metamodel metamodel;
    memory::Model model;
    std::vector<ModelElement> roots;
    /// What an additive walk names, in this order.
    std::vector<meta::Property> followed;
    /// Eight rules that have to be asked but do not change what a walk meets. Each predicate
    /// accepts the subclasses of `scope`.
    struct Rule {
        meta::Property property;
        meta::Class scope;
    };
    std::vector<Rule> idleRules;
    /// Every element, in the order of making.
    std::vector<ModelElement> elements;
    /// What else the model hangs on, when it is not `model` that holds it.
    std::shared_ptr<const void> owner;
};

/// The names of the seeded shapes.
const std::vector<std::string>& shapeNames();

/// The number of elements that a shape has by default.
std::size_t shapeSize(std::string_view name);

/// Makes a seeded shape. Throws `std::invalid_argument` for a name that is not among `shapeNames`.
std::unique_ptr<Shape> makeShape(std::string_view name, std::size_t size);

}  // namespace nuv::zero::benchmarks
