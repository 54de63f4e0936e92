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

/// How much one file may demand. A file that demands more is refused with an error.
struct ReadLimits {
    /// Bytes of a file.
    std::size_t fileBytes = std::size_t{1} << 30U;
    /// XML elements nested in each other.
    std::size_t depth = 10'000;
    /// XML elements of a file, and therefore objects of a model.
    std::size_t elements = 20'000'000;
    /// Classes of a metamodel.
    std::size_t classes = 50'000;
    /// Pairs of a class and one of its ancestors, and pairs of a class and one of its properties,
    /// inherited ones included. A small file can demand millions of both.
    std::size_t inheritedParts = 2'000'000;
    /// Pairs of an object and a property of its class: the memory that a model takes.
    std::size_t slots = 1'000'000'000;
};

struct ReadOptions {
    CrossFile crossFile = CrossFile::LeaveOutOfMetamodels;
    ReadLimits limits;
};

}  // namespace nuv::zero::xmi
