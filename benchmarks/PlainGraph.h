#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace nuv::zero::benchmarks {

/// A model and what a walk over it names, told in numbers: how one program hands a model to another
/// that stands on another model framework. Only what walks follow is told: association properties
/// that are not derived.
struct PlainGraph {
    struct Property {
        std::u16string name;
        /// Numbers of classes.
        std::uint32_t owner = 0;
        bool isComposite = false;
        bool isSingleValued = false;
    };
    struct Class {
        std::u16string name;
        /// Inherited ones included, in the order in which the class tells them.
        std::vector<std::uint32_t> properties;
        /// The class itself and those above it.
        std::vector<std::uint32_t> conformsTo;
    };
    std::vector<Property> properties;
    std::vector<Class> classes;
    /// What the elements say, one after another: its class, the end of the values of each property,
    /// counted from the first value on, and the values, which are numbers of elements.
    std::vector<std::uint32_t> words;
    /// Where in `words` an element begins.
    std::vector<std::uint32_t> where;
    std::vector<std::uint32_t> roots;
    std::vector<std::uint32_t> followed;
    std::uint32_t walks = 1;

    /// Throw `std::runtime_error` when the stream ends or refuses.
    void write(std::FILE* out) const;
    static PlainGraph read(std::FILE* in);
};

/// One number to or from another program; false when there is none left.
void writeNumber(std::FILE* out, std::uint32_t number);
bool readNumber(std::FILE* in, std::uint32_t& number);

}  // namespace nuv::zero::benchmarks
