#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <tuple>
#include <unordered_map>
#include <vector>

#include "tests/host_framework/HostKinds.h"
#include "tests/host_framework/HostNullWatch.h"
#include "tests/host_framework/HostWorld.h"
#include "traversal/ClassHierarchyComparator.h"
#include "traversal/PropertyProvider.h"
#include "traversal/Traversal.h"
#include "traversal/internal/ElementProgress.h"

/// Null handles stand for nothing: the library knows what follows from them,
/// and no host is asked.
namespace {

using nuv::zero::ModelElement;
using nuv::zero::meta::Class;
using nuv::zero::meta::Property;
using namespace nuv::zero::traversal;

using host::HostKind;
using Walk = TraversalResult::IterationContext;

/// A small world whose lists and single values lead to nothing here and there.
class HostNullsWorld {
  protected:
    HostNullsWorld() {
        host::World::link(a, next, ModelElement());
        host::World::link(a, parts, ModelElement());
        host::World::link(a, parts, b);
        host::World::link(b, parts, a);
        host::World::link(b, parts, ModelElement());
    }

    host::World world;
    Class part = world.addClass(u"Part");
    Class nameless = world.addClass(u"Nameless");
    Property name = world.addName(part);
    Property next = world.addSingle(part, u"next");
    Property parts = world.addMany(part, u"parts", true);
    ModelElement a = world.create(part, u"a");
    ModelElement b = world.create(part, u"b");
    ModelElement c = world.create(nameless, u"c");
    host::NullWatch watch;
};

class HostNulls : public HostNullsWorld,
                  public testing::TestWithParam<std::tuple<HostKind, Algo, UniquenessMode>> {
  protected:
    /// Shows a builder with rules for no property, and rules filed under no class.
    template <class Use>
    void withBuilder(const Use& use) const {
        const PropertyMatcher nothing{Property()};
        const auto none = [](const Class&) { return false; };
        const HostKind kind = std::get<0>(GetParam());
        if (kind == HostKind::Additive) {
            const auto builder = Spec::additiveTraversal();
            builder->traverse(nothing, ResultPolicy::Report);
            builder->traverse(nothing, none, ResultPolicy::Report);
            builder->traverse(parts, ResultPolicy::Report);
            builder->traverse({parts, none, Class()}, ResultPolicy::Report);
            builder->traverse(next, ResultPolicy::WalkOnly);
            builder->setResultPolicy(nothing, ResultPolicy::Report);
            builder->setResultPolicy({next, none, Class()}, ResultPolicy::Report);
            use(*builder);
        } else if (kind == HostKind::Composition) {
            const auto builder = Spec::compositionTraversal();
            cutNothing(*builder);
            use(*builder);
        } else {
            const auto builder = Spec::subtractiveTraversal();
            cutNothing(*builder);
            use(*builder);
        }
    }
    std::shared_ptr<TraversalResult> run() const {
        const auto& [kind, order, unique] = GetParam();
        const std::vector<ModelElement> inputs{ModelElement(), a, c, ModelElement()};
        std::shared_ptr<TraversalResult> result;
        withBuilder([&, order = order](auto& builder) { result = builder.run(inputs, order); });
        ResultSetup(result).unique(unique);
        return result;
    }
    template <class Builder>
    void cutNothing(Builder& builder) const {
        const PropertyMatcher nothing{Property()};
        const auto none = [](const Class&) { return false; };
        builder.prune(nothing);
        builder.prune(nothing, none);
        builder.prune({parts, none, Class()});
        builder.prune({parts, none, part});
        builder.setResultPolicy(nothing, ResultPolicy::Report);
        builder.setResultPolicy({parts, none, Class()}, ResultPolicy::Report);
        builder.setResultPolicy({next, none, Class()}, ResultPolicy::Report);
    }
};

TEST_P(HostNulls, WalkAsksNothingOfThem) {
    class SilentObserver : public TraversalProcessor {};
    SilentObserver observer;
    const auto result = run();
    ResultSetup(result).observe(&observer);
    std::size_t count = 0;
    for (Walk walk = result->begin(); !!walk.getCurrent(); walk.advance(), ++count) {
        const Walk copy(walk);
        EXPECT_TRUE(copy == walk);
        EXPECT_FALSE(dumpLink(copy.getCurrent()).empty());
        if (count % 3 == 1) walk.pruneSiblings();
        if (count % 3 == 2) walk.pruneChildren(Property());
    }
    EXPECT_GE(count, 2U);
}

TEST_P(HostNulls, PruningTheirChildrenAsksNothingOfThem) {
    const auto result = run();
    Walk walk = result->begin();
    for (; !!walk.getCurrent(); walk.advance()) {
        if (!walk.getCurrent().getTarget()) walk.pruneAllChildren();
        walk.pruneChildren(Property());
    }
    walk.advance();
    walk.pruneAllChildren();
    walk.pruneSiblings();
}

TEST_P(HostNulls, ListenersAskNothingOfThem) {
    const auto result = run();
    WalkStatistics statistics;
    WalkPicture picture;
    WalkBoundaries boundaries;
    ResultSetup(result)
        .trace(&statistics)
        .trace(&picture)
        .trace(&boundaries)
        .rememberPaths()
        .descend([this](const Link& link) { return !(link.getTarget() == b); });
    Walk walk = result->begin();
    for (; !!walk.getCurrent(); walk.advance()) {
        walk.pruneChildren(Property());
        walk.pruneSiblings();
    }
    EXPECT_FALSE(statistics.text().empty());
    EXPECT_FALSE(picture.text().empty());
    boundaries.neverEntered(walk);
    for (const ModelElement& element : {a, b, c}) {
        EXPECT_FALSE(whyNot(walk, element, &boundaries).text().empty());
        EXPECT_FALSE(whyNot(walk, element).text().empty());
    }
}

// Symptom: a host was asked whether a class has no property.
TEST_P(HostNulls, ExplanationsAndFindingsAskNothingOfThem) {
    for (const Class& type : {part, nameless, Class()}) {
        EXPECT_FALSE(explain(run(), type).text().empty());
        withBuilder([&](const auto& builder) { explain(builder, type); });
    }
    withBuilder([&](const auto& builder) {
        EXPECT_FALSE(check(builder, {part, Class(), nameless}).empty());
    });
}

// Symptom: a host was asked for the properties of no class.
TEST_P(HostNulls, ElementOfNoClassIsPassedOver) {
    const ModelElement classless = world.create(Class(), u"d");
    host::World::link(a, parts, classless);
    const ModelElement missed = world.create(part, u"e");
    const auto result = run();
    ResultSetup(result).descend([&](const Link& link) { return !(link.getTarget() == missed); });
    Walk walk = result->begin();
    while (!!walk.getCurrent()) walk.advance();
    EXPECT_TRUE(walk.hasEntered(classless));
    EXPECT_FALSE(whyNot(walk, missed).isEntered);
}

std::string describeWalk(const testing::TestParamInfo<HostNulls::ParamType>& each) {
    const auto& [kind, order, unique] = each.param;
    return host::nameOf(kind) + host::nameOf(order) + std::to_string(static_cast<int>(unique));
}

INSTANTIATE_TEST_SUITE_P(Walks, HostNulls,
                         testing::Combine(testing::ValuesIn(host::everyKind),
                                          testing::ValuesIn(host::everyOrder()),
                                          testing::Values(UniquenessMode::UniqueLinks,
                                                          UniquenessMode::UniqueElements,
                                                          UniquenessMode::NoUniqueness)),
                         describeWalk);

class HostNullParts : public HostNullsWorld, public testing::Test {};

TEST_F(HostNullParts, RuleOfNoPropertyHasNoOwner) {
    const PropertyMatcher matcher{Property()};
    EXPECT_FALSE(matcher.getOwner());
    EXPECT_TRUE(matcher.matches(Class()));
}

TEST_F(HostNullParts, NoClassIsComparedWithoutTheHost) {
    const ClassHierarchyComparator less{};
    EXPECT_FALSE(less(Class(), Class()));
    EXPECT_TRUE(less(Class(), part));
    EXPECT_FALSE(less(part, Class()));
}

TEST_F(HostNullParts, RulesAreAskedAboutNoClass) {
    CompositeMatcher rules(CompositeMatcher::VisitMode::Visit);
    rules.composeMatcher(Class(), EveryClass(), ResultPolicy::Extended);
    rules.composeMatcher(part, EveryClass(), ResultPolicy::Report);
    rules.composePolicy(Class(), ResultPolicy::Report);
    EXPECT_EQ(rules.getPolicy(Class()), ResultPolicy::Report);
}

TEST_F(HostNullParts, LinksOfNothingAreShownHashedAndTurnedRound) {
    EXPECT_EQ(dumpElement(ModelElement()), "Not an element");
    EXPECT_EQ(dumpLink(Link()), "Not an element-[pseudo]-Not an element");
    EXPECT_EQ(dumpElement(c), "Nameless''");
    EXPECT_EQ(internal::LinkHasher()(Link()), std::hash<ModelElement>()(ModelElement()));
    EXPECT_FALSE(Link(ModelElement(), a, Property()).getOpposite().has_value());
    EXPECT_FALSE(Link(a, ModelElement(), next).getOpposite().has_value());
}

TEST_F(HostNullParts, SettingReadsNothingOfNoElementAndOfNoProperty) {
    AssociationSetting setting(parts, ResultPolicy::Report);
    setting.prepareFor(Class(), nullptr);
    EXPECT_EQ(setting.read(ModelElement()).size(), 0U);
    EXPECT_EQ(setting.read(a).size(), 2U);
    AssociationSetting nothing;
    nothing.prepareFor(part, nullptr);
}

TEST_F(HostNullParts, CursorOverNoElementEnds) {
    const auto settings = std::make_shared<std::vector<AssociationSetting>>();
    settings->emplace_back(parts, ResultPolicy::Report);
    internal::ElementProgress cursor(Link(a, ModelElement(), parts), nullptr, settings);
    EXPECT_TRUE(!cursor.advanceAndGetCurrent());
    EXPECT_TRUE(cursor.processedAll());
}

/// A provider as a host's own kind would have it: it asks nobody.
class AskingNobody : public PropertyProvider {
  public:
    using PropertyProvider::PropertyProvider;
    std::vector<AssociationSetting> computeSettings(const Class& /*type*/) override { return {}; }
    ResultPolicy getResultPolicy(const Class& type, const Property& property) override {
        return policyOf(type, property);
    }
};

TEST_F(HostNullParts, ProviderKnowsWhatNoElementFollows) {
    AskingNobody provider(std::unordered_map<Property, CompositeMatcher>{});
    EXPECT_TRUE(provider.getPropertiesToTraverse(ModelElement())->empty());
    EXPECT_EQ(provider.getResultPolicy(Class(), Property()), ResultPolicy::Report);
}

}  // namespace
