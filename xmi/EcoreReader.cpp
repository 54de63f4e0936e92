#include "xmi/EcoreReader.h"

#include <utility>

#include "xmi/ByteSource.h"
#include "xmi/EcoreBuilder.h"
#include "xmi/EcoreSources.h"

namespace nuv::zero::xmi {

struct EcoreReader::Sources {
    explicit Sources(const ReadLimits& limits) : files(limits) {}
    EcoreSources files;
};

EcoreReader::EcoreReader(ReadOptions options)
    : options_(options), sources_(std::make_unique<Sources>(options_.limits)) {}

EcoreReader::~EcoreReader() = default;

EcoreReader& EcoreReader::addFile(const std::string& path) {
    FileSource source(path, options_.limits.fileBytes);
    sources_->files.add(XmlDocument::parse(path, source, options_.limits));
    return *this;
}

EcoreReader& EcoreReader::addText(const std::string& name, std::string_view bytes) {
    TextSource source(bytes);
    sources_->files.add(XmlDocument::parse(name, source, options_.limits));
    return *this;
}

LoadedMetamodel EcoreReader::read() const {
    if (sources_->files.empty()) throw ReadError("metamodel", {}, "no file was given");
    return EcoreBuilder(sources_->files, options_).build();
}

}  // namespace nuv::zero::xmi
