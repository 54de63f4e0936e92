#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/model/Blocks.h"
#include "tests/support/Threads.h"

/// Meant to be run under a thread sanitizer too.
namespace nuv::zero::test {
namespace {

constexpr std::size_t threadCount = 6;
constexpr int rounds = 100;

TEST(MetamodelThreadsTest, MetamodelsThatExtendOneBaseAreMadeAndDroppedWhileTheBaseIsRead) {
    const Blocks m;
    std::vector<std::u16string> found(threadCount);
    onThreads(threadCount, [&](std::size_t i) {
        for (int round = 0; round < rounds; ++round) {
            memory::Metamodel user(u"user");
            const meta::Class special = user.addClass(u"Special", {m.block});
            const meta::Property more = user.addProperty(special, u"more", m.port);
            found[i].clear();
            for (const meta::Property& each : special->getAllClassProperties()) {
                found[i] += each->getName() + u' ';
            }
            memory::Model model;
            const ModelElement element = model.create(special, u"s");
            model.set(element, more, model.create(m.port));
            model.add(element, m.ports, elementOf(element, more));
        }
    });
    EXPECT_EQ(found, std::vector<std::u16string>(threadCount, found[0]));
    EXPECT_NE(found[0].find(u"more"), std::u16string::npos);
    EXPECT_NE(found[0].find(u"tags"), std::u16string::npos);
}

TEST(MetamodelThreadsTest, ModelsThatReferToOneAnotherAreDroppedOnAllThreadsAtOnce) {
    for (int round = 0; round < rounds; ++round) {
        std::vector<std::unique_ptr<memory::Model>> models;
        std::vector<ModelElement> elements;
        std::vector<std::u16string> names(threadCount);
        {
            const Blocks m;
            for (std::size_t i = 0; i < threadCount; ++i) {
                models.push_back(std::make_unique<memory::Model>());
                elements.push_back(models.back()->create(m.block));
            }
            for (std::size_t i = 0; i < threadCount; ++i) {
                models[i]->set(elements[i], m.boss, elements[(i + 1) % threadCount]);
            }
        }
        onThreads(threadCount, [&](std::size_t i) {
            models[i].reset();
            const meta::Class type = elements[i]->getClass();
            elements[i] = ModelElement();
            names[i] = type->getName();
        });
        EXPECT_EQ(names, std::vector<std::u16string>(threadCount, u"Block"));
    }
}

TEST(MetamodelThreadsTest, ValuesOfOneModelAreReadCopiedAndDroppedOnAllThreads) {
    const Blocks m;
    memory::Model model;
    const ModelElement b = model.create(m.block, u"b");
    for (int i = 0; i < 100; ++i) model.add(b, m.ports, model.create(m.port));
    model.set(b, m.boss, b);
    const Value shared = access::read(b, m.ports);
    std::vector<std::size_t> found(threadCount);
    onThreads(threadCount, [&](std::size_t i) {
        for (int round = 0; round < rounds; ++round) {
            const Value own = access::read(b, m.ports);
            const Value copy = shared;
            const Value copyOfOwn = own;
            found[i] += access::toElements(copy).size() + access::toElements(copyOfOwn).size() +
                        (elementOf(b, m.boss) == b ? 1U : 0U);
        }
    });
    EXPECT_EQ(found, std::vector<std::size_t>(threadCount, 201U * rounds));
}

}  // namespace
}  // namespace nuv::zero::test
