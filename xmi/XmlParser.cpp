#include "xmi/XmlParser.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <exception>
#include <limits>
#include <map>
#include <vector>

#include "xmi/Expat.h"
#include "xmi/Fragment.h"

namespace nuv::zero::xmi {
namespace {

/// The names of types, resolved by the prefixes in scope.
///
/// A type is written with a prefix that means something where it stands, and only there. Most types
/// occur often and most prefixes are declared once, so what was resolved last is remembered.
class TypeNames {
  public:
    explicit TypeNames(XmlNames& names) : names_(names) {}

    void declare(std::string_view prefix, std::string_view uri) {
        ++scope_;
        prefixes_[std::string(prefix)].emplace_back(uri);
    }
    void undeclare(std::string_view prefix) {
        ++scope_;
        prefixes_[std::string(prefix)].pop_back();
    }
    /// All that were ever declared.
    std::size_t prefixCount() const noexcept { return prefixes_.size(); }

    /// `noName` where the prefix is not declared. REQUIRES: the type is not empty.
    NameId resolve(std::string_view type) {
        const std::size_t mix =
            static_cast<unsigned char>(type.back()) * std::size_t{31} + type.size();
        Known& known = known_[mix % known_.size()];
        if (known.scope == scope_ && known.type == type) return known.name;
        const NameId name = lookUp(type);
        known.scope = 0;
        known.type = type;
        known.name = name;
        known.scope = scope_;
        return name;
    }

  private:
    NameId lookUp(std::string_view type) {
        const std::size_t colon = type.find(':');
        const bool hasPrefix = colon != std::string_view::npos;
        const std::string_view prefix = hasPrefix ? type.substr(0, colon) : std::string_view();
        const auto declared = prefixes_.find(prefix);
        const bool isKnown = declared != prefixes_.end() && !declared->second.empty();
        if (hasPrefix && !isKnown) return noName;
        written_.clear();
        if (isKnown && !declared->second.back().empty()) {
            written_.append(declared->second.back()) += XmlNames::separator;
        }
        return names_.add(written_.append(type.substr(hasPrefix ? colon + 1 : 0)));
    }

    struct Known {
        std::uint64_t scope = 0;
        std::string type;
        NameId name = noName;
    };

    XmlNames& names_;
    std::map<std::string, std::vector<std::string>, std::less<>> prefixes_;
    /// Another number after each change of the prefixes.
    std::uint64_t scope_ = 1;
    std::array<Known, 64> known_;
    std::string written_;
};

/// Tells a handler what the parser reports. Exceptions must not pass through the parser, which is
/// C, so the first one stops it and is thrown afterwards.
class XmlRun {
  public:
    XmlRun(const std::string& file, const ReadLimits& limits, XmlNames& names, XmlHandler& handler)
        : file_(file), limits_(limits), names_(names), handler_(handler), types_(names) {
        XML_ParserStruct* const parser = parser_.get();
        XML_SetUserData(parser, this);
        XML_SetElementHandler(parser, &XmlRun::startElement, &XmlRun::endElement);
        XML_SetCharacterDataHandler(parser, &XmlRun::text);
        XML_SetNamespaceDeclHandler(parser, &XmlRun::startPrefix, &XmlRun::endPrefix);
        XML_SetStartDoctypeDeclHandler(parser, &XmlRun::documentType);
    }

    void parse(ByteSource& source) {
        // The parser counts in `int`.
        const std::size_t most =
            std::min(limits_.fileBytes, static_cast<std::size_t>(std::numeric_limits<int>::max()));
        if (source.size() > most) {
            throw ReadError(file_, {}, "is longer than " + std::to_string(most) + " bytes");
        }
        const bool isWhole = parsed(source);
        if (failure_) std::rethrow_exception(failure_);
        if (!isWhole) fail(reason(XML_GetErrorCode(parser_.get())));
    }

  private:
    bool parsed(ByteSource& source) {
        try {
            return parser_.parse(source);
        } catch (const std::bad_alloc&) {
            // What a handler has thrown comes first.
            if (!failure_) throw;
            return false;
        }
    }

    static std::string reason(XML_Error code) {
        if (code == XML_ERROR_UNKNOWN_ENCODING) return "the encoding is not supported";
        if (code == XML_ERROR_NO_ELEMENTS) return "no XML element found";
        return XML_ErrorString(code);
    }

    [[noreturn]] void fail(std::string_view reason) const {
        throw ReadError(file_, parser_.position(), reason);
    }

    template <class Step>
    static void guarded(void* self, Step&& step) noexcept {
        auto& run = *static_cast<XmlRun*>(self);
        // A stopped parser may still report what it has under way.
        if (run.failure_) return;
        try {
            step(run);
        } catch (...) {
            run.failure_ = std::current_exception();
            XML_StopParser(run.parser_.get(), XML_FALSE);
        }
    }

