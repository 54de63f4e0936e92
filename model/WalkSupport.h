#pragma once

#include <cstddef>
#include <functional>
#include <utility>
#include <vector>

namespace nuv::zero::access {
// Before the framework, which may specialise it.
template <class Element>
struct WalkSupport;
}  // namespace nuv::zero::access

// For whoever includes this header first; what stands in for the framework needs its types.
#include "model/Framework.h"

/// What a framework may offer to make walks cheaper, and what stands in where it does not.
///
/// Included after the framework's own types and functions; a framework that has something to offer
/// includes this header at its end and specialises `WalkSupport`.
namespace nuv::zero::access {

/// The primary template serves every framework: it copies handles and values, and counts.
///
/// A specialisation may instead keep whole models alive (`Keeper`), so that a walk can use handles
/// that do not count (`lend`, `forget`), and show the elements of a property where the model keeps
/// them (`view`).
template <class Element>
struct WalkSupport {
    /// Whether `lend` makes handles that do not count.
    static constexpr bool lends = false;

    /// Keeps the elements that it is shown alive for its own lifetime. Counting handles need none.
    struct Keeper {
        void pin(const Element& /*element*/) noexcept {}
    };

    /// A handle that is valid as long as a keeper, or somebody else, keeps its object alive;
    /// `forget` has to be called before it is destroyed.
    template <class Handle>
    static Handle lend(const Handle& handle) {
        return handle;
    }
    template <class Handle>
    static void forget(Handle& /*lent*/) noexcept {}

    /// Hashes a handle for a table that spreads hashes over its places by itself.
    template <class Handle>
    using Hash = std::hash<Handle>;

    /// Begins to load an element that is looked at soon.
    static void prefetch(const Element& /*element*/) noexcept {}

    /// The elements that a property designates, in order, as they stood when they were read.
    class ElementView {
      public:
        ElementView() noexcept = default;
        explicit ElementView(std::vector<Element> elements) noexcept
            : elements_(std::move(elements)) {}
        std::size_t size() const noexcept { return elements_.size(); }
        /// REQUIRES: `index` is below `size()`.
        Element lend(std::size_t index) const { return elements_[index]; }
        void clear() noexcept { elements_ = {}; }

      private:
        std::vector<Element> elements_;
    };

    /// Reads one property. What can be known once for all elements of a class is found out when it
    /// is made for that class; it reads other elements as well.
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
