#include "xmi/XmiReader.h"

#include "xmi/SourceFile.h"
#include "xmi/XmiBuilder.h"
#include "xmi/XmlParser.h"

namespace nuv::zero::xmi {

XmiReader::XmiReader(const LoadedMetamodel& metamodel, ReadOptions options)
    : metamodel_(metamodel), options_(options) {}

LoadedModel XmiReader::readFile(const std::string& path) const {
    return readText(path, xmi::readFile(path, options_.limits.fileBytes));
}

LoadedModel XmiReader::readText(const std::string& name, std::string_view bytes) const {
    const XmlDocument document = parseXml(name, bytes, options_.limits);
    return XmiBuilder(metamodel_, document, options_).build();
}

}  // namespace nuv::zero::xmi
