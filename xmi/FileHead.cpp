#include "xmi/FileHead.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "xmi/Expat.h"
#include "xmi/Fragment.h"
#include "xmi/TextTable.h"
#include "xmi/XmlNames.h"

namespace nuv::zero::xmi {
namespace {

/// Exceptions must not pass through the parser, which is C.
struct HeadReader {
    Expat parser;
    XmlNames names;
    TextTable declared;
    FileHead head;
    std::exception_ptr failure;

    template <class Step>
    static void guarded(void* self, const Step& step) noexcept {
        auto& reader = *static_cast<HeadReader*>(self);
        try {
            step(reader);
        } catch (...) {
            reader.failure = std::current_exception();
            XML_StopParser(reader.parser.get(), XML_FALSE);
        }
    }

    static void XMLCALL startPrefix(void* self, const XML_Char* /*prefix*/, const XML_Char* uri) {
        guarded(self, [&](HeadReader& reader) {
            if (uri != nullptr) reader.declare(uri);
        });
    }
    static void XMLCALL startElement(void* self, const XML_Char* /*name*/, const XML_Char** pairs) {
        guarded(self, [&](HeadReader& reader) {
            for (; *pairs != nullptr; pairs += 2) reader.addLocations(pairs[0], pairs[1]);
            XML_StopParser(reader.parser.get(), XML_FALSE);
        });
    }

    void declare(const std::string& uri) {
        const XmlName& name = names[names.add(uri + XmlNames::separator)];
        const bool isOfFormat = name.isXmi || name.isXsi || name.isXml || uri.empty();
        // It may have been declared under another prefix.
        if (!isOfFormat && declared.add(uri).second) head.namespaces.push_back(uri);
    }

    void addLocations(std::string_view attribute, std::string_view value) {
        const XmlName& name = names[names.add(attribute)];
        if (!name.isXsi || name.local != "schemaLocation") return;
        const std::vector<std::string_view> words = splitAtBlanks(value);
        for (std::size_t i = 0; i + 1 < words.size(); i += 2) {
            head.locations.emplace_back(words[i], words[i + 1]);
        }
    }
};

}  // namespace

std::string_view FileHead::locationOf(std::string_view nsUri) const noexcept {
    const auto found = std::find_if(locations.begin(), locations.end(),
                                    [&](const auto& each) { return each.first == nsUri; });
    return found == locations.end() ? std::string_view() : std::string_view(found->second);
}

FileHead FileHead::of(ByteSource& source) {
    HeadReader reader;
    XML_ParserStruct* const parser = reader.parser.get();
    XML_SetUserData(parser, &reader);
    XML_SetStartElementHandler(parser, &HeadReader::startElement);
    XML_SetStartNamespaceDeclHandler(parser, &HeadReader::startPrefix);
    reader.parser.parse(source);
    if (reader.failure) std::rethrow_exception(reader.failure);
    return std::move(reader.head);
}

}  // namespace nuv::zero::xmi
