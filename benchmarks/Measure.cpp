#include "benchmarks/Measure.h"

#include <algorithm>
#include <stdexcept>

namespace nuv::zero::benchmarks {
namespace {

void check(const Contender& contender, const Checksum& met) {
    if (met == contender.expected) return;
    throw std::runtime_error("'" + contender.name +
                             "' meets other links than it should: " + std::to_string(met.links()) +
                             " links with checksum " + std::to_string(met.sum()) + " instead of " +
                             std::to_string(contender.expected.links()) + " with " +
                             std::to_string(contender.expected.sum()));
}

}  // namespace

Spread spreadOf(std::vector<double> numbers) {
    if (numbers.empty()) return {};
    std::sort(numbers.begin(), numbers.end());
    const std::size_t middle = numbers.size() / 2;
    const double median =
        numbers.size() % 2 != 0 ? numbers[middle] : (numbers[middle - 1] + numbers[middle]) / 2;
    return {median, numbers.front(), numbers.back()};
}

Timing timeInTurn(const std::vector<Contender>& contenders, std::size_t rounds) {
    std::vector<std::vector<double>> perLink(contenders.size());
    std::vector<std::vector<double>> ratio(contenders.size());
    for (std::size_t round = 0; round < rounds; ++round) {
        for (std::size_t i = 0; i < contenders.size(); ++i) {
            settleHeap();
            Checksum met;
            const double time = nanosecondsOf([&] { met = contenders[i].walk(); });
            contenders[i].cleanUp();
            check(contenders[i], met);
            const std::uint64_t links =
                contenders[i].linksToShare != 0 ? contenders[i].linksToShare : met.links();
            perLink[i].push_back(time / static_cast<double>(std::max<std::uint64_t>(links, 1)));
            ratio[i].push_back(perLink[i].back() / perLink[0].back());
        }
    }
    Timing timing;
    for (std::size_t i = 0; i < contenders.size(); ++i) {
        timing.perLink.push_back(spreadOf(perLink[i]));
        timing.ratio.push_back(spreadOf(ratio[i]));
    }
    return timing;
}

HeapUse heapUseOf(const std::function<void()>& work) {
    startCounting();
    work();
    return stopCounting();
}

}  // namespace nuv::zero::benchmarks
