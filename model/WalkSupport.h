#pragma once

namespace nuv::zero::access {

/// What a framework offers to make walks cheaper; the library uses it for `ModelElement` alone.
///
/// A framework offers nothing by leaving this template alone: the one in
/// `model/CountingWalkSupport.h` then serves it. A framework that has something to offer includes
/// this header and specialises the template for `ModelElement`, with all of these members:
///
///     template <>
///     struct WalkSupport<ModelElement> {
///         // Whether `lend` makes handles that do not count.
///         static constexpr bool lends = true;
///
///         // Keeps the elements that it is shown alive for its own lifetime, by keeping whole
///         // models, say. A copy keeps the same. May throw, and then keeps what it kept before.
///         struct Keeper { void pin(const ModelElement& element); };
///
///         // A handle of any kind that is valid as long as a keeper, or somebody else, keeps its
///         // object alive. `forget` is called before it is destroyed.
///         template <class Handle> static Handle lend(const Handle& handle) noexcept;
///         static void forget(ModelElement& lent) noexcept;
///
///         // Hashes a handle for a table that spreads hashes over its places by itself: handles
///         // of neighbours in memory best have hashes that are neighbours.
///         template <class Handle> struct Hash { std::size_t operator()(const Handle&) const; };
///
///         // May be left out. The number of an element: no two elements share one. Elements made
///         // together best have numbers near each other, as the walk remembers what it has entered
///         // by number then, in an eighth of a byte each where they are close.
///         static std::uint64_t numberOf(const ModelElement& element) noexcept;
///
///         // Begins to load an element that is looked at soon; the handle may be null.
///         static void prefetch(const ModelElement& element) noexcept;
///
///         // The elements that a property designates, in order, as they stood when they were
///         // read: later edits of the model do not show. `lend` takes indices below `size()`.
///         struct ElementView {
///             std::size_t size() const noexcept;
///             ModelElement lend(std::size_t index) const;  // to be forgotten as above
///             void clear() noexcept;
///         };
///
///         // Reads one property. Made for a class, it finds out once what holds for all elements
///         // of that class; it reads other elements as well. Made by default, likewise.
///         struct PropertyReader {
///             PropertyReader() noexcept;
///             PropertyReader(const meta::Class& type, const meta::Property& property) noexcept;
///             ElementView read(const ModelElement& element, const meta::Property& property) const;
///             // May be left out. Begins to load what `read` looks at soon.
///             void prefetch(const ModelElement& element) const noexcept;
///         };
///     };
///
/// Keepers, views and readers are copied and moved with the walks that hold them.
template <class Element>
struct WalkSupport;

}  // namespace nuv::zero::access
