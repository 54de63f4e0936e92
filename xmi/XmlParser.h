#pragma once

#include <string>
#include <string_view>

#include "xmi/ReadOptions.h"
#include "xmi/XmlDocument.h"

namespace nuv::zero::xmi {

/// Parses the bytes of an XML file. Throws `ReadError` for anything that is not well-formed, for a
/// document type declaration (models need none, and entities could make a small file endless), for
/// an encoding that is not supported, and for a file beyond the limits.
XmlDocument parseXml(std::string file, std::string_view bytes, const ReadLimits& limits);

}  // namespace nuv::zero::xmi
