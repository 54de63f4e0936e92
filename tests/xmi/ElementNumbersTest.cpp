#include "xmi/ElementNumbers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "model/memory/Model.h"

namespace nuv::zero::xmi {
namespace {

class ElementNumbersTest : public testing::Test {
  protected:
    std::vector<ModelElement> make(std::size_t count) {
        std::vector<ModelElement> made;
        for (std::size_t i = 0; i < count; ++i) made.push_back(model_.create(class_));
        return made;
    }

    /// Every element has its number, and the others have none.
    static void expectNumbers(const std::vector<ModelElement>& elements,
                              const std::vector<ModelElement>& others) {
        ElementNumbers numbers;
        ElementNumbers::Number next = 0;
        for (const ModelElement& each : elements) numbers.add(each, next++);
        numbers.sort(elements);
        for (next = 0; next < elements.size(); ++next) {
            ASSERT_EQ(numbers.find(elements, elements[next]), next);
        }
        for (const ModelElement& each : others) {
            ASSERT_EQ(numbers.find(elements, each), ElementNumbers::none);
        }
    }

    memory::Metamodel metamodel_{u"m"};
    meta::Class class_ = metamodel_.addClass(u"C");
    memory::Model model_;
};

TEST_F(ElementNumbersTest, AreFoundInTheOrderOfTheAddresses) {
    const auto others = make(10);
    const auto elements = make(10'000);
    expectNumbers(elements, others);
    expectNumbers({}, others);
}

TEST_F(ElementNumbersTest, AreFoundInAnyOrder) {
    std::mt19937 random(20260301);
    std::vector<ModelElement> elements = make(3'000);
    std::shuffle(elements.begin(), elements.end(), random);
    const std::vector<ModelElement> others(elements.begin() + 2'000, elements.end());
    elements.resize(2'000);
    expectNumbers(elements, others);
}

/// Runs of rising addresses that reach across each other, as chunks of memory give them.
TEST_F(ElementNumbersTest, AreFoundWhereRunsReachIntoEachOther) {
    const std::vector<ModelElement> all = make(900);
    std::vector<ModelElement> elements;
    for (const std::size_t first : {2U, 0U, 1U}) {
        for (std::size_t i = first; i < 600; i += 3) elements.push_back(all[i]);
    }
    expectNumbers(elements, {all.begin() + 600, all.end()});
}

}  // namespace
}  // namespace nuv::zero::xmi
