#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "model/memory/Metamodel.h"
#include "model/memory/Model.h"
#include "model/memory/ModelAccess.h"
#include "tests/support/Threads.h"
#include "traversal/Traversal.h"

/// What is made when it is first needed, needed by several threads at the same time. Each process
/// has one first time only, so that every test here is a process of its own when CTest runs it, and
/// this executable holds nothing that would use the library beforehand.
namespace nuv::zero::traversal {
namespace {

constexpr std::size_t threads = 8;

/// The same for all threads.
template <class Answer>
Answer raced(const std::function<Answer()>& use) {
    std::vector<Answer> answers(threads);
    test::onThreads(threads, [&](std::size_t i) { answers[i] = use(); });
    EXPECT_EQ(answers, std::vector<Answer>(threads, answers[0]));
    return answers[0];
}

TEST(FirstUseTest, OfTheEmptyLink) {
    // The operator says whether the link is empty.
    EXPECT_EQ(raced<int>([] { return !Link::empty() ? 1 : 0; }), 1);
}

TEST(FirstUseTest, OfTheStandardStringType) {
    const auto type = raced<meta::Type>([] { return meta::StandardTypes::stringMeta(); });
    EXPECT_EQ(type->getQualifiedName(), u"String");
}

TEST(FirstUseTest, OfTheClassOfNoElement) {
    EXPECT_FALSE(raced<meta::Class>([] { return access::classOf(ModelElement()); }));
}

TEST(FirstUseTest, OfTheClassOfElements) {
    const auto type = raced<meta::Class>([] { return ModelElement::metaClass(); });
    EXPECT_EQ(type->getName(), u"ModelElement");
}

TEST(FirstUseTest, OfTheClassOfClasses) {
    const auto type = raced<meta::Class>([] { return meta::Class::metaClass(); });
    EXPECT_EQ(type->getName(), u"Class");
}

TEST(FirstUseTest, OfAValueThatHoldsNothing) {
    EXPECT_EQ(raced<std::size_t>([] { return Value().content().index(); }), 0U);
}

/// Everything at once: a metamodel, a model, a builder and a walk of its own on each thread.
TEST(FirstUseTest, OfTheWholeLibrary) {
    const std::string expected =
        "Not an element-[pseudo]-Block'a'\nBlock'a'-[parts]-Block'b'\nBlock'b'-[parts]-Block'a'\n";
    EXPECT_EQ(raced<std::string>([] {
                  memory::Metamodel metamodel(u"m");
                  const meta::Class block = metamodel.addClass(u"Block");
                  metamodel.addProperty(block, u"name", meta::StandardTypes::stringMeta());
                  const meta::Property parts =
                      metamodel.addProperty(block, u"parts", block, memory::unbounded,
                                            memory::PropertyFlags::Association);
                  memory::Model model;
                  const ModelElement a = model.create(block, u"a");
                  const ModelElement b = model.create(block, u"b");
                  model.add(a, parts, b);
                  model.add(b, parts, a);
                  std::string lines;
                  for (const Link& link : links(Spec::subtractiveTraversal()->depthFirst({a}))) {
                      lines += dumpLink(link) + '\n';
                  }
                  return lines;
              }),
              expected);
}

}  // namespace
}  // namespace nuv::zero::traversal
