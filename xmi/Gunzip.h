#pragma once

#include <cstddef>
#include <string>

#include "xmi/ByteSource.h"

namespace nuv::zero::xmi {

/// What comes out of bytes that gzip has compressed, in one part or several. Throws `ReadError`
/// when they cannot be read, are damaged or cut off, or more than the limit come out of them; and
/// `std::bad_alloc`. The name is for error texts.
std::string gunzip(const std::string& name, ByteSource& packed, std::size_t limit);

}  // namespace nuv::zero::xmi
