#pragma once

/// Reaches private members from tests, so that headers need no friends for tests.
///
/// An explicit instantiation may name private members. `Expose` uses that to define a function that
/// returns a pointer to the member; the tag, which names the member, makes the function findable:
///
///     struct Filters {
///         friend auto pointerTo(Filters);
///     };
///     template struct Expose<Filters, &Result::filters_>;
///
///     result.*pointerTo(Filters());
///
/// One tag per member, in this namespace, because the function is one of this namespace; and the
/// instantiation in one source file, after the tag and before its use.
namespace nuv::zero::testing_support {

template <class Tag, auto Member>
struct Expose {
    friend auto pointerTo(Tag) { return Member; }
};

}  // namespace nuv::zero::testing_support
