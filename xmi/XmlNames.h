#pragma once

#include <cstdint>
#include <string_view>

#include "xmi/BlockList.h"
#include "xmi/TextTable.h"

namespace nuv::zero::xmi {

/// The name of an XML element, of an attribute or of a type, with the namespace in full.
struct XmlName {
    std::string_view uri;
    std::string_view local;
    /// Whether the namespace is one of the versions of XMI.
    bool isXmi = false;
    /// Whether the namespace is XML Schema's for instances (`xsi:type`, `xsi:nil`).
    bool isXsi = false;
    /// Whether the namespace is that of XML itself (`xml:lang`).
    bool isXml = false;

    bool isPlain(std::string_view wanted) const noexcept { return uri.empty() && local == wanted; }
};

/// A number of a name in its file; equal names have equal numbers.
using NameId = std::uint32_t;
inline constexpr NameId noName = 0xFFFFFFFFU;

/// The names of one file. Moving leaves the texts of names where they are.
class XmlNames {
  public:
    /// Stands between a namespace and a name; no XML file can hold it.
    static constexpr char separator = '\x01';

    /// Whether a namespace is one of XMI or of XML itself, and none of a metamodel.
    static bool isOfXml(std::string_view uri) noexcept;

    /// The number of a name as the parser writes it: namespace, separator and local name, or the
    /// local name alone. Throws `std::bad_alloc`, and then serves no longer.
    NameId add(std::string_view written);
    const XmlName& operator[](NameId id) const noexcept { return names_[id]; }
    /// The name as the parser writes it.
    std::string_view writtenAs(NameId id) const noexcept { return written_[id]; }
    /// The numbers are those below this one.
    NameId size() const noexcept { return static_cast<NameId>(names_.size()); }

  private:
    TextTable written_;
    BlockList<XmlName> names_;
};

}  // namespace nuv::zero::xmi
