#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "xmi/ByteSource.h"
#include "xmi/ReadError.h"
#include "xmi/ReadOptions.h"
#include "xmi/XmlNames.h"

namespace nuv::zero::xmi {

class Expat;

struct XmlAttribute {
    NameId name;
    /// Lives until the next event.
    std::string_view value;
};

/// Where an XML element stands in its file.
class XmlPlace {
  public:
    explicit XmlPlace(const Expat& parser) : parser_(parser) {}
    /// The number of its first byte. Cheap.
    std::size_t offset() const noexcept;
    /// Counts the lines since the last place that was asked for.
    Position position() const noexcept;

  private:
    const Expat& parser_;
};

/// The type of an XML element is written with a prefix that is not declared, or empty.
inline constexpr NameId unknownType = 0xFFFFFFFEU;

/// A start tag.
struct XmlStart {
    NameId name = noName;
    /// The value of `xsi:type` or `xmi:type`, its prefix resolved; may be `unknownType` for a
    /// handler that takes such.
    NameId type = noName;
    std::span<const XmlAttribute> attributes;
    XmlPlace place;

    /// The value of an attribute without namespace; null where there is none.
    const std::string_view* attribute(const XmlNames& names, std::string_view local) const noexcept;
};

/// What hears the content of an XML file while it is parsed.
class XmlHandler {
  public:
    virtual void enter(const XmlStart& start) = 0;
    /// Part of what stands between tags, as it comes.
    virtual void text(std::string_view part) = 0;
    virtual void leave() = 0;
    /// A prefix that means a namespace from the next element on, inside that.
    virtual void declare(std::string_view /*prefix*/, std::string_view /*uri*/) {}
    /// Whether it is told of types that mean nothing. Otherwise the file is refused for them.
    virtual bool takesUnknownTypes() const noexcept { return false; }

  protected:
    XmlHandler() = default;
    XmlHandler(const XmlHandler&) = default;
    XmlHandler& operator=(const XmlHandler&) = default;
    ~XmlHandler() = default;
};

/// Parses an XML file and tells the handler. Throws `ReadError` for anything that is not
/// well-formed, for a document type declaration (models need none, and entities could make a small
/// file endless), for an encoding that is not supported, and for a file beyond the limits. What the
/// handler throws ends the parsing and is passed on.
void parseXml(const std::string& file, ByteSource& source, const ReadLimits& limits,
              XmlNames& names, XmlHandler& handler);

/// The position of the XML element that begins at a place of the source. Parses the source up to
/// there once more: counting lines takes a fifth of the time of parsing, and only errors ask for
/// them. The file as a whole where no element begins there any more, since somebody has changed it.
Position positionAt(ByteSource& source, std::size_t offset);
/// The same for several places, in one go. REQUIRES: the offsets are sorted.
std::vector<Position> positionsAt(ByteSource& source, std::span<const std::size_t> offsets);

}  // namespace nuv::zero::xmi
