#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <thread>
#include <type_traits>
#include <unordered_set>
#include <vector>

#include "model/Framework.h"
#include "tests/model/Blocks.h"

namespace nuv::zero::test {
namespace {

template <class Handle>
class HandleTest : public testing::Test {
  public:
    Blocks m;
    memory::Model model;

    Handle made() {
        if constexpr (std::is_same_v<Handle, ModelElement>) return model.create(m.block);
        if constexpr (std::is_same_v<Handle, meta::Class>) return m.block;
        if constexpr (std::is_same_v<Handle, meta::Property>) return m.ports;
        if constexpr (std::is_same_v<Handle, meta::Type>) return m.integer;
        if constexpr (std::is_same_v<Handle, meta::StructuredType>) return m.named;
        if constexpr (std::is_same_v<Handle, meta::PrimitiveType>) return m.integer;
    }
};

using Handles = testing::Types<ModelElement, meta::Class, meta::Property, meta::Type,
                               meta::StructuredType, meta::PrimitiveType>;
TYPED_TEST_SUITE(HandleTest, Handles);

TYPED_TEST(HandleTest, IsOnePointerThatIsNullByDefault) {
    EXPECT_EQ(sizeof(TypeParam), sizeof(void*));
    EXPECT_FALSE(TypeParam());
    EXPECT_EQ(TypeParam(), TypeParam());
    EXPECT_TRUE(this->made());
}

TYPED_TEST(HandleTest, MovingLeavesTheSourceNull) {
    TypeParam source = this->made();
    const TypeParam same = source;
    TypeParam target(std::move(source));
    EXPECT_FALSE(source);  // NOLINT(bugprone-use-after-move): that is what is tested
    EXPECT_EQ(target, same);
    TypeParam assigned;
    assigned = std::move(target);
    EXPECT_FALSE(target);  // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(assigned, same);
}

TYPED_TEST(HandleTest, SurvivesAssignmentToItself) {
    TypeParam handle = this->made();
    const TypeParam same = handle;
    TypeParam& alias = handle;
    handle = alias;
    EXPECT_EQ(handle, same);
    handle = std::move(alias);
    EXPECT_EQ(handle, same);
}

TYPED_TEST(HandleTest, ConvertsToBoolOnlyWhereOneIsAskedFor) {
    EXPECT_TRUE(static_cast<bool>(this->made()));
    EXPECT_FALSE((std::is_convertible_v<TypeParam, bool>));
    EXPECT_FALSE((std::is_convertible_v<TypeParam, int>));
    EXPECT_TRUE((std::is_constructible_v<bool, TypeParam>));
}

TYPED_TEST(HandleTest, IsAHandleForTheContract) {
    EXPECT_TRUE(access::contract::Handle<TypeParam>);
}

struct CopiesThatMayThrow : ModelElement {
    CopiesThatMayThrow() noexcept = default;
    CopiesThatMayThrow(const CopiesThatMayThrow& other) noexcept(false) = default;
    CopiesThatMayThrow(CopiesThatMayThrow&& other) noexcept = default;
    CopiesThatMayThrow& operator=(const CopiesThatMayThrow& other) noexcept = default;
    CopiesThatMayThrow& operator=(CopiesThatMayThrow&& other) noexcept = default;
    ~CopiesThatMayThrow() = default;
};

TEST(ContractTest, RefusesWhatOnlyLooksLikeAHandle) {
    EXPECT_FALSE(access::contract::Handle<int*>);
    EXPECT_FALSE(access::contract::Handle<std::vector<int>>);
    EXPECT_FALSE(access::contract::Handle<CopiesThatMayThrow>);
    EXPECT_FALSE(access::contract::Hashed<Value>);
    EXPECT_FALSE(access::contract::NamedClass<ModelElement>);
    EXPECT_FALSE(access::contract::DescribedProperty<meta::Class>);
    EXPECT_FALSE((access::contract::ConvertibleValue<ModelElement, ModelElement>));
}

TEST(ContractTest, TakesEveryFormOfUtf16Text) {
    EXPECT_TRUE(access::contract::Utf16<std::u16string>);
    EXPECT_TRUE(access::contract::Utf16<const std::u16string&>);
    EXPECT_TRUE(access::contract::Utf16<std::u16string_view>);
    EXPECT_TRUE(access::contract::Utf16<const char16_t*>);
    EXPECT_FALSE(access::contract::Utf16<std::string>);
}

TEST(HandleIdentityTest, EqualMeansTheSameObject) {
    Blocks m;
    memory::Model model;
    const ModelElement one = model.create(m.block, u"same");
    const ModelElement other = model.create(m.block, u"same");
    EXPECT_EQ(one, ModelElement(one));
    EXPECT_NE(one, other);
    EXPECT_NE(one, ModelElement());
    EXPECT_TRUE(std::equal_to<ModelElement>()(one, one));
    EXPECT_FALSE(std::equal_to<meta::Property>()(m.ports, m.boss));
}

TEST(HandleIdentityTest, APropertyAsAnElementIsTheSameObjectWithTheSameHash) {
    const Blocks m;
    const ModelElement asElement = m.ports;
    EXPECT_EQ(asElement, ModelElement(m.ports.get()));
    EXPECT_EQ(std::hash<ModelElement>()(asElement), std::hash<meta::Property>()(m.ports));
    EXPECT_EQ(std::hash<meta::Type>()(m.block), std::hash<meta::Class>()(m.block));
}

TEST(HandleHashTest, EveryNullHandleHashesToOneConstant) {
    const std::size_t null = std::hash<ModelElement>()(ModelElement());
    EXPECT_EQ(std::hash<meta::Property>()(meta::Property()), null);
    EXPECT_EQ(std::hash<meta::Class>()(meta::Class()), null);
}

TEST(HandleHashTest, ElementsInARegularLayoutDoNotCollideUnderExclusiveOr) {
    const Blocks m;
    memory::Model model;
    std::vector<ModelElement> chain;
    for (int i = 0; i < 20000; ++i) chain.push_back(model.create(m.block));

    std::unordered_set<std::size_t> links;
    std::unordered_set<std::size_t> lowBits;
    const std::hash<ModelElement> hash;
    for (std::size_t i = 0; i + 1 < chain.size(); ++i) {
        links.insert(hash(chain[i]) ^ hash(chain[i + 1]));
        lowBits.insert((hash(chain[i]) ^ hash(chain[i + 1])) % 65536);
    }
    EXPECT_EQ(links.size(), chain.size() - 1);
    // Random values would hit 65536 * (1 - exp(-20000 / 65536)) = 17238 different places.
    EXPECT_GT(lowBits.size(), 16500U);
}

TEST(HandleCountTest, HandlesOfOneObjectMayBeCopiedOnSeveralThreads) {
    const Blocks m;
    auto model = std::make_unique<memory::Model>();
    const ModelElement shared = model->create(m.block, u"b");
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&shared] {
            std::vector<ModelElement> copies;
            for (int round = 0; round < 1000; ++round) {
                copies.assign(10, shared);
                copies.clear();
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    model.reset();
    EXPECT_EQ(shared->getClass(), m.block);
}

}  // namespace
}  // namespace nuv::zero::test
