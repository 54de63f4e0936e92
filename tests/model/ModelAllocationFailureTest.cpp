// Every allocation of every operation on models and metamodels fails once.

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <variant>
#include <vector>

#include "model/memory/Pins.h"
#include "tests/model/Blocks.h"
#include "tests/model/FailingAllocations.h"
#include "tests/support/Points.h"

namespace nuv::zero::test {
namespace {

using Texts = std::vector<std::u16string>;

/// Prints what a value holds; elements by their class.
struct Print {
    std::string operator()(std::monostate) const { return "nothing"; }
    std::string operator()(const ModelElement& element) const {
        return element ? text::toUtf8(element->getClass()->getName()) : "null";
    }
    std::string operator()(const std::u16string& content) const { return text::toUtf8(content); }
    std::string operator()(std::int64_t number) const { return std::to_string(number); }
    template <class Entry>
    std::string operator()(const std::vector<Entry>& list) const {
        std::string out = "[";
        for (const Entry& entry : list) out += (*this)(entry) + " ";
        return out + "]";
    }
};

/// A model and two metamodels on which every operation has something to do.
struct ScarceModel {
    Blocks m;
    memory::Metamodel other{u"other"};
    meta::Class foreign = other.addClass(u"Foreign");
    meta::Property note = other.addProperty(foreign, u"note", meta::StandardTypes::stringMeta());
    meta::Class special = m.metamodel.addClass(u"Special", {m.block});
    memory::Model model;
    ModelElement b1 = model.create(m.block, u"b1");
    ModelElement p1 = model.create(m.port, u"p1");
    meta::Property late = m.metamodel.addProperty(m.block, u"late", m.port, memory::unbounded);
    Value held;

    ScarceModel() {
        model.set(b1, m.ports, Elements{p1});
        model.set(b1, m.tags, Texts{u"shared"});
        held = access::read(b1, m.tags);
    }

