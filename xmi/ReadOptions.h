#pragma once

#include <cstddef>
#include <cstdint>

namespace nuv::zero::xmi {

/// What happens to a reference that leads into another file.
enum class CrossFile : std::uint8_t {
    /// It is an error, except in a file that is itself an Ecore metamodel: such files refer to the
    /// data types of others all the time, and there it is left out.
    LeaveOutOfMetamodels,
    /// It is an error.
    Refuse,
    /// It is left out.
    LeaveOut,
};

/// How much one file may demand by default.
namespace limits {
/// Bytes of a file.
inline constexpr std::size_t fileBytes = std::size_t{1} << 30U;
/// XML elements nested in each other.
inline constexpr std::size_t depth = 10'000;
/// XML elements of a file, and therefore objects of a model. While it is read, each takes about 120
/// bytes besides its slots.
inline constexpr std::size_t elements = 20'000'000;
/// Different names of a file: those of elements, attributes and types, and prefixes.
inline constexpr std::size_t names = 1'000'000;
/// Classes of a metamodel.
inline constexpr std::size_t classes = 50'000;
/// Features of one class, inherited ones included. Looking one up by its name costs their number.
inline constexpr std::size_t features = 10'000;
/// Pairs of a class and one of its ancestors, and pairs of a class and one of its properties,
/// inherited ones included. A small file can demand millions of both.
inline constexpr std::size_t inheritedParts = 2'000'000;
/// Bytes of the qualified names of a metamodel. Each repeats the names of its packages, so a small
/// file can demand gigabytes of them.
inline constexpr std::size_t qualifiedNames = 100'000'000;
/// Pairs of an object and a property of its class: the memory that a model takes, 8 bytes each.
inline constexpr std::size_t slots = 250'000'000;
}  // namespace limits

/// How much one file may demand. A file that demands more is refused with a `ReadError` that names
/// the limit, and the place in the file where it is passed.
///
/// No limit is needed for the expansion of entities: what declares them, a document type
/// declaration, is refused as such. Nor is one for the stack: nothing is read by recursion, so what
/// reading takes of it does not grow with the file.
struct ReadLimits {
    std::size_t fileBytes = limits::fileBytes;
    std::size_t depth = limits::depth;
    std::size_t elements = limits::elements;
    std::size_t names = limits::names;
    std::size_t classes = limits::classes;
    std::size_t features = limits::features;
    std::size_t inheritedParts = limits::inheritedParts;
    std::size_t qualifiedNames = limits::qualifiedNames;
    std::size_t slots = limits::slots;
};

struct ReadOptions {
    CrossFile crossFile = CrossFile::LeaveOutOfMetamodels;
    ReadLimits limits;
};

}  // namespace nuv::zero::xmi
