#include "tests/small_worlds/SmallWorlds.h"

#include <algorithm>
#include <numeric>

namespace nuv::zero::small_worlds {

namespace {

using oracle::Kind;
using oracle::none;
using oracle::PlainWorld;
using List = std::vector<int>;

/// All lists of up to two entries, each null or one of so many elements.
std::vector<List> listsOver(int elements) {
    std::vector<List> lists{{}};
    for (int first = none; first < elements; ++first) lists.push_back({first});
    for (int first = none; first < elements; ++first) {
        for (int second = none; second < elements; ++second) lists.push_back({first, second});
    }
    return lists;
}

/// Null or one of so many elements.
std::vector<List> singlesOver(int elements) {
    std::vector<List> singles;
    for (int target = none; target < elements; ++target) singles.push_back({target});
    return singles;
}

/// The values of both properties of each element.
struct SceneValues {
    std::vector<const List*> x;
    std::vector<const List*> y;
};

/// Whether a walk from the inputs meets all elements, and meets them by their numbers. Elements are
/// met as inputs, then as targets of the elements met before, `x` first.
bool isMetInOrder(int elements, const List& inputs, const SceneValues& values, bool followsY) {
    int met = 0;
    const auto meets = [&met](const List& targets) {
        return std::all_of(targets.begin(), targets.end(), [&met](int target) {
            if (target == met) ++met;
            return target < met;
        });
    };
    if (!meets(inputs)) return false;
    for (int element = 0; element < met; ++element) {
        const auto index = static_cast<std::size_t>(element);
        if (!meets(*values.x[index])) return false;
        if (followsY && !meets(*values.y[index])) return false;
    }
    return met == elements;
}

PlainWorld worldWith(bool yIsList) {
    PlainWorld world;
    world.classes.push_back({u"m::C", {}});
    world.properties.resize(2);
    for (oracle::PropertyDefinition& property : world.properties) {
        property.owner = 0;
        property.type = 0;
    }
    world.properties[propertyX].name = u"x";
    world.properties[propertyX].upperBound = -1;
    world.properties[propertyX].composite = true;
    world.properties[propertyY].name = u"y";
    world.properties[propertyY].upperBound = yIsList ? -1 : 1;
    return world;
}

/// Each number in another place, as often as there are ways.
List arrangement(int elements, std::uint64_t number) {
    List places(static_cast<std::size_t>(elements));
    std::iota(places.begin(), places.end(), 0);
    for (std::uint64_t turn = number % 6; turn > 0; --turn) {
        std::next_permutation(places.begin(), places.end());
    }
    return places;
}

Scene makeScene(int elements, const List& inputs, const SceneValues& values, bool yIsList,
                std::uint64_t number) {
    const List places = arrangement(elements, number);
    const auto placed = [&places](const List& list) {
        List result;
        for (const int element : list) {
            result.push_back(element == none ? none : places[static_cast<std::size_t>(element)]);
        }
        return result;
    };
    Scene scene{worldWith(yIsList), placed(inputs)};
    scene.world.elements.assign(static_cast<std::size_t>(elements), 0);
    for (int element = 0; element < elements; ++element) {
        const auto index = static_cast<std::size_t>(element);
        for (const int property : {propertyX, propertyY}) {
            const List& list = *(property == propertyX ? values.x : values.y)[index];
            oracle::ValueDefinition value;
            value.type = 0;
            value.many = property == propertyX || yIsList;
            value.payload = oracle::ValueDefinition::Payload::Elements;
            value.elements = placed(list);
            scene.world.values[{places[index], property}] = value;
        }
    }
    return scene;
}

/// Goes through all scenes of one number of elements.
class Enumeration {
  public:
    Enumeration(int elements, bool yIsList, bool isForComposition)
        : elements_(elements),
          isForComposition_(isForComposition),
          lists_(listsOver(elements)),
          ys_(yIsList ? lists_ : singlesOver(elements)),
          digits_(2 * static_cast<std::size_t>(elements), 0) {
        for (int element = 0; element < elements; ++element) loops_.push_back({element});
        values_.x.assign(static_cast<std::size_t>(elements), &lists_.front());
        values_.y.assign(static_cast<std::size_t>(elements), &ys_.front());
        if (!isForComposition) return;
        for (std::size_t element = 0; element < loops_.size(); ++element) {
            values_.y[element] = &loops_[element];
        }
    }

    /// False when it was told to stop.
    template <class Use>
    bool run(Use&& use) {
        do {
            for (const List& inputs : lists_) {
                if (isMetInOrder(elements_, inputs, values_, !isForComposition_) &&
                    !use(inputs, values_)) {
                    return false;
                }
            }
        } while (next());
        return true;
    }

  private:
    /// The next model; false behind the last.
    bool next() {
        for (std::size_t place = 0; place < digits_.size(); ++place) {
            const std::size_t element = place / 2;
            const bool isY = place % 2 == 1;
            if (isY && isForComposition_) continue;
            const std::vector<List>& choices = isY ? ys_ : lists_;
            digits_[place] = (digits_[place] + 1) % choices.size();
            (isY ? values_.y : values_.x)[element] = &choices[digits_[place]];
            if (digits_[place] != 0) return true;
        }
        return false;
    }

    int elements_;
    bool isForComposition_;
    std::vector<List> lists_;
    std::vector<List> ys_;
    std::vector<List> loops_;
    std::vector<std::size_t> digits_;
    SceneValues values_;
};

}  // namespace

void forEachScene(const Family& family, const UseScene& use) {
    for (const bool isForComposition : {false, true}) {
        if (isForComposition && !family.withComposition) continue;
        const std::vector<Kind> kinds = isForComposition
                                            ? std::vector{Kind::Composition}
                                            : std::vector{Kind::Additive, Kind::Subtractive};
        for (int elements = 0; elements <= family.mostElements; ++elements) {
            Enumeration all(elements, family.yIsList, isForComposition);
            const bool goesOn = all.run([&](const List& inputs, const SceneValues& values) {
                return use(kinds, [&](std::uint64_t number) {
                    return makeScene(elements, inputs, values, family.yIsList, number);
                });
            });
            if (!goesOn) return;
        }
    }
}

std::string describe(const Scene& scene) {
    std::string text = oracle::describe(scene.world) + "inputs";
    for (const int input : scene.inputs) text += ' ' + oracle::elementName(input);
    return text + '\n';
}

}  // namespace nuv::zero::small_worlds
