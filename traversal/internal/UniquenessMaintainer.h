#pragma once

#include <cstddef>
#include <memory>

#include "../Export.h"
#include "Link.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER::internal {

/// Decides whether a link may be reported, and remembers what it was asked about: a link that is
/// left out for another reason afterwards still counts as seen.
///
/// A maintainer lends the handles of the links that it remembers from whoever asks: elements and
/// properties must outlive its use of them. A walk guarantees that.
class UniquenessMaintainer {
  public:
    UniquenessMaintainer() = default;
    UniquenessMaintainer& operator=(const UniquenessMaintainer&) = delete;
    virtual ~UniquenessMaintainer();

    virtual bool shouldReport(const Link& link) = 0;
    virtual std::unique_ptr<UniquenessMaintainer> clone() const = 0;
    /// Whether it ever refuses a link, so that it has to be asked.
    virtual bool remembers() const noexcept = 0;
    /// What the memory takes.
    virtual std::size_t bytes() const noexcept = 0;

  protected:
    UniquenessMaintainer(const UniquenessMaintainer&) = default;
};

std::unique_ptr<UniquenessMaintainer> makeUniquenessMaintainer(UniquenessMode mode);

}  // namespace nuv::zero::traversal::internal
