#pragma once

#include <cstddef>
#include <string>

namespace nuv::zero::xmi {

/// The bytes of a file. Throws `ReadError` when the file cannot be read to its end or is longer
/// than the limit.
std::string readFile(const std::string& path, std::size_t limit);

}  // namespace nuv::zero::xmi
