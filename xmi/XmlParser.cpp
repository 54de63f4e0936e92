#include "xmi/XmlParser.h"

#include <expat.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <exception>
#include <limits>
#include <memory>
#include <new>
#include <optional>
#include <unordered_map>
#include <utility>

#include "xmi/Encoding.h"

namespace nuv::zero::xmi {
namespace {

/// Stands between a namespace and a name; no XML file can hold it.
constexpr char separator = '\x01';
constexpr XML_Char separatorText[] = {separator, '\0'};

/// Whether the parser of this thread has run out of memory. What it says itself then is not always
/// that: a name that it could not keep may count as a prefix that nobody declared.
thread_local bool outOfMemory = false;

void* noticingFailure(void* memory) noexcept {
    if (memory == nullptr) outOfMemory = true;
    return memory;
}
void* allocate(std::size_t size) noexcept {
    return noticingFailure(std::malloc(size));
}
void* reallocate(void* memory, std::size_t size) noexcept {
    return noticingFailure(std::realloc(memory, size));
}
constexpr XML_Memory_Handling_Suite noticingSuite{&allocate, &reallocate, &std::free};

struct Freeing {
    void operator()(XML_Parser parser) const noexcept { XML_ParserFree(parser); }
};
using ParserPointer = std::unique_ptr<std::remove_pointer_t<XML_Parser>, Freeing>;

std::pair<std::string_view, std::string_view> split(std::string_view name) {
    const std::size_t end = name.find(separator);
    if (end == std::string_view::npos) return {{}, name};
    return {name.substr(0, end), name.substr(end + 1)};
}

bool isBlank(std::string_view text) {
    return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

int XMLCALL onUnknownEncoding(void* /*data*/, const XML_Char* name, XML_Encoding* info) {
    const std::optional<EncodingTable> table = encodingTable(name);
    if (!table) return XML_STATUS_ERROR;
    std::copy(table->begin(), table->end(), std::begin(info->map));
    info->data = nullptr;
    info->convert = nullptr;
    info->release = nullptr;
    return XML_STATUS_OK;
}

}  // namespace

/// Builds the document from what the parser reports. Exceptions must not pass through the parser,
/// which is C, so the first one stops it and is thrown afterwards.
class XmlParser {
  public:
    XmlParser(std::string file, const ReadLimits& limits)
        : document_(std::move(file)),
          limits_(limits),
          parser_(XML_ParserCreate_MM(nullptr, &noticingSuite, separatorText)) {
        if (!parser_) throw std::bad_alloc();
        XML_SetUserData(parser_.get(), this);
        XML_SetElementHandler(parser_.get(), &XmlParser::startElement, &XmlParser::endElement);
        XML_SetCharacterDataHandler(parser_.get(), &XmlParser::text);
        XML_SetNamespaceDeclHandler(parser_.get(), &XmlParser::startPrefix, &XmlParser::endPrefix);
        XML_SetStartDoctypeDeclHandler(parser_.get(), &XmlParser::documentType);
        XML_SetUnknownEncodingHandler(parser_.get(), &onUnknownEncoding, nullptr);
    }

    XmlDocument parse(std::string_view bytes) {
        // The parser counts in `int`.
        const std::size_t most =
            std::min(limits_.fileBytes, static_cast<std::size_t>(std::numeric_limits<int>::max()));
        if (bytes.size() > most) {
            throw ReadError(document_.file(), {},
                            "is longer than " + std::to_string(most) + " bytes");
        }
        // In one piece: fed in small ones, the parser would start long tokens over and over.
        outOfMemory = false;
        const XML_Status status =
            XML_Parse(parser_.get(), bytes.data(), static_cast<int>(bytes.size()), XML_TRUE);
        if (failure_) std::rethrow_exception(failure_);
        if (outOfMemory) throw std::bad_alloc();
        if (status != XML_STATUS_OK) fail(reason(XML_GetErrorCode(parser_.get())));
        return std::move(document_);
    }

  private:
    struct Open {
        Node node;
        std::string text;
    };

    static std::string reason(XML_Error code) {
        if (code == XML_ERROR_UNKNOWN_ENCODING) return "the encoding is not supported";
        if (code == XML_ERROR_NO_ELEMENTS) return "no XML element found";
        return XML_ErrorString(code);
    }

    Position position() const noexcept {
        const auto limited = [](XML_Size size) {
            return static_cast<std::uint32_t>(
                std::min<XML_Size>(size, std::numeric_limits<std::uint32_t>::max()));
        };
        return {limited(XML_GetCurrentLineNumber(parser_.get())),
                limited(XML_GetCurrentColumnNumber(parser_.get()) + 1)};
    }

    [[noreturn]] void fail(std::string_view reason) const {
        throw ReadError(document_.file(), position(), reason);
    }

    template <class Step>
    static void guarded(void* self, Step&& step) noexcept {
        auto& parser = *static_cast<XmlParser*>(self);
        // A stopped parser may still report what it has under way.
        if (parser.failure_) return;
        try {
            step(parser);
        } catch (...) {
            parser.failure_ = std::current_exception();
            XML_StopParser(parser.parser_.get(), XML_FALSE);
        }
    }

