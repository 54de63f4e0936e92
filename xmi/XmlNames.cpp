#include "xmi/XmlNames.h"

namespace nuv::zero::xmi {
namespace {

/// The namespaces of the versions of XMI: "http://www.omg.org/XMI",
/// "http://www.omg.org/spec/XMI/20131001", "http://schema.omg.org/spec/XMI/2.1".
bool isXmiNamespace(std::string_view uri) {
    return uri == "http://www.omg.org/XMI" || uri.starts_with("http://www.omg.org/spec/XMI/") ||
           uri.starts_with("http://schema.omg.org/spec/XMI/");
}

constexpr std::string_view instanceNamespace = "http://www.w3.org/2001/XMLSchema-instance";
constexpr std::string_view xmlNamespace = "http://www.w3.org/XML/1998/namespace";

XmlName nameOf(std::string_view written) {
    XmlName name;
    const std::size_t end = written.find(XmlNames::separator);
    name.local = written;
    if (end != std::string_view::npos) {
        name.uri = written.substr(0, end);
        name.local = written.substr(end + 1);
    }
    name.isXmi = isXmiNamespace(name.uri);
    name.isXsi = name.uri == instanceNamespace;
    name.isXml = name.uri == xmlNamespace;
    return name;
}

}  // namespace

bool XmlNames::isOfXml(std::string_view uri) noexcept {
    return uri == instanceNamespace || uri == xmlNamespace || isXmiNamespace(uri);
}

NameId XmlNames::add(std::string_view written) {
    const auto [id, isNew] = written_.add(written);
    if (isNew) names_.push_back(nameOf(written_[id]));
    return id;
}

}  // namespace nuv::zero::xmi
