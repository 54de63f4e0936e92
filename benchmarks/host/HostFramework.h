#pragma once

#include <cstddef>
#include <cstdint>

#include "benchmarks/host/HostHandles.h"
#include "model/Compiler.h"
#include "model/WalkSupport.h"

/// The framework of a host whose handles are pairs of a store and a number in it, with all that a
/// host can offer to make walks cheap: numbers, lent handles, values viewed where they stand.
namespace nuv::zero::access {

template <>
struct WalkSupport<ModelElement> {
    static constexpr bool lends = true;

    /// Counts each store once. A walk meets few of them, and nearly always the one of last time.
    class Keeper {
      public:
        void pin(const ModelElement& element) {
            if (!element || &element.store() == latest_) return;
            const host::Store& store = element.store();
            const bool isKnown =
                std::any_of(kept_.begin(), kept_.end(),
                            [&](const ModelElement& kept) { return &kept.store() == &store; });
            if (!isKnown) kept_.push_back(element);
            latest_ = &store;
        }

      private:
        std::vector<ModelElement> kept_;
        const host::Store* latest_ = nullptr;
    };

    template <class Handle>
    static Handle lend(const Handle& handle) noexcept {
        Handle lent;
        lent.borrow(handle);
        return lent;
    }
    static void forget(ModelElement& lent) noexcept { lent.forget(); }

    template <class Handle>
    struct Hash {
        std::size_t operator()(const Handle& handle) const noexcept {
            return handle ? static_cast<std::size_t>(numberOf(handle)) : 0;
        }
    };

    /// Numbers in one store begin at zero; the store's own number keeps them apart from those of
    /// another.
    static std::uint64_t numberOf(const ModelElement& element) noexcept {
        return std::uint64_t{element.store().number()} << 32U | element.number();
    }

    MODELING_NUV0_ALWAYS_INLINE static void prefetch(const ModelElement& element) noexcept {
        if (element) prefetchLine(element.store().wordsOf(element.number()));
    }

    /// Stores are not edited, so a view is where the numbers stand.
    class ElementView {
      public:
        ElementView() noexcept = default;
        ElementView(const host::Store& store, Numbers numbers) noexcept
            : store_(&store), numbers_(numbers) {}
        std::size_t size() const noexcept { return numbers_.count; }
        ModelElement lend(std::size_t index) const noexcept {
            ModelElement lent;
            lent.borrow(*store_, numbers_.first[index]);
            return lent;
        }
        void clear() noexcept { numbers_ = {}; }

      private:
        const host::Store* store_ = nullptr;
        Numbers numbers_;
    };

    /// Knows at which place the elements of a class have a property.
    class PropertyReader {
      public:
        PropertyReader() noexcept = default;
        PropertyReader(const meta::Class& type, const meta::Property& property) noexcept {
            if (!type || !property || !hasProperty(type, property)) return;
            const auto& all = type.facts().properties;
            schema_ = &type.store();
            class_ = type.number();
            count_ = all.size();
            while (all[place_] != property.index()) ++place_;
        }
        ElementView read(const ModelElement& element, const meta::Property& property) const {
            const host::Store& store = element.store();
            if (store.isSchema()) return {};
            const std::uint32_t* words = store.wordsOf(element.number());
            if (&store.schema() == schema_ && *words == class_) {
                return {store, numbersAt(words, place_, count_)};
            }
            return {store, numbersOf(element, property)};
        }

      private:
        const host::Store* schema_ = nullptr;
        std::uint32_t class_ = 0;
        std::size_t place_ = 0;
        std::size_t count_ = 0;
    };
};

}  // namespace nuv::zero::access
