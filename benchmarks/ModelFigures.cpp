#include "benchmarks/ModelFigures.h"

#include <functional>

#include "benchmarks/Format.h"
#include "benchmarks/Measure.h"
#include "benchmarks/RawRead.h"

namespace nuv::zero::benchmarks {
namespace {

using memory::Model;

/// Elements of the same classes as a shape's, without values.
std::vector<ModelElement> createLike(const Shape& shape, Model& model) {
    std::vector<ModelElement> made;
    made.reserve(shape.elements.size());
    for (const ModelElement& element : shape.elements) {
        made.push_back(model.create(access::classOf(element)));
    }
    return made;
}

/// Gives every `listLength`th element a list of the elements behind it; says how many entries the
/// lists have.
std::size_t addLists(Model& model, const std::vector<ModelElement>& elements,
                     const meta::Property& list, std::size_t listLength) {
    std::size_t added = 0;
    for (std::size_t i = 0; i + 1 < elements.size(); ++i, ++added) {
        model.add(elements[i / listLength * listLength], list, elements[i + 1]);
    }
    return added;
}

Figure atMost(const std::string& what, double measured, int digits, double target) {
    return {what, fixed(measured, digits), fixed(target, 0), measured <= target};
}

double bytesOf(const std::function<void()>& work) {
    return static_cast<double>(heapUseOf(work).remainingBytes);
}

/// A chain of elements; `bottomUp` makes the last link first.
double timeOfChain(bool bottomUp, std::size_t size) {
    const auto shape = makeShape("chain", 2);
    const meta::Class type = access::classOf(shape->roots.front());
    const meta::Property next = shape->followed.front();
    Model model;
    return nanosecondsOf([&] {
        ModelElement last = model.create(type);
        for (std::size_t i = 1; i < size; ++i) {
            const ModelElement made = model.create(type);
            if (bottomUp) {
                model.set(made, next, last);
            } else {
                model.set(last, next, made);
            }
            last = made;
        }
    });
}

void addBytes(std::vector<Figure>& figures) {
    const auto shape = makeShape("rich", shapeSize("rich"));
    const auto count = static_cast<double>(shape->elements.size());
    const auto slots = access::classOf(shape->roots.front())->layout().slotCount();
    const meta::Property parts = shape->followed[0];
    const meta::Property peer = shape->followed[2];

    Model model;
    std::vector<ModelElement> elements;
    elements.reserve(shape->elements.size());
    const double created = bytesOf([&] {
        for (const ModelElement& element : shape->elements) {
            elements.push_back(model.create(access::classOf(element)));
        }
    });
    figures.push_back(
        atMost("bytes per element with " + std::to_string(slots) + " properties, none set",
               created / count, 1, 128));
    const double single = bytesOf([&] {
        for (const ModelElement& element : elements) model.set(element, peer, elements.front());
    });
    figures.push_back(
        {"bytes per stored reference of a single-valued property, beyond the "
         "element's own",
         fixed(single / count, 1)});
    for (const std::size_t length : {std::size_t{1}, std::size_t{8}, std::size_t{1000}}) {
        Model fresh;
        const auto made = createLike(*shape, fresh);
        std::size_t added = 0;
        const double listed = bytesOf([&] { added = addLists(fresh, made, parts, length); });
        const std::string what = "bytes per stored reference of lists of " + std::to_string(length);
        const double bytes = listed / static_cast<double>(added);
        figures.push_back(length == 1 ? atMost(what, bytes, 1, 32) : Figure{what, fixed(bytes, 1)});
    }
}

}  // namespace

std::vector<Figure> measureModel(std::size_t rounds) {
    std::vector<Figure> figures;
    addBytes(figures);

    for (const std::string name : {"rich", "chain"}) {
        std::vector<double> building;
        std::vector<double> destroying;
        for (std::size_t round = 0; round < rounds; ++round) {
            settleHeap();
            std::unique_ptr<Shape> shape;
            building.push_back(nanosecondsOf([&] { shape = makeShape(name, shapeSize(name)); }));
            shape->elements = {};
            shape->roots = {};
            destroying.push_back(nanosecondsOf([&] { Model last(std::move(shape->model)); }));
        }
        const auto count = static_cast<double>(shapeSize(name));
        const double built = spreadOf(building).median / count;
        const double destroyed = spreadOf(destroying).median / count;
        const std::string how = " the shape " + name + ", ns per element";
        figures.push_back(name == "rich" ? atMost("building" + how, built, 0, 500)
                                         : Figure{"building" + how, fixed(built, 0)});
        figures.push_back(name == "rich" ? atMost("destroying" + how, destroyed, 0, 200)
                                         : Figure{"destroying" + how, fixed(destroyed, 0)});
    }
    const std::size_t size = shapeSize("chain");
    std::vector<double> down;
    std::vector<double> up;
    for (std::size_t round = 0; round < rounds; ++round) {
        settleHeap();
        down.push_back(timeOfChain(false, size));
        settleHeap();
        up.push_back(timeOfChain(true, size));
    }
    figures.push_back({"building a chain, top-down and bottom-up",
                       fixed(spreadOf(down).median / 1e6, 0) + " ms and " +
                           fixed(spreadOf(up).median / 1e6, 0) + " ms"});
    return figures;
}

}  // namespace nuv::zero::benchmarks
