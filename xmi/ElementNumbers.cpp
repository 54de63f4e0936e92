#include "xmi/ElementNumbers.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace nuv::zero::xmi {
namespace {

/// Of all pointers, `<` of C++ compares those into one array only.
constexpr std::less<> isBefore;

/// The first of the elements of a run that does not lie in front of the object.
std::uint32_t firstFrom(const std::vector<ModelElement>& elements, std::uint32_t begin,
                        std::uint32_t end, const memory::Object* object) {
    const auto found = std::lower_bound(elements.begin() + begin, elements.begin() + end, object,
                                        [](const ModelElement& each, const memory::Object* wanted) {
                                            return isBefore(each.get(), wanted);
                                        });
    return static_cast<std::uint32_t>(found - elements.begin());
}

}  // namespace

void ElementNumbers::add(const ModelElement& element, Number number) {
    const memory::Object* const object = element.get();
    if (runs_.empty() || !isBefore(runs_.back().last, object)) {
        runs_.push_back({object, object, number, number});
    }
    runs_.back().last = object;
    runs_.back().end = number + 1;
}

void ElementNumbers::sort(const std::vector<ModelElement>& elements) {
    // The run that begins first comes last, to be taken off; what of it lies behind the beginning
    // of the next one goes back.
    const auto isLater = [](const Run& one, const Run& other) {
        return isBefore(other.first, one.first);
    };
    std::vector<Run> waiting = std::move(runs_);
    runs_.clear();
    std::make_heap(waiting.begin(), waiting.end(), isLater);
    while (!waiting.empty()) {
        std::pop_heap(waiting.begin(), waiting.end(), isLater);
        Run run = waiting.back();
        waiting.pop_back();
        if (!waiting.empty() && isBefore(waiting.front().first, run.last)) {
            const Number middle = firstFrom(elements, run.begin, run.end, waiting.front().first);
            waiting.push_back({elements[middle].get(), run.last, middle, run.end});
            std::push_heap(waiting.begin(), waiting.end(), isLater);
            run.last = elements[middle - 1].get();
            run.end = middle;
        }
        runs_.push_back(run);
    }
    runs_.shrink_to_fit();
}

ElementNumbers::Number ElementNumbers::find(const std::vector<ModelElement>& elements,
                                            const ModelElement& element) const noexcept {
    const memory::Object* const object = element.get();
    auto run = std::upper_bound(
        runs_.begin(), runs_.end(), object,
        [](const memory::Object* wanted, const Run& each) { return isBefore(wanted, each.first); });
    if (run == runs_.begin()) return none;
    --run;
    const Number found = firstFrom(elements, run->begin, run->end, object);
    return found != run->end && elements[found].get() == object ? found : none;
}

}  // namespace nuv::zero::xmi
