#include "model/memory/Pins.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "model/memory/Storage.h"
#include "tests/model/Readings.h"

namespace nuv::zero::test {
namespace {

using memory::Model;

/// Destroyed when its last user lets go, which is what the tests below watch.
class WatchedStorage final : public memory::Storage {
  public:
    explicit WatchedStorage(bool& alive) : alive_(alive) { alive_ = true; }

  private:
    ~WatchedStorage() override { alive_ = false; }
    bool& alive_;
};

TEST(PinsTest, KeepAStorageUntilTheLastOfThemIsGone) {
    bool alive = false;
    auto* storage = new WatchedStorage(alive);
    {
        memory::Pins pins;
        pins.pin(storage);
        pins.pin(storage);
        EXPECT_EQ(pins.storages(), std::vector<memory::Storage*>{storage});
        memory::Pins copy = pins;
        storage->release();
        const memory::Pins moved = std::move(pins);
        EXPECT_TRUE(moved.holds(storage));
        EXPECT_TRUE(pins.storages().empty());  // NOLINT(bugprone-use-after-move)
        pins.pin(static_cast<memory::Storage*>(nullptr));
        copy = memory::Pins();
        EXPECT_TRUE(alive);
    }
    EXPECT_FALSE(alive);
}

TEST(PinsTest, HoldManyStoragesOnceEach) {
    const Blocks m;
    std::vector<Model> models(20);
    std::vector<ModelElement> elements;
    for (Model& model : models) elements.push_back(model.create(m.block));
    memory::Pins pins;
    for (int round = 0; round < 2; ++round) {
        for (const ModelElement& element : elements) pins.pin(element);
    }
    EXPECT_EQ(pins.storages().size(), models.size());
    for (const ModelElement& element : elements) EXPECT_TRUE(pins.holds(element->storage()));
    EXPECT_FALSE(pins.holds(m.block->storage()));
    pins.pin(ModelElement());
    EXPECT_EQ(pins.storages().size(), models.size());
}

TEST(PinsTest, KeepElementsReadableAfterTheirModel) {
    const Blocks m;
    memory::Pins pins;
    ModelElement lent;
    {
        Model model;
        const ModelElement b1 = model.create(m.block, u"b1");
        pins.pin(b1);
        lent = memory::Lending::lend<ModelElement>(b1.get());
    }
    EXPECT_FALSE(access::read(lent, m.name).isSet());
    ModelElement kept = lent;
    memory::Lending::forget(lent);
    pins = memory::Pins();
    EXPECT_EQ(kept->getClass(), m.block) << "a counted copy of a lent handle outlives the pins";
    kept = {};
}

}  // namespace
}  // namespace nuv::zero::test
