#include "benchmarks/Baselines.h"

#include <queue>
#include <unordered_set>
#include <vector>

#include "benchmarks/ClassLists.h"
#include "benchmarks/RawRead.h"
#include "benchmarks/VisitedSets.h"

namespace nuv::zero::benchmarks {
namespace {

using memory::Object;
using memory::PropertyObject;

/// Where a depth-first loop stands in the links of one element.
class Frame {
  public:
    Frame(const Object* from, const PropertyList& list)
        : element(from), next_(list.data()), end_(list.data() + list.size()) {}

    /// The next target; null when there is none. Then `property` is the one that leads to it.
    const Object* step() {
        while (index_ == values_.size()) {
            if (next_ == end_) return nullptr;
            property = *next_;
            values_ = readRaw(*element, *property);
            ++next_;
            index_ = 0;
        }
        return values_[index_++];
    }

    const Object* element;
    const PropertyObject* property = nullptr;

  private:
    const PropertyObject* const* next_;
    const PropertyObject* const* end_;
    RawValues values_;
    std::size_t index_ = 0;
};

template <bool postOrder, class VisitedSet, class Report>
void walkDepthFirst(const std::vector<ModelElement>& roots, ClassLists& lists,
                    const Report& report) {
    VisitedSet visited;
    std::vector<Frame> stack;
    for (const ModelElement& root : roots) {
        if (!visited.insert(root.get())) continue;
        if (!postOrder) report(nullptr, nullptr, root.get(), true);
        stack.emplace_back(root.get(), lists.of(*root.get()));
        while (!stack.empty()) {
            Frame& top = stack.back();
            const Object* target = top.step();
            if (target == nullptr) {
                const Object* done = top.element;
                stack.pop_back();
                if (!postOrder) continue;
                if (stack.empty()) {
                    report(nullptr, nullptr, done, true);
                } else {
                    report(stack.back().element, stack.back().property, done, true);
                }
            } else if (visited.insert(target)) {
                if (!postOrder) report(top.element, top.property, target, true);
                stack.emplace_back(target, lists.of(*target));
            } else {
                report(top.element, top.property, target, false);
            }
        }
    }
}

struct QueuedLink {
    const Object* source;
    const PropertyObject* property;
    const Object* target;
    bool cascades;
};

template <class VisitedSet, class Report>
void walkBreadthFirst(const std::vector<ModelElement>& roots, ClassLists& lists,
                      const Report& report) {
    VisitedSet visited;
    std::queue<QueuedLink> queue;
    for (const ModelElement& root : roots) {
        if (!visited.insert(root.get())) continue;
        report(nullptr, nullptr, root.get(), true);
        queue.push({nullptr, nullptr, root.get(), true});
        while (!queue.empty()) {
            const QueuedLink front = queue.front();
            queue.pop();
            if (!front.cascades) {
                report(front.source, front.property, front.target, false);
                continue;
            }
            for (const PropertyObject* property : lists.of(*front.target)) {
                const RawValues values = readRaw(*front.target, *property);
                for (std::size_t i = 0; i < values.size(); ++i) {
                    const bool isNew = visited.insert(values[i]);
                    if (isNew) report(front.target, property, values[i], true);
                    queue.push({front.target, property, values[i], isNew});
                }
            }
        }
    }
}

/// Calls `report(source, property, target, cascades)` for each link of one walk.
template <class VisitedSet, class Report>
void walkOnce(const Walk& walk, const Report& report) {
    const bool withPseudoLinks = walk.pseudoLinks != traversal::ResultPolicy::WalkOnly;
    const auto reportWanted = [&](const Object* source, const PropertyObject* property,
                                  const Object* target, bool cascades) {
        if (property != nullptr || withPseudoLinks) report(source, property, target, cascades);
    };
    ClassLists lists(walk);
    switch (walk.order) {
        case traversal::Algo::BreadthFirst:
            return walkBreadthFirst<VisitedSet>(walk.shape->roots, lists, reportWanted);
        case traversal::Algo::DepthFirstPostOrder:
            return walkDepthFirst<true, VisitedSet>(walk.shape->roots, lists, reportWanted);
        case traversal::Algo::DepthFirstPreOrder:
            return walkDepthFirst<false, VisitedSet>(walk.shape->roots, lists, reportWanted);
    }
}

template <class VisitedSet>
Checksum walkAll(const Walk& walk) {
    Checksum checksum;
    for (std::size_t i = 0; i < walk.shape->walks; ++i) {
        walkOnce<VisitedSet>(
            walk, [&](const Object* source, const PropertyObject* property, const Object* target,
                      bool cascades) { checksum.add(source, property, target, cascades); });
    }
    return checksum;
}

/// Leaves out what a uniqueness mode leaves out.
class Repeats {
  public:
    explicit Repeats(traversal::UniquenessMode mode) : mode_(mode) {}

    bool isNew(const Object* source, const PropertyObject* property, const Object* target) {
        switch (mode_) {
            case traversal::UniquenessMode::UniqueElements:
                return seen_.insert({nullptr, nullptr, target}).second;
            case traversal::UniquenessMode::UniqueLinks:
                return isNewLink({source, property, target});
            case traversal::UniquenessMode::NoUniqueness:
                break;
        }
        return true;
    }

  private:
    struct Key {
        const Object* source;
        const PropertyObject* property;
        const Object* target;
        friend bool operator==(const Key&, const Key&) = default;
    };
    struct Hash {
        std::size_t operator()(const Key& key) const noexcept {
            Checksum checksum;
            checksum.add(key.source, key.property, key.target, true);
            return static_cast<std::size_t>(checksum.sum());
        }
    };

    bool isNewLink(const Key& link) {
        if (!seen_.insert(link).second) return false;
        if (link.property == nullptr) return true;
        const PropertyObject* back = link.property->getOpposite().get();
        return back == nullptr || seen_.insert({link.target, back, link.source}).second;
    }

    traversal::UniquenessMode mode_;
    std::unordered_set<Key, Hash> seen_;
};

}  // namespace

std::string_view nameOf(Visited visited) {
    switch (visited) {
        case Visited::Flat:
            return "flat set";
        case Visited::Node:
            return "std::unordered_set";
        case Visited::Mark:
            break;
    }
    return "mark in the element";
}

Checksum walkByHand(const Walk& walk, Visited visited) {
    switch (visited) {
        case Visited::Flat:
            return walkAll<FlatSet>(walk);
        case Visited::Node:
            return walkAll<NodeSet>(walk);
        case Visited::Mark:
            break;
    }
    return walkAll<MarkInElement>(walk);
}

Checksum expectedOf(const Walk& walk) {
    Checksum checksum;
    for (std::size_t i = 0; i < walk.shape->walks; ++i) {
        Repeats repeats(walk.uniqueness);
        walkOnce<NodeSet>(walk, [&](const Object* source, const PropertyObject* property,
                                    const Object* target, bool cascades) {
            if (repeats.isNew(source, property, target)) {
                checksum.add(source, property, target, cascades);
            }
        });
    }
    return checksum;
}

Checksum expectedElementsOf(const Walk& walk) {
    Checksum checksum;
    for (std::size_t i = 0; i < walk.shape->walks; ++i) {
        walkOnce<NodeSet>(
            walk, [&](const Object*, const PropertyObject*, const Object* target, bool cascades) {
                if (cascades) checksum.add(nullptr, nullptr, target, true);
            });
    }
    return checksum;
}

void clearMarks(const Shape& shape) {
    for (const ModelElement& element : shape.elements) InnerMark::clear(*element.get());
}

}  // namespace nuv::zero::benchmarks
