#pragma once

#include <string>
#include <string_view>

#include "../Export.h"

namespace nuv::zero::text {

/// UTF-16 to UTF-8. An unpaired surrogate becomes U+FFFD. Throws `std::bad_alloc` only.
MODELING_NUV0_MODEL_EXPORT std::string toUtf8(std::u16string_view text);

/// UTF-8 to UTF-16. Each byte that begins no valid sequence becomes U+FFFD. Throws
/// `std::bad_alloc` only.
MODELING_NUV0_MODEL_EXPORT std::u16string toUtf16(std::string_view text);

}  // namespace nuv::zero::text