    /// Everything that can be read.
    std::string state() const {
        std::ostringstream out;
        for (const meta::Class& type : m.metamodel.classes()) {
            out << text::toUtf8(type->getQualifiedName()) << '(';
            for (const meta::Class& super : type->getSuperclasses()) {
                out << text::toUtf8(super->getName()) << ' ' << type->isKindOf(*super.get());
            }
            out << ')';
            for (const meta::Property& property : type->getAllClassProperties()) {
                out << ' ' << text::toUtf8(property->getName()) << type->hasProperty(property);
                if (property->getOpposite()) {
                    out << '/' << text::toUtf8(property->getOpposite()->getName());
                }
            }
            out << '\n';
        }
        out << special->hasProperty(note) << special->isKindOf(*foreign.get()) << model.size();
        for (const ModelElement& element : {b1, p1}) {
            for (const meta::Property& property : element->getClass()->getAllClassProperties()) {
                out << ' ' << text::toUtf8(property->getName()) << '='
                    << std::visit(Print(), access::read(element, property).content());
            }
        }
        return out.str();
    }
};

struct ScarceOperation {
    const char* name;
    std::function<void(ScarceModel&)> run;
};

const std::vector<ScarceOperation>& operations() {
    using W = ScarceModel&;
    static const std::vector<ScarceOperation> all = {
        {"AddClass",
         [](W w) {
             w.m.metamodel.addClass(u"New", {w.m.block, w.m.port});
         }},
        {"AddClassUnderAForeignOne", [](W w) { w.m.metamodel.addClass(u"New", {w.foreign}); }},
        {"AddSuperclass", [](W w) { w.m.metamodel.addSuperclass(w.m.block, w.m.port); }},
        {"AddForeignSuperclass", [](W w) { w.m.metamodel.addSuperclass(w.m.named, w.foreign); }},
        {"AddPrimitive",
         [](W w) { w.m.metamodel.addPrimitive(u"m::T", memory::TypeObject::Kind::Text); }},
        {"AddProperty", [](W w) { w.m.metamodel.addProperty(w.m.named, u"new", w.m.port); }},
        {"AddPropertyOfAForeignType",
         [](W w) { w.m.metamodel.addProperty(w.m.named, u"new", w.foreign); }},
        {"SetOpposites", [](W w) { w.m.metamodel.setOpposites(w.m.ports, w.m.owner); }},
        {"Create", [](W w) { w.model.create(w.m.block); }},
        {"CreateOfAForeignClass", [](W w) { w.model.create(w.foreign); }},
        {"CreateNamed", [](W w) { w.model.create(w.m.block, u"a name longer than a few bytes"); }},
        {"SetElement", [](W w) { w.model.set(w.b1, w.m.boss, w.b1); }},
        {"SetNullElement", [](W w) { w.model.set(w.b1, w.m.boss, ModelElement()); }},
        {"SetText", [](W w) { w.model.set(w.b1, w.m.name, u"a name longer than a few bytes"); }},
        {"SetNumber", [](W w) { w.model.set(w.p1, w.m.size, 5); }},
        {"SetElements",
         [](W w) {
             w.model.set(w.b1, w.m.ports, Elements{w.p1, w.p1});
         }},
        {"SetLateElements", [](W w) { w.model.set(w.b1, w.late, Elements{w.p1}); }},
        {"SetTexts", [](W w) { w.model.set(w.b1, w.m.tags, Texts{u"x"}); }},
        {"AddFirst", [](W w) { w.model.add(w.b1, w.m.sizes, 1); }},
        {"AddFirstLate", [](W w) { w.model.add(w.b1, w.late, w.p1); }},
        {"AddInPlace", [](W w) { w.model.add(w.b1, w.m.ports, w.p1); }},
        {"AddToAHeldList", [](W w) { w.model.add(w.b1, w.m.tags, u"y"); }},
        {"Unset", [](W w) { w.model.unset(w.b1, w.m.ports); }},
        {"UnsetLate", [](W w) { w.model.unset(w.b1, w.late); }},
        {"Clear", [](W w) { w.model.clear(w.b1, w.m.ports); }},
        {"Plant", [](W w) { w.model.plant(w.b1, w.m.boss, many(w.m.integer, Texts{u"x"})); }},
    };
    return all;
}

TEST(ModelAllocationFailureTest, EveryOperationChangesNothingThenAndCanBeRepeated) {
    long points = 0;
    for (const ScarceOperation& operation : operations()) {
        SCOPED_TRACE(operation.name);
        ScarceModel untouched;
        const std::string before = untouched.state();
        operation.run(untouched);
        const std::string after = untouched.state();

        // With no memory left at all, and with too little for one request only.
        for (const auto& runs : {succeedsWith, succeedsWithout}) {
            long allowed = 0;
            for (bool succeeded = false; !succeeded; ++allowed) {
                SCOPED_TRACE(allowed);
                ASSERT_LT(allowed, 1000);
                const long live = liveAllocations();
                {
                    ScarceModel world;
                    succeeded = runs(allowed, [&] { operation.run(world); });
                    if (!succeeded) {
                        ++points;
                        EXPECT_EQ(world.state(), before);
                        operation.run(world);
                    }
                    EXPECT_EQ(world.state(), after);
                }
                EXPECT_EQ(liveAllocations(), live) << "leaked";
            }
        }
    }
    recordPoints(points, "failing allocations in operations on models and metamodels");
}

TEST(ModelAllocationFailureTest, AWholeModelThatIsNotFinishedLeaksNothing) {
    const std::string expected = ScarceModel().state();
    long points = 0;
    for (const auto& runs : {succeedsWith, succeedsWithout}) {
        long allowed = 0;
        for (bool succeeded = false; !succeeded; ++allowed) {
            ASSERT_LT(allowed, 10'000);
            const long live = liveAllocations();
            {
                std::unique_ptr<ScarceModel> world;
                succeeded = runs(allowed, [&] { world = std::make_unique<ScarceModel>(); });
                EXPECT_EQ(world != nullptr, succeeded);
                if (succeeded) {
                    EXPECT_EQ(world->state(), expected);
                }
            }
            EXPECT_EQ(liveAllocations(), live) << "leaked at " << allowed;
        }
        points += allowed - 1;
    }
    recordPoints(points, "failing allocations in building whole models");
}

TEST(PinsAllocationFailureTest, PinsNothingThen) {
    const ScarceModel world;
    memory::Pins pins;
    EXPECT_FALSE(succeedsWith(0, [&] { pins.pin(world.b1); }));
    EXPECT_TRUE(pins.storages().empty());
    pins.pin(world.b1);
    EXPECT_FALSE(succeedsWith(0, [&] { memory::Pins copy(pins); }));
    EXPECT_TRUE(pins.holds(world.b1->storage()));
}

TEST(ReadAllocationFailureTest, ReadingNeverChangesAnything) {
    const ScarceModel world;
    const std::string before = world.state();
    long points = 0;
    for (const meta::Property& property : world.m.block->getAllClassProperties()) {
        bool succeeded = false;
        for (long allowed = 0; !succeeded; ++allowed) {
            const long live = liveAllocations();
            succeeded = succeedsWith(allowed, [&] {
                const Value value = access::read(world.b1, property);
                if (value.getMeta().isMany() && property->getType()->isClass()) {
                    access::toElements(value);
                } else if (property == world.m.name) {
                    access::toString(value);
                }
            });
            if (!succeeded) ++points;
            EXPECT_EQ(liveAllocations(), live) << "leaked";
            EXPECT_EQ(world.state(), before);
        }
    }
    recordPoints(points, "failing allocations in reading values");
}

}  // namespace
}  // namespace nuv::zero::test
