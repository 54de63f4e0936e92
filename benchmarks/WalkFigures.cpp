#include "benchmarks/WalkFigures.h"

#include <algorithm>
#include <array>
#include <barrier>
#include <cmath>
#include <optional>
#include <stdexcept>
#include <thread>
#include <utility>

#include "benchmarks/Format.h"
#include "benchmarks/Measure.h"

namespace nuv::zero::benchmarks {
namespace {

using traversal::Algo;
using traversal::Link;
using traversal::TraversalResult;

Walk subtractive(const Shape& shape, Algo order) {
    Walk walk;
    walk.shape = &shape;
    walk.kind = Kind::Subtractive;
    walk.order = order;
    return walk;
}

Spread timeOf(std::size_t rounds, const std::function<void()>& work) {
    std::vector<double> times;
    for (std::size_t i = 0; i < rounds; ++i) {
        settleHeap();
        times.push_back(nanosecondsOf(work));
    }
    return spreadOf(times);
}

/// From making the builder to the link with that number.
double timeOfFirst(std::size_t count, const Walk& walk, std::size_t rounds) {
    constexpr std::size_t repeats = 1000;
    std::size_t met = 0;
    const Spread time = timeOf(rounds, [&] {
        for (std::size_t i = 0; i < repeats; ++i) {
            std::size_t left = count;
            for (const Link& link : traversal::links(makeResult(walk))) {
                met += link.shouldCascade() ? 1 : 0;
                if (--left == 0) break;
            }
        }
    });
    if (met == 0) throw std::runtime_error("a walk reports nothing");
    return time.median / repeats;
}

const std::vector<std::size_t> sizeFactors = {1, 2, 4};

/// The exponent e of the best fit of time = constant * size^e, by least squares over the
/// logarithms.
double fittedExponent(const std::vector<double>& sizes, const std::vector<double>& times) {
    double sumX = 0;
    double sumY = 0;
    double sumXX = 0;
    double sumXY = 0;
    const auto count = static_cast<double>(sizes.size());
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        const double x = std::log(sizes[i]);
        const double y = std::log(times[i]);
        sumX += x;
        sumY += y;
        sumXX += x * x;
        sumXY += x * y;
    }
    return (count * sumXY - sumX * sumY) / (count * sumXX - sumX * sumX);
}

/// The median times of a walk over a model that may be four times as large as usual, by the library
/// and by hand in turn.
std::pair<double, double> timesOfLarge(const Walk& walk, std::size_t rounds) {
    constexpr std::size_t enough = std::size_t{1280} << 20U;
    std::vector<double> library;
    std::vector<double> byHand;
    for (std::size_t round = 0; round < rounds; ++round) {
        settleHeap(enough);
        library.push_back(nanosecondsOf([&] { walkLibrary(walk); }));
        settleHeap(enough);
        byHand.push_back(nanosecondsOf([&] { walkByHand(walk, Visited::Flat); }));
    }
    return {spreadOf(library).median, spreadOf(byHand).median};
}

/// Processor time that each of `count` threads takes to walk at the same time.
std::vector<double> walkOnThreads(std::size_t count, const Walk& walk, const Checksum& expected) {
    std::vector<double> times(count);
    std::vector<Checksum> met(count);
    std::barrier start(static_cast<std::ptrdiff_t>(count));
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < count; ++i) {
        threads.emplace_back([&, i] {
            // Once to bring the thread's own heap into shape, once to measure.
            walkLibrary(walk);
            start.arrive_and_wait();
            times[i] = nanosecondsOf([&] { met[i] = walkLibrary(walk); });
        });
    }
    for (std::thread& thread : threads) thread.join();
    for (const Checksum& sum : met) {
        if (sum != expected) throw std::runtime_error("a thread meets other links");
    }
    return times;
}

}  // namespace

std::vector<Figure> measureFirstLinks(std::size_t rounds) {
    std::vector<Figure> figures;
    for (const std::string name : {"rich", "tree"}) {
        for (const Algo order : allOrders) {
            // Post-order, the first link lies at the end of the first path, and that is as long as
            // the model lets it be.
            if (name == "rich" && order == Algo::DepthFirstPostOrder) continue;
            std::vector<double> first;
            std::vector<double> tenth;
            for (const std::size_t factor : sizeFactors) {
                const auto shape = makeShape(name, shapeSize(name) / 4 * factor);
                const Walk walk = subtractive(*shape, order);
                first.push_back(timeOfFirst(1, walk, rounds));
                tenth.push_back(timeOfFirst(10, walk, rounds));
            }
            const auto join = [](const std::vector<double>& times) {
                std::string text;
                for (const double time : times) {
                    text += (text.empty() ? "" : ", ") + fixed(time / 1000, 2);
                }
                return text + " us";
            };
            const std::string where = name + ", " + std::string(nameOf(order)) + ", n/4, n/2, n";
            const bool isMet = first.back() < 1.5 * first.front() + 500;
            figures.push_back({"from the builder to the first link, " + where, join(first),
                               "independent of size", isMet});
            figures.push_back({"to the tenth, " + where, join(tenth)});
        }
    }
    return figures;
}