    static void XMLCALL startElement(void* self, const XML_Char* name, const XML_Char** pairs) {
        guarded(self, [&](XmlRun& run) { run.enter(name, pairs); });
    }
    static void XMLCALL endElement(void* self, const XML_Char* /*name*/) {
        guarded(self, [](XmlRun& run) {
            --run.depth_;
            run.handler_.leave();
        });
    }
    static void XMLCALL text(void* self, const XML_Char* characters, int count) {
        guarded(self, [&](XmlRun& run) {
            run.handler_.text({characters, static_cast<std::size_t>(count)});
        });
    }
    static void XMLCALL startPrefix(void* self, const XML_Char* prefix, const XML_Char* uri) {
        guarded(self, [&](XmlRun& run) {
            run.types_.declare(prefix == nullptr ? "" : prefix, uri == nullptr ? "" : uri);
            run.handler_.declare(prefix == nullptr ? "" : prefix, uri == nullptr ? "" : uri);
            run.checkNames();
        });
    }
    static void XMLCALL endPrefix(void* self, const XML_Char* prefix) {
        guarded(self, [&](XmlRun& run) { run.types_.undeclare(prefix == nullptr ? "" : prefix); });
    }
    static void XMLCALL documentType(void* self, const XML_Char* /*name*/,
                                     const XML_Char* /*systemId*/, const XML_Char* /*publicId*/,
                                     int /*hasInternalSubset*/) {
        guarded(self, [](XmlRun& run) { run.fail("document type declarations are not accepted"); });
    }

    void enter(const XML_Char* name, const XML_Char** pairs) {
        if (depth_ >= limits_.depth) {
            fail("elements are nested deeper than " + std::to_string(limits_.depth) + " levels");
        }
        if (elements_ >= limits_.elements) {
            fail("the file has more than " + std::to_string(limits_.elements) + " elements");
        }
        XmlStart start{nameOf(name), noName, {}, XmlPlace(parser_)};
        attributes_.clear();
        for (; *pairs != nullptr; pairs += 2) {
            const NameId id = nameOf(pairs[0]);
            const XmlName& attribute = names_[id];
            if ((attribute.isXmi || attribute.isXsi) && attribute.local == "type") {
                start.type = typeNamed(pairs[1]);
            }
            attributes_.push_back({id, pairs[1]});
        }
        start.attributes = attributes_;
        ++depth_;
        ++elements_;
        handler_.enter(start);
    }

    NameId typeNamed(std::string_view value) {
        value = trimmed(value);
        if (value.empty()) return unknownTypeOr("a type is empty");
        const NameId name = types_.resolve(value);
        if (name == noName) {
            return unknownTypeOr("the prefix of the type " + inQuotes(value) + " is not declared");
        }
        checkNames();
        return name;
    }

    NameId unknownTypeOr(std::string_view reason) const {
        if (!handler_.takesUnknownTypes()) fail(reason);
        return unknownType;
    }

    /// The parser keeps a name in one place while it is in use, so that most names are found by
    /// where they stand. Whether it is still the same name there is looked at nevertheless.
    NameId nameOf(const XML_Char* written) {
        const auto address = reinterpret_cast<std::uintptr_t>(written);
        Known& known = known_[(address / 8) % known_.size()];
        if (known.place == written && known.text == written) return known.name;
        const NameId id = names_.add(written);
        checkNames();
        known = {written, names_.writtenAs(id), id};
        return id;
    }

    void checkNames() const {
        if (names_.size() + types_.prefixCount() <= limits_.names) return;
        fail("the file has more than " + std::to_string(limits_.names) + " different names");
    }

    const std::string& file_;
    const ReadLimits& limits_;
    XmlNames& names_;
    XmlHandler& handler_;
    TypeNames types_;
    Expat parser_;
    struct Known {
        const XML_Char* place = nullptr;
        std::string_view text;
        NameId name = noName;
    };
    std::array<Known, 256> known_;
    std::vector<XmlAttribute> attributes_;
    std::size_t depth_ = 0;
    std::size_t elements_ = 0;
    std::exception_ptr failure_;
};

/// Looks for the elements that begin at given offsets.
struct PositionSearch {
    Expat parser;
    /// Those that are still to be met.
    std::span<const std::size_t> offsets;
    std::vector<Position>& found;

    static void XMLCALL startElement(void* self, const XML_Char* /*name*/,
                                     const XML_Char** /*pairs*/) noexcept {
        auto& search = *static_cast<PositionSearch*>(self);
        const std::size_t here = search.parser.offset();
        while (!search.offsets.empty() && search.offsets.front() <= here) {
            const std::size_t number = search.found.size() - search.offsets.size();
            if (search.offsets.front() == here) search.found[number] = search.parser.position();
            search.offsets = search.offsets.subspan(1);
        }
        if (search.offsets.empty()) XML_StopParser(search.parser.get(), XML_FALSE);
    }
};

}  // namespace

std::size_t XmlPlace::offset() const noexcept {
    return parser_.offset();
}

Position XmlPlace::position() const noexcept {
    return parser_.position();
}

const std::string_view* XmlStart::attribute(const XmlNames& names,
                                            std::string_view local) const noexcept {
    for (const XmlAttribute& each : attributes) {
        if (names[each.name].isPlain(local)) return &each.value;
    }
    return nullptr;
}

void parseXml(const std::string& file, ByteSource& source, const ReadLimits& limits,
              XmlNames& names, XmlHandler& handler) {
    XmlRun(file, limits, names, handler).parse(source);
}

Position positionAt(ByteSource& source, std::size_t offset) {
    return positionsAt(source, std::span(&offset, 1)).front();
}

std::vector<Position> positionsAt(ByteSource& source, std::span<const std::size_t> offsets) {
    std::vector<Position> found(offsets.size());
    if (offsets.empty()) return found;
    PositionSearch search{{}, offsets, found};
    XML_SetUserData(search.parser.get(), &search);
    XML_SetStartElementHandler(search.parser.get(), &PositionSearch::startElement);
    search.parser.parse(source);
    return found;
}

}  // namespace nuv::zero::xmi
