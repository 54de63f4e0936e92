#pragma once

#include <cstddef>
#include <functional>
#include <utility>
#include <vector>

#include "ChosenFramework.h"
#include "WalkSupport.h"

namespace nuv::zero::access {

/// Serves every framework that does not specialise `WalkSupport`, by the functions of the contract
/// alone: it copies handles, which count, and values. What its members are for stands there.
template <class Element>
struct WalkSupport {
    static constexpr bool lends = false;

    /// Handles that count need none.
    struct Keeper {
        void pin(const Element& /*element*/) noexcept {}
    };

    template <class Handle>
    static Handle lend(const Handle& handle) {
        return handle;
    }
    template <class Handle>
    static void forget(Handle& /*lent*/) noexcept {}

    template <class Handle>
    using Hash = std::hash<Handle>;

    static void prefetch(const Element& /*element*/) noexcept {}

    class ElementView {
      public:
        ElementView() noexcept = default;
        explicit ElementView(std::vector<Element> elements) noexcept
            : elements_(std::move(elements)) {}
        std::size_t size() const noexcept { return elements_.size(); }
        Element lend(std::size_t index) const { return elements_[index]; }
        void clear() noexcept { elements_ = {}; }

      private:
        std::vector<Element> elements_;
    };

    /// Nothing is known of a class ahead.
    class PropertyReader {
      public:
        PropertyReader() noexcept = default;
        PropertyReader(const meta::Class& /*type*/, const meta::Property& /*property*/) noexcept {}
        ElementView read(const Element& element, const meta::Property& property) const {
            return view(element, property);
        }
    };

    /// Reads a property: at most one element for a single-valued one, the list for any other.
    static ElementView view(const Element& element, const meta::Property& property) {
        const Value value = access::read(element, property);
        if (!access::isSingleValued(property)) return ElementView(access::toElements(value));
        std::vector<Element> single;
        if (access::isSet(value)) {
            Element target = access::toElement(value);
            if (target) single.push_back(std::move(target));
        }
        return ElementView(std::move(single));
    }
};

}  // namespace nuv::zero::access
