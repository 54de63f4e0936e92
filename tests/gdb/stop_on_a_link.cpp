// Stops where a debugger wants to see things: within a walk of each order, and before one.
#include "model/memory/Model.h"
#include "traversal/Traversal.h"

using namespace nuv::zero;
using namespace nuv::zero::traversal;

namespace {

struct Plant {
    memory::Metamodel metamodel{u"plant"};
    meta::Class block = metamodel.addClass(u"Block");
    meta::Property name = metamodel.addProperty(block, u"name", meta::StandardTypes::stringMeta());
    meta::Property weight = metamodel.addProperty(
        block, u"weight", metamodel.addPrimitive(u"Integer", memory::TypeObject::Kind::Integer));
    meta::Property parts = metamodel.addProperty(
        block, u"parts", block, memory::unbounded,
        memory::PropertyFlags::Association | memory::PropertyFlags::Composite);
    memory::Model model;
    ModelElement station = model.create(block, u"Station");
    ModelElement pump = model.create(block, u"Pump with a long näme");

    Plant() {
        model.set(station, parts, {pump, model.create(block, u"Tank")});
        model.add(pump, parts, model.create(block, u"Motor"));
        model.set(pump, weight, std::int64_t{-40});
    }
};

}  // namespace

/// Where the debugger stops; everything it shows is an argument.
__attribute__((noinline)) void stop(const Link& link, const LinkRange& walk,
                                    const TraversalResult& result, const Plant& plant,
                                    const Value& text, const Value& number, const Value& list,
                                    const Value& nothing) {
    asm volatile("" ::"r"(&link), "r"(&walk), "r"(&result), "r"(&plant), "r"(&text), "r"(&number),
                 "r"(&list), "r"(&nothing));
}

int main() {
    const Plant plant;
    const auto everything = Spec::compositionTraversal();
    const Value text = access::read(plant.pump, plant.name);
    const Value number = access::read(plant.pump, plant.weight);
    const Value list = access::read(plant.station, plant.parts);
    for (const auto& result : {everything->depthFirst({plant.station, ModelElement()}),
                               everything->breadthFirst({plant.station})}) {
        LinkRange walk = links(result);
        stop({}, walk, *result, plant, text, number, list, {});
        std::size_t reported = 0;
        for (const Link& link : walk) {
            if (++reported == 3) stop(link, walk, *result, plant, text, number, list, {});
        }
        stop({}, walk, *result, plant, text, number, list, {});
    }
}
