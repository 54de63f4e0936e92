#pragma once

#include <new>

#include "../Export.h"
#include "../support/Lent.h"
#include "Link.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER::internal {

/// A link whose three handles are lent: what a walk keeps on its frontier and reports. It reads as
/// any other link; a copy of that link counts for itself and may be kept.
class LentLink {
  public:
    /// The empty link.
    LentLink() noexcept : LentLink(ModelElement(), ModelElement(), meta::Property()) {}
    LentLink(const ModelElement& source, const ModelElement& target, const meta::Property& property,
             bool cascade = true) noexcept {
        ::new (static_cast<void*>(&link_))
            Link(Link::LendHandles{}, source, target, property, cascade);
    }
    explicit LentLink(const Link& link) noexcept
        : LentLink(link.getSource(), link.getTarget(), link.getProperty(), link.shouldCascade()) {}
    LentLink(const LentLink& other) noexcept : LentLink(other.link_) {}
    LentLink& operator=(const LentLink& other) noexcept {
        if (this != &other) {
            end();
            ::new (this) LentLink(other);
        }
        return *this;
    }
    ~LentLink() { end(); }

    const Link& get() const noexcept { return link_; }

  private:
    void end() noexcept {
        // Lent handles own nothing, so there is nothing to release.
        if constexpr (!WalkSupport::lends) link_.~Link();
    }

    union {
        Link link_;
    };
};

}  // namespace nuv::zero::traversal::internal
