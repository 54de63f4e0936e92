#pragma once

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "model/memory/Metamodel.h"
#include "model/memory/Model.h"
#include "model/memory/ModelAccess.h"

namespace nuv::zero::test {

/// The metamodel of most tests of the in-memory model: blocks that contain ports.
///
///     Named <- Block: ports -> Port [*], boss -> Block, tags: String [*], sizes: Integer [*]
///     Named <- Port:  block -> Block (opposite of ports), size: Integer
struct Blocks {
    using Flags = memory::PropertyFlags;

    memory::Metamodel metamodel{u"m"};
    meta::PrimitiveType integer =
        metamodel.addPrimitive(u"m::Integer", memory::TypeObject::Kind::Integer);
    meta::Class named = metamodel.addClass(u"Named");
    meta::Class block = metamodel.addClass(u"Block", {named});
    meta::Class port = metamodel.addClass(u"Port", {named});
    meta::Property name = metamodel.addProperty(named, u"name", meta::StandardTypes::stringMeta());
    meta::Property ports = metamodel.addProperty(block, u"ports", port, memory::unbounded,
                                                 Flags::Association | Flags::Composite);
    meta::Property boss = metamodel.addProperty(block, u"boss", block, 1, Flags::Association);
    meta::Property tags =
        metamodel.addProperty(block, u"tags", meta::StandardTypes::stringMeta(), memory::unbounded);
    meta::Property sizes = metamodel.addProperty(block, u"sizes", integer, memory::unbounded);
    meta::Property owner = metamodel.addProperty(port, u"block", block, 1, Flags::Association);
    meta::Property size = metamodel.addProperty(port, u"size", integer);
};

/// A model of two blocks with a port for each, where none contains any yet.
struct BlocksOfAModel {
    Blocks m;
    memory::Model model;
    ModelElement b1 = model.create(m.block, u"b1");
    ModelElement p1 = model.create(m.port, u"p1");
    ModelElement b2 = model.create(m.block, u"b2");
    ModelElement p2 = model.create(m.port, u"p2");
};
/// The same for each test anew.
struct BlocksModel : testing::Test, BlocksOfAModel {};

/// A value that claims to be of the type, single or many, whatever it holds.
inline memory::PlantedValue single(const meta::Type& type, memory::Content data = {}) {
    return {type, false, std::move(data)};
}
inline memory::PlantedValue many(const meta::Type& type, memory::Content data = {}) {
    return {type, true, std::move(data)};
}

/// The text of the `ModelError` that a call throws; empty when it throws none.
template <class Call>
std::string errorOf(Call&& call) {
    try {
        call();
    } catch (const memory::ModelError& error) {
        return error.what();
    }
    return {};
}

using Elements = std::vector<ModelElement>;

inline Elements elementsOf(const ModelElement& element, const meta::Property& property) {
    return access::toElements(access::read(element, property));
}
inline ModelElement elementOf(const ModelElement& element, const meta::Property& property) {
    return access::toElement(access::read(element, property));
}

}  // namespace nuv::zero::test
