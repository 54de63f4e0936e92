#include "benchmarks/PlainGraph.h"

#include <stdexcept>

namespace nuv::zero::benchmarks {
namespace {

using Numbers = std::vector<std::uint32_t>;

std::uint32_t readOne(std::FILE* in) {
    std::uint32_t number = 0;
    if (!readNumber(in, number)) throw std::runtime_error("a graph ends too early");
    return number;
}

template <class Unit>
void writeAll(std::FILE* out, const Unit* units, std::size_t count) {
    writeNumber(out, static_cast<std::uint32_t>(count));
    if (std::fwrite(units, sizeof(Unit), count, out) != count) {
        throw std::runtime_error("a graph cannot be written");
    }
}

template <class Container>
void readAll(std::FILE* in, Container& units) {
    units.resize(readOne(in));
    if (std::fread(units.data(), sizeof(units[0]), units.size(), in) != units.size()) {
        throw std::runtime_error("a graph ends too early");
    }
}

}  // namespace

void writeNumber(std::FILE* out, std::uint32_t number) {
    if (std::fwrite(&number, sizeof number, 1, out) != 1) {
        throw std::runtime_error("a number cannot be written");
    }
}

bool readNumber(std::FILE* in, std::uint32_t& number) {
    return std::fread(&number, sizeof number, 1, in) == 1;
}

void PlainGraph::write(std::FILE* out) const {
    writeNumber(out, static_cast<std::uint32_t>(properties.size()));
    for (const Property& property : properties) {
        writeAll(out, property.name.data(), property.name.size());
        writeNumber(out, property.owner);
        writeNumber(out, property.isComposite ? 1 : 0);
        writeNumber(out, property.isSingleValued ? 1 : 0);
    }
    writeNumber(out, static_cast<std::uint32_t>(classes.size()));
    for (const Class& type : classes) {
        writeAll(out, type.name.data(), type.name.size());
        writeAll(out, type.properties.data(), type.properties.size());
        writeAll(out, type.conformsTo.data(), type.conformsTo.size());
    }
    for (const Numbers* numbers : {&words, &where, &roots, &followed}) {
        writeAll(out, numbers->data(), numbers->size());
    }
    writeNumber(out, walks);
}

PlainGraph PlainGraph::read(std::FILE* in) {
    PlainGraph graph;
    graph.properties.resize(readOne(in));
    for (Property& property : graph.properties) {
        readAll(in, property.name);
        property.owner = readOne(in);
        property.isComposite = readOne(in) != 0;
        property.isSingleValued = readOne(in) != 0;
    }
    graph.classes.resize(readOne(in));
    for (Class& type : graph.classes) {
        readAll(in, type.name);
        readAll(in, type.properties);
        readAll(in, type.conformsTo);
    }
    for (Numbers* numbers : {&graph.words, &graph.where, &graph.roots, &graph.followed}) {
        readAll(in, *numbers);
    }
    graph.walks = readOne(in);
    return graph;
}

}  // namespace nuv::zero::benchmarks
