#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "xmi/EcoreSources.h"
#include "xmi/XmlForm.h"

namespace nuv::zero::xmi {

/// Takes what the annotations of metamodels say of their form as XML.
class XmlFormReader {
  public:
    /// What a feature is in XML, as far as that makes it another property.
    enum class Kind : std::uint8_t {
        Ordinary,
        /// Takes any child elements.
        ElementWildcard,
        /// Its values stand among those of others, in one order.
        GroupMember,
    };
    static Kind kindOf(const EcoreSources& sources, SourceNode feature);

    /// REQUIRES: all outlive the reader.
    XmlFormReader(const EcoreSources& sources, XmlForm& form,
                  std::map<std::string, std::string, std::less<>>& aliases)
        : sources_(sources), form_(form), aliases_(aliases) {}

    void addClass(const meta::Class& type, SourceNode place, const std::string& nsUri);
    /// A feature of the class that was added last.
    void addFeature(const meta::Property& property, SourceNode feature);

  private:
    /// What an annotation says; empty where it says nothing.
    std::string_view said(SourceNode place, std::string_view key) const;
    std::string namespaceOf(SourceNode feature) const;
    void addGlobal(const meta::Property& property, SourceNode feature, const std::string& name);
    void addWrapper(const meta::Property& property, SourceNode feature, const std::string& name);
    void addWildcard(const meta::Property& property, SourceNode feature, XmlForm::Place place);

    const EcoreSources& sources_;
    XmlForm& form_;
    std::map<std::string, std::string, std::less<>>& aliases_;
    const meta::Class* type_ = nullptr;
    std::string nsUri_;
    /// Whether the class only stands for the top of files.
    bool isDocumentRoot_ = false;
};

}  // namespace nuv::zero::xmi
