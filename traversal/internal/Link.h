#pragma once

#include <cstddef>
#include <functional>
#include <optional>

#include "../../model/Framework.h"
#include "../Export.h"
#include "../fwd.h"
#include "../support/Lent.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER::internal {

/// One step of a walk: from a source element through a property to a target element.
///
/// A link without a property is a pseudo-link: it stands for an element that was reached without
/// following a property, which is how the inputs of a traversal appear. A link of three null
/// handles is the empty link.
///
///     if (const auto back = link.getOpposite()) std::cout << dumpLink(*back);
///
/// A link counts one reference on each of its handles; copies are independent values. No operation
/// throws of its own.
class MODELING_NUV0_TRAVERSAL_EXPORT Link {
  public:
    /// The empty link, cascading.
    Link();
    /// A cascading link.
    Link(const ModelElement& source, const ModelElement& target, const meta::Property& property);
    Link(const Link& other);
    Link(Link&& other) noexcept;
    Link& operator=(const Link& other);
    Link& operator=(Link&& other) noexcept;
    ~Link();

    /// A copy of the shared empty link.
    static Link empty();

    const ModelElement& getSource() const noexcept { return source_; }
    const ModelElement& getTarget() const noexcept { return target_; }
    const meta::Property& getProperty() const noexcept { return property_; }

    /// Whether the link enters its target. False where the walk had entered it before, and where a
    /// `descend` predicate refused the link.
    bool shouldCascade() const noexcept { return cascade_; }
    void setNoCascade() noexcept { cascade_ = false; }

    /// Whether the link is empty.
    bool operator!() const noexcept { return !source_ && !target_ && !property_; }
    /// Whether it is not: what a walk stands on until its end, a pseudo-link too.
    explicit operator bool() const noexcept { return !!*this; }
    /// Identity of source, target and property; the cascade flag takes no part.
    bool operator==(const Link& other) const noexcept {
        return source_ == other.source_ && target_ == other.target_ && property_ == other.property_;
    }
    bool operator!=(const Link& other) const noexcept { return !(*this == other); }

    /// The same step walked backwards over the property's opposite, always cascading; nothing for a
    /// pseudo-link and for a property without an opposite.
    std::optional<Link> getOpposite() const;

  private:
    friend class LentLink;
    /// Makes a link whose handles are lent; `LentLink` alone makes and ends such links.
    struct LendHandles {};
    Link(LendHandles, const ModelElement& source, const ModelElement& target,
         const meta::Property& property, bool cascade) noexcept
        : source_(WalkSupport::lend(source)),
          target_(WalkSupport::lend(target)),
          property_(WalkSupport::lend(property)),
          cascade_(cascade) {}

    ModelElement source_;
    ModelElement target_;
    meta::Property property_;
    bool cascade_ = true;
};

/// Hashes a link: the exclusive-or of the hashes of its handles, so that a link and the one with
/// source and target exchanged hash alike.
class MODELING_NUV0_TRAVERSAL_EXPORT LinkHasher {
  public:
    std::size_t operator()(const Link& link) const;
};

}  // namespace nuv::zero::traversal::internal

/// So that links are keys of the standard library's tables: as `LinkHasher`.
template <>
struct std::hash<nuv::zero::traversal::internal::Link>
    : nuv::zero::traversal::internal::LinkHasher {};
