#include "xmi/Finding.h"

#include <array>

namespace nuv::zero::xmi {
namespace {

constexpr std::array<std::string_view, 20> reasons = {
    "missing-file",        "outside-roots",     "ambiguous-file", "unreadable-file",
    "missing-element",     "ambiguous-element", "no-fit",         "contained-twice",
    "contained-in-itself", "too-many-values",   "unknown-class",  "unknown-feature",
    "abstract-class",      "wrong-value",       "duplicate-id",   "metamodel-twice",
    "no-metamodel-file",   "foreign-content",   "not-loaded",     "cannot-name-itself",
};
static_assert(reasons.size() == static_cast<std::size_t>(Finding::Reason::CannotNameItself) + 1);

constexpr std::array<std::string_view, 5> weights = {"contents-lost", "link-lost", "value-wrong",
                                                     "warning", "note"};
static_assert(weights.size() == static_cast<std::size_t>(Finding::Weight::Note) + 1);

}  // namespace

std::string_view nameOf(Finding::Reason reason) noexcept {
    return reasons[static_cast<std::size_t>(reason)];
}

std::string_view nameOf(Finding::Weight weight) noexcept {
    return weights[static_cast<std::size_t>(weight)];
}

}  // namespace nuv::zero::xmi
