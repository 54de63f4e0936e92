#include "xmi/XmiReader.h"

#include "xmi/ByteSource.h"
#include "xmi/XmiBuilder.h"

namespace nuv::zero::xmi {

XmiReader::XmiReader(const LoadedMetamodel& metamodel, ReadOptions options)
    : metamodel_(metamodel), options_(options) {}

LoadedModel XmiReader::readFile(const std::string& path) const {
    FileSource source(path, options_.limits.fileBytes);
    return XmiBuilder(metamodel_, path, source, options_).build();
}

LoadedModel XmiReader::readText(const std::string& name, std::string_view bytes) const {
    TextSource source(bytes);
    return XmiBuilder(metamodel_, name, source, options_).build();
}

}  // namespace nuv::zero::xmi
