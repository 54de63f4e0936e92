#pragma once

#include <cstddef>
#include <cstdint>

/// The in-memory model as a framework for the traversal library.
#include "../Compiler.h"
#include "../WalkSupport.h"
#include "ElementView.h"
#include "MessageException.h"
#include "ModelAccess.h"
#include "Pins.h"
#include "PropertyReader.h"

namespace nuv::zero::access {

/// Walks over in-memory models pin the models, count no element and view values in place.
template <>
struct WalkSupport<ModelElement> {
    static constexpr bool lends = true;
    using Keeper = memory::Pins;
    using ElementView = memory::ElementView;
    using PropertyReader = memory::PropertyReader;

    template <class Handle>
    static Handle lend(const Handle& handle) noexcept {
        return memory::Lending::lend<Handle>(handle.get());
    }
    static void forget(ModelElement& lent) noexcept { memory::Lending::forget(lent); }

    /// The address, without the bits that alignment makes zero.
    template <class Handle>
    struct Hash {
        std::size_t operator()(const Handle& handle) const noexcept {
            return reinterpret_cast<std::uintptr_t>(handle.get()) / alignof(memory::Object);
        }
    };

    /// The address in units of the smallest object: no two objects begin in one unit, and objects
    /// made one after another have numbers near each other.
    static std::uint64_t numberOf(const ModelElement& element) noexcept {
        return reinterpret_cast<std::uintptr_t>(element.get()) / sizeof(memory::Object);
    }

    MODELING_NUV0_ALWAYS_INLINE static void prefetch(const ModelElement& element) noexcept {
        // The object, and the slots behind it. Numbers, because null has nothing behind it.
        const auto start = reinterpret_cast<std::uintptr_t>(element.get());
        prefetchLine(reinterpret_cast<const void*>(start));
        prefetchLine(reinterpret_cast<const void*>(start + cacheLine));
        prefetchLine(reinterpret_cast<const void*>(start + std::uintptr_t{2} * cacheLine));
    }
};

}  // namespace nuv::zero::access