std::vector<Figure> measureScaling(std::size_t rounds) {
    std::vector<Figure> figures;
    for (const std::string& name : shapeNames()) {
        if (name == "small") continue;
        std::vector<double> sizes;
        std::array<std::vector<double>, allOrders.size()> library;
        std::array<std::vector<double>, allOrders.size()> byHand;
        for (const std::size_t factor : sizeFactors) {
            const auto shape = makeShape(name, shapeSize(name) * factor);
            sizes.push_back(static_cast<double>(shape->elements.size()));
            for (std::size_t i = 0; i < allOrders.size(); ++i) {
                const auto times = timesOfLarge(subtractive(*shape, allOrders[i]), rounds);
                library[i].push_back(times.first);
                byHand[i].push_back(times.second);
            }
        }
        for (std::size_t i = 0; i < allOrders.size(); ++i) {
            const double growth = library[i][2] / library[i][0] / 4;
            figures.push_back(
                {"walk of " + name + ", " + std::string(nameOf(allOrders[i])) + ", at n, 2n and 4n",
                 fixed(library[i][0] / 1e6, 0) + ", " + fixed(library[i][1] / 1e6, 0) + ", " +
                     fixed(library[i][2] / 1e6, 0) + " ms; fourfold size costs 4 times " +
                     fixed(growth, 2) + ", fitted exponent " +
                     fixed(fittedExponent(sizes, library[i]), 2) + "; flat-set loop 4 times " +
                     fixed(byHand[i][2] / byHand[i][0] / 4, 2) + ", " +
                     fixed(fittedExponent(sizes, byHand[i]), 2),
                 "1.3", growth <= 1.3});
        }
    }
    return figures;
}

std::vector<Figure> measureThreads(std::size_t rounds) {
    std::vector<Figure> figures;
    for (const std::string name : {"rich", "tree"}) {
        const auto shape = makeShape(name, shapeSize(name));
        for (const Algo order : {Algo::DepthFirstPreOrder, Algo::BreadthFirst}) {
            const Walk walk = subtractive(*shape, order);
            const Checksum expected = expectedOf(walk);
            std::vector<double> speeds;
            for (std::size_t round = 0; round < rounds; ++round) {
                const double alone = walkOnThreads(1, walk, expected).front();
                const std::vector<double> both = walkOnThreads(2, walk, expected);
                speeds.push_back(alone / *std::max_element(both.begin(), both.end()));
            }
            const Spread speed = spreadOf(speeds);
            figures.push_back({"two threads over one model, " + name + ", " +
                                   std::string(nameOf(order)) + ": slower one's speed over alone",
                               fixed(speed.median, 2) + " (" + rangeOf(speed, 2) + ")",
                               "0.9 or more", speed.median >= 0.9});
        }
    }
    return figures;
}

std::vector<Figure> measureSetup(std::size_t rounds) {
    constexpr std::size_t ruleCount = 100;
    constexpr std::size_t repeats = 100;
    constexpr std::size_t linksMet = 1'000'000;
    constexpr double mostMilliseconds = 6;
    constexpr std::size_t mostAllocations = 100;
    memory::Metamodel metamodel;
    const meta::Class type = metamodel.addClass(u"Node");
    std::vector<meta::Property> properties;
    for (std::size_t i = 0; i < ruleCount; ++i) {
        const std::string name = "p" + std::to_string(i);
        properties.push_back(metamodel.addProperty(type, std::u16string(name.begin(), name.end()),
                                                   type, memory::unbounded,
                                                   memory::PropertyFlags::Association));
    }
    memory::Model model;
    const std::vector<ModelElement> inputs = {model.create(type)};
    const Spread building = timeOf(rounds, [&] {
        for (std::size_t i = 0; i < repeats; ++i) {
            const auto builder = traversal::Spec::subtractiveTraversal();
            for (const meta::Property& property : properties) builder->prune(property);
            builder->depthFirst(inputs);
        }
    });
    std::vector<Figure> figures = {{"builder with 100 rules, made and run",
                                    fixed(building.median / repeats / 1000, 1) + " us"}};

    const auto shape = makeShape("rich", shapeSize("rich"));
    for (const Algo order : allOrders) {
        const Walk walk = subtractive(*shape, order);
        const auto result = makeResult(walk);
        auto position = result->begin();
        for (std::size_t i = 1; i < linksMet; ++i) position.advance();
        std::optional<TraversalResult::IterationContext> copy;
        std::vector<double> times;
        for (std::size_t round = 0; round < rounds; ++round) {
            copy.reset();
            settleHeap();
            times.push_back(nanosecondsOf([&] { copy.emplace(position); }));
        }
        copy.reset();
        const HeapUse use = heapUseOf([&] { copy.emplace(position); });
        if (!(*copy == position)) throw std::runtime_error("a copied walk differs");
        const double milliseconds = spreadOf(times).median / 1e6;
        figures.push_back({"copy of an iterator in mid-walk, rich, " + std::string(nameOf(order)) +
                               ", on its link " + std::to_string(linksMet),
                           fixed(milliseconds, 1) + " ms, " +
                               fixed(static_cast<double>(use.peakBytes) / 1e6, 0) + " MB, " +
                               std::to_string(use.allocations) + " allocations",
                           fixed(mostMilliseconds, 0) + " ms, " + std::to_string(mostAllocations) +
                               " allocations",
                           milliseconds <= mostMilliseconds && use.allocations <= mostAllocations});
    }
    return figures;
}

}  // namespace nuv::zero::benchmarks