    static void XMLCALL startElement(void* self, const XML_Char* name, const XML_Char** pairs) {
        guarded(self, [&](XmlParser& parser) { parser.enter(name, pairs); });
    }
    static void XMLCALL endElement(void* self, const XML_Char* /*name*/) {
        guarded(self, [](XmlParser& parser) { parser.leave(); });
    }
    static void XMLCALL text(void* self, const XML_Char* characters, int count) {
        guarded(self, [&](XmlParser& parser) {
            parser.open_.back().text.append(characters, static_cast<std::size_t>(count));
        });
    }
    static void XMLCALL startPrefix(void* self, const XML_Char* prefix, const XML_Char* uri) {
        guarded(self, [&](XmlParser& parser) {
            parser.prefixes_[prefix == nullptr ? "" : prefix].emplace_back(uri == nullptr ? ""
                                                                                          : uri);
            parser.checkNames();
        });
    }
    static void XMLCALL endPrefix(void* self, const XML_Char* prefix) {
        guarded(self, [&](XmlParser& parser) {
            parser.prefixes_[prefix == nullptr ? "" : prefix].pop_back();
        });
    }
    static void XMLCALL documentType(void* self, const XML_Char* /*name*/,
                                     const XML_Char* /*systemId*/, const XML_Char* /*publicId*/,
                                     int /*hasInternalSubset*/) {
        guarded(self, [](XmlParser& parser) {
            parser.fail("document type declarations are not accepted");
        });
    }

    void enter(std::string_view name, const XML_Char** pairs) {
        if (open_.size() >= limits_.depth) {
            fail("elements are nested deeper than " + std::to_string(limits_.depth) + " levels");
        }
        if (document_.size() >= limits_.elements) {
            fail("the file has more than " + std::to_string(limits_.elements) + " elements");
        }
        XmlDocument::Element element;
        const auto [uri, local] = split(name);
        element.name = nameOf(uri, local);
        element.parent = open_.empty() ? noNode : open_.back().node;
        element.position = position();
        element.firstAttribute = static_cast<std::uint32_t>(document_.attributes_.size());
        for (; *pairs != nullptr; pairs += 2) {
            const auto [attributeUri, attributeLocal] = split(pairs[0]);
            const NameId id = nameOf(attributeUri, attributeLocal);
            const XmlName& attributeName = document_.name(id);
            if (attributeLocal == "type" && (attributeName.isXmi || attributeName.isXsi)) {
                element.type = typeName(pairs[1]);
            }
            document_.attributes_.push_back({id, document_.keep(pairs[1])});
        }
        element.attributeCount =
            static_cast<std::uint32_t>(document_.attributes_.size()) - element.firstAttribute;
        open_.push_back({document_.size(), {}});
        document_.elements_.push_back(element);
    }

    void leave() {
        XmlDocument::Element& element = document_.elements_[open_.back().node];
        element.end = document_.size();
        const std::string& text = open_.back().text;
        const bool hasChildren = element.end > open_.back().node + 1;
        if (!hasChildren || !isBlank(text)) element.text = document_.keep(text);
        open_.pop_back();
    }

    /// A type is named with a prefix that is in scope where it stands, and only there.
    NameId typeName(std::string_view value) {
        const std::size_t first = value.find_first_not_of(" \t\r\n");
        if (first == std::string_view::npos) fail("a type is empty");
        value = value.substr(first, value.find_last_not_of(" \t\r\n") - first + 1);
        const std::size_t colon = value.find(':');
        const bool hasPrefix = colon != std::string_view::npos;
        const std::string prefix(hasPrefix ? value.substr(0, colon) : std::string_view());
        const std::string_view local = hasPrefix ? value.substr(colon + 1) : value;
        const auto known = prefixes_.find(prefix);
        if (known != prefixes_.end() && !known->second.empty()) {
            return nameOf(known->second.back(), local);
        }
        if (hasPrefix) {
            fail("the prefix of the type " + inQuotes(value) + " is not declared");
        }
        return nameOf({}, local);
    }

    NameId nameOf(std::string_view uri, std::string_view local) {
        const NameId id = document_.intern(uri, local);
        checkNames();
        return id;
    }

    void checkNames() const {
        if (document_.nameCount() + prefixes_.size() <= limits_.names) return;
        fail("the file has more than " + std::to_string(limits_.names) + " different names");
    }

    XmlDocument document_;
    const ReadLimits& limits_;
    ParserPointer parser_;
    std::vector<Open> open_;
    std::unordered_map<std::string, std::vector<std::string>> prefixes_;
    std::exception_ptr failure_;
};

XmlDocument parseXml(std::string file, std::string_view bytes, const ReadLimits& limits) {
    return XmlParser(std::move(file), limits).parse(bytes);
}

}  // namespace nuv::zero::xmi
