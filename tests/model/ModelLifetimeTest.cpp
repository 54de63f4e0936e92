#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <variant>
#include <vector>

#include "model/memory/Pins.h"
#include "model/memory/PropertyReader.h"
#include "tests/model/FailingAllocations.h"
#include "tests/model/Readings.h"
#include "tests/support/SmallStack.h"

namespace nuv::zero::test {
namespace {

using memory::Model;

/// Runs a case twice, the first time to make what is made once in a process; says how many
/// allocations of the second time are left.
template <class Case>
long leftBy(const Case& run) {
    run();
    const long before = liveAllocations();
    run();
    return liveAllocations() - before;
}

constexpr const char16_t* longText = u"a text longer than what fits into a slot";

/// A model with something of everything that a slot can hold.
void fill(const Blocks& m, Model& model) {
    const ModelElement b1 = model.create(m.block, longText);
    const ModelElement b2 = model.create(m.block, u"b2");
    const ModelElement p1 = model.create(m.port);
    model.set(b1, m.boss, b2);
    model.set(b2, m.boss, b1);
    model.add(b1, m.ports, p1);
    for (int i = 0; i < 20; ++i) model.add(b2, m.ports, p1);
    model.set(p1, m.owner, b1);
    model.set(b2, m.boss, b2);
    for (const char16_t* text : {u"x", longText}) model.add(b1, m.tags, text);
    for (const std::int64_t number : {std::int64_t{1}, INT64_MAX}) {
        model.add(b1, m.sizes, number);
        model.set(p1, m.size, number);
    }
    model.plant(b2, m.tags, many(m.port, Elements{p1, {}, b1}));
    model.plant(b2, m.name, single(m.port, std::u16string(longText)));
    model.plant(b2, m.sizes, single(m.port, p1));
}

TEST(ModelLifetimeTest, AModelFullOfCyclesLeaksNothing) {
    EXPECT_EQ(leftBy([] {
                  const Blocks m;
                  Model model;
                  fill(m, model);
              }),
              0);
}

TEST(ModelLifetimeTest, AModelWhoseElementsAndValuesOutliveItLeaksNothing) {
    EXPECT_EQ(leftBy([] {
                  const Blocks m;
                  std::vector<ModelElement> elements;
                  std::vector<Value> values;
                  {
                      Model model;
                      elements.push_back(model.create(m.block));
                      fill(m, model);
                      model.set(elements[0], m.ports, {model.create(m.port), model.create(m.port)});
                      values.push_back(access::read(elements[0], m.ports));
                      model.add(elements[0], m.ports, model.create(m.port));
                      values.push_back(access::read(elements[0], m.ports));
                      model.set(elements[0], m.boss, elements[0]);
                      values.push_back(access::read(elements[0], m.boss));
                      elements.clear();
                  }
                  EXPECT_EQ(values[0].asElements().size(), 2U);
                  EXPECT_EQ(values[1].asElements().size(), 3U);
                  EXPECT_EQ(values[2].asElement()->getClass(), m.block);
              }),
              0);
}

TEST(ModelLifetimeTest, TwoModelsThatReferToEachOtherLeakNothing) {
    EXPECT_EQ(leftBy([] {
                  const Blocks m;
                  auto first = std::make_unique<Model>();
                  auto second = std::make_unique<Model>();
                  ModelElement a = first->create(m.block, u"a");
                  const ModelElement b = second->create(m.block, u"b");
                  first->set(a, m.boss, b);
                  second->set(b, m.boss, a);
                  a = {};
                  first.reset();
                  const ModelElement unreachable = elementOf(b, m.boss);
                  EXPECT_EQ(unreachable->getClass(), m.block);
                  EXPECT_FALSE(elementOf(unreachable, m.boss)) << "its model is gone";
              }),
              0);
}

TEST(ModelLifetimeTest, ListsKeepTheElementsOfOtherModels) {
    EXPECT_EQ(
        leftBy([] {
            const Blocks m;
            Model model;
            const std::vector<ModelElement> blocks = {model.create(m.block), model.create(m.block),
                                                      model.create(m.block)};
            const ModelElement own = model.create(m.port);
            {
                Model other;
                const ModelElement foreign = other.create(m.port, u"p");
                model.add(blocks[0], m.ports, foreign);
                model.set(blocks[1], m.ports, {own, foreign, own});
                for (int i = 0; i < 4; ++i) model.add(blocks[2], m.ports, own);
                const Value before = access::read(blocks[2], m.ports);
                model.add(blocks[2], m.ports, foreign);
                model.add(blocks[2], m.ports, own);
                EXPECT_EQ(before.asElements(), Elements(4, own));
            }
            const ModelElement foreign = elementsOf(blocks[0], m.ports).at(0);
            EXPECT_EQ(foreign->getClass(), m.port);
            EXPECT_EQ(elementsOf(blocks[1], m.ports), (Elements{own, foreign, own}));
            EXPECT_EQ(elementsOf(blocks[2], m.ports), (Elements{own, own, own, own, foreign, own}));
        }),
        0);
}

// Alone, because a second list that keeps the element would hide that the first one does not.
TEST(ModelLifetimeTest, EachWayIntoAListKeepsAnElementOfAnotherModel) {
    struct Ground {
        const Blocks& m;
        Model& model;
        ModelElement block;
        ModelElement own;
    };
    using Way = void (*)(const Ground&, const ModelElement&);
    static constexpr auto addTo = [](const Ground& ground, const ModelElement& entry) {
        ground.model.add(ground.block, ground.m.ports, entry);
    };
    const Way ways[] = {
        [](const Ground& ground, const ModelElement& foreign) { addTo(ground, foreign); },
        [](const Ground& ground, const ModelElement& foreign) {
            ground.model.set(ground.block, ground.m.ports, Elements{foreign});
        },
        [](const Ground& ground, const ModelElement& foreign) {
            ground.model.set(ground.block, ground.m.ports, Elements{ground.own, foreign});
        },
        [](const Ground& ground, const ModelElement& foreign) {
            for (int i = 0; i < 3; ++i) addTo(ground, ground.own);
            addTo(ground, foreign);
        },
        [](const Ground& ground, const ModelElement& foreign) {
            addTo(ground, foreign);
            // The list is moved as it grows.
            for (int i = 0; i < 9; ++i) addTo(ground, ground.own);
        },
        [](const Ground& ground, const ModelElement& foreign) {
            addTo(ground, ground.own);
            addTo(ground, foreign);
            // The list is copied as long as somebody reads it.
            const Value before = access::read(ground.block, ground.m.ports);
            addTo(ground, ground.own);
            EXPECT_EQ(before.asElements(), (Elements{ground.own, foreign}));
        },
    };
    for (const Way way : ways) {
        EXPECT_EQ(leftBy([way] {
                      const Blocks m;
                      Model model;
                      const Ground ground{m, model, model.create(m.block), model.create(m.port)};
                      {
                          Model other;
                          way(ground, other.create(m.port));
                      }
                      int foreigners = 0;
                      for (const ModelElement& entry : elementsOf(ground.block, m.ports)) {
                          EXPECT_EQ(entry->getClass(), m.port);
                          if (!(entry == ground.own)) ++foreigners;
                      }
                      EXPECT_EQ(foreigners, 1);
                  }),
                  0)
            << "way " << std::find(std::begin(ways), std::end(ways), way) - std::begin(ways);
    }
}

TEST(ModelLifetimeTest, ASinglePlantedElementOfAnotherModelIsKeptByItsSlotAndByItsViews) {
    const Blocks m;
    Model model;
    const ModelElement block = model.create(m.block);
    {
        Model other;
        model.plant(block, m.boss, single(m.block, other.create(m.block)));
    }
    memory::ElementView view =
        block->view(m.boss, memory::Object::ReflectionPrivateTag::PUBLIC_ACCESS);
    EXPECT_EQ(view[0]->getClass(), m.block);
    model.clear(block, m.boss);
    EXPECT_EQ(view[0]->getClass(), m.block);
}

TEST(ModelLifetimeTest, ListsThatReadersViewedAreFreedWhenTheModelIsNoLongerPinned) {
    const Blocks m;
    Model model;
    const ModelElement block = model.create(m.block);
    const ModelElement port = model.create(m.port);
    const memory::PropertyReader reader(m.block, m.ports);
    model.set(block, m.ports, Elements{port, port});
    EXPECT_EQ(leftBy([&] {
                  memory::Pins pins;
                  pins.pin(block);
                  for (int i = 0; i < 5; ++i) {
                      const memory::ElementView view = reader.read(block, m.ports);
                      model.set(block, m.ports, Elements{port, port});
                      EXPECT_EQ(view.size(), 2U);
                  }
              }),
              0);
}

TEST(ModelLifetimeTest, TextsThatSomebodyReadsStayWhenTheirListGrows) {
    const Blocks m;
    Model model;
    const ModelElement block = model.create(m.block);
    for (const char16_t* text : {u"a", longText}) model.add(block, m.tags, text);
    const Value before = access::read(block, m.tags);
    for (int i = 0; i < 5; ++i) model.add(block, m.tags, u"more");
    EXPECT_EQ(std::get<std::vector<std::u16string>>(before.content()),
              (std::vector<std::u16string>{u"a", longText}));
}

TEST(ModelLifetimeTest, AViewOfAReaderKeepsTheElementOfAnotherModelThatTheSlotNoLongerHolds) {
    const Blocks m;
    Model model;
    const ModelElement block = model.create(m.block);
    // As every reader does: what it reads of a pinned model is not counted.
    memory::Pins pins;
    pins.pin(block);
    memory::ElementView single;
    memory::ElementView list;
    {
        // Of two models, because each keeps the whole model that it is of.
        Model other;
        Model another;
        model.set(block, m.boss, other.create(m.block));
        model.add(block, m.ports, another.create(m.port));
        single = memory::PropertyReader(m.block, m.boss).read(block, m.boss);
        list = memory::PropertyReader(m.block, m.ports).read(block, m.ports);
        model.clear(block, m.boss);
        model.clear(block, m.ports);
    }
    EXPECT_EQ(single[0]->getClass(), m.block);
    EXPECT_EQ(list[0]->getClass(), m.port);
}

TEST(ModelLifetimeTest, AChainOfMillionsOfElementsIsDestroyedWithoutRecursion) {
    const Blocks m;
    onSmallStack([&m] {
        Model model;
        ModelElement top = model.create(m.block);
        ModelElement bottom = top;
        for (int i = 1; i < deepModelSize; ++i) {
            ModelElement next = model.create(m.block);
            model.set(bottom, m.boss, next);
            bottom = std::move(next);
        }
        EXPECT_EQ(model.size(), static_cast<std::size_t>(deepModelSize));
    });
}

TEST(ModelLifetimeTest, LettingGoOfTheTopOfAChainAfterItsModelDoesNotRecurse) {
    const Blocks m;
    onSmallStack([&m] {
        auto model = std::make_unique<Model>();
        ModelElement top = model->create(m.block);
        for (int i = 1; i < 100'000; ++i) {
            const ModelElement above = model->create(m.block);
            model->add(above, m.ports, model->create(m.port));
            model->set(above, m.boss, top);
            top = above;
        }
        model.reset();
        top = {};
    });
}

TEST(ModelLifetimeTest, AHandleThatOutlivesItsModelReadsAsNeverSet) {
    ModelElement last;
    const Blocks m;
    {
        Model model;
        last = model.create(m.block, u"b");
        model.add(last, m.ports, model.create(m.port));
        model.set(last, m.boss, last);
    }
    EXPECT_EQ(last->getClass(), m.block);
    EXPECT_FALSE(access::read(last, m.name).isSet());
    EXPECT_FALSE(elementOf(last, m.boss));
    EXPECT_TRUE(elementsOf(last, m.ports).empty());
}

TEST(ModelLifetimeTest, AHandleKeepsClassesAndPropertiesAfterModelAndMetamodel) {
    ModelElement last;
    {
        const Blocks m;
        Model model;
        last = model.create(m.block, u"b");
    }
    EXPECT_EQ(last->getClass()->getName(), u"Block");
    const meta::Property ports = last->getClass()->getProperty(u"ports");
    EXPECT_EQ(ports->getOwningType()->getName(), u"Block");
    EXPECT_EQ(last->getClass()->getAllClassProperties().size(), 5U);
    EXPECT_TRUE(elementsOf(last, ports).empty());
}

TEST(ModelLifetimeTest, AnEditLeavesTheListToThoseWhoHoldItAndThenChangesInPlace) {
    const Blocks m;
    Model model;
    const ModelElement b1 = model.create(m.block);
    const ModelElement p1 = model.create(m.port);
    const auto addsInPlace = [&] { return succeedsWith(0, [&] { model.add(b1, m.ports, p1); }); };
    model.set(b1, m.ports, {p1, p1, p1});
    model.add(b1, m.ports, p1);
    EXPECT_TRUE(addsInPlace()) << "nobody holds the list, and it has room";
    Value held = access::read(b1, m.ports);
    EXPECT_FALSE(addsInPlace());
    model.add(b1, m.ports, p1);
    EXPECT_EQ(held.asElements().size(), 5U);
    EXPECT_EQ(elementsOf(b1, m.ports).size(), 6U);
    EXPECT_TRUE(addsInPlace()) << "what is held is another list now";
    EXPECT_EQ(held.asElements().size(), 5U);
}

TEST(ModelLifetimeTest, DroppingAListsLastHolderReleasesItsElements) {
    EXPECT_EQ(leftBy([] {
                  const Blocks m;
                  Value last;
                  {
                      Model model;
                      const ModelElement b1 = model.create(m.block);
                      for (int i = 0; i < 1000; ++i) {
                          model.add(b1, m.ports, model.create(m.port));
                      }
                      last = access::read(b1, m.ports);
                  }
                  EXPECT_EQ(last.asElements().size(), 1000U);
                  last = {};
              }),
              0);
}

TEST(ModelLifetimeTest, ThreadsMayDropValuesWhileTheirModelIsEditedAndDestroyed) {
    const Blocks m;
    for (int round = 0; round < 50; ++round) {
        std::optional<Model> model(std::in_place);
        const ModelElement b1 = model->create(m.block);
        model->set(b1, m.ports, {model->create(m.port), model->create(m.port)});
        std::vector<std::thread> threads;
        for (int i = 0; i < 2; ++i) {
            threads.emplace_back([value = access::read(b1, m.ports)]() mutable {
                const Elements elements = value.asElements();
                value = {};
                for (const ModelElement& element : elements) {
                    EXPECT_TRUE(element->getClass());
                }
            });
        }
        model->add(b1, m.ports, model->create(m.port));
        model.reset();
        for (std::thread& thread : threads) thread.join();
    }
}

}  // namespace
}  // namespace nuv::zero::test
