#include "xmi/FilePreamble.h"

#include <algorithm>

#include "xmi/Fragment.h"
#include "xmi/XmlNames.h"
#include "xmi/XmlParser.h"

namespace nuv::zero::xmi {
namespace {

/// Stops the parser; says nothing.
struct Enough {};

class FirstTag final : public XmlHandler {
  public:
    FirstTag(FilePreamble& preamble, XmlNames& names) : preamble_(preamble), names_(names) {}

    void declare(std::string_view /*prefix*/, std::string_view uri) override { add(uri); }
    void enter(const XmlStart& start) override {
        add(names_[start.name].uri);
        for (const XmlAttribute& each : start.attributes) {
            const XmlName& name = names_[each.name];
            if (!name.isXsi || name.local != "schemaLocation") continue;
            const std::vector<std::string_view> words = splitAtBlanks(each.value);
            for (std::size_t i = 0; i + 1 < words.size(); i += 2) {
                preamble_.locations.emplace_back(words[i], words[i + 1]);
            }
        }
        throw Enough();
    }
    void text(std::string_view /*part*/) override {}
    void leave() override {}
    bool takesUnknownTypes() const noexcept override { return true; }

  private:
    void add(std::string_view uri) {
        if (uri.empty() || XmlNames::isOfXml(uri)) return;
        auto& all = preamble_.namespaces;
        if (std::find(all.begin(), all.end(), uri) == all.end()) all.emplace_back(uri);
    }

    FilePreamble& preamble_;
    XmlNames& names_;
};

}  // namespace

std::string_view FilePreamble::locationOf(std::string_view nsUri) const noexcept {
    const auto found = std::find_if(locations.begin(), locations.end(),
                                    [&](const auto& each) { return each.first == nsUri; });
    return found == locations.end() ? std::string_view() : found->second;
}

FilePreamble FilePreamble::of(const std::string& file, ByteSource& source,
                              const ReadLimits& limits) {
    FilePreamble preamble;
    XmlNames names;
    FirstTag handler(preamble, names);
    try {
        parseXml(file, source, limits, names, handler);
    } catch (const Enough&) {
        return preamble;
    }
    return preamble;
}

}  // namespace nuv::zero::xmi
