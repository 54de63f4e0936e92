#include "xmi/EcoreReader.h"

#include <set>
#include <utility>

#include "xmi/BuiltInEcore.h"
#include "xmi/ByteSource.h"
#include "xmi/EcoreBuilder.h"
#include "xmi/EcoreSources.h"

namespace nuv::zero::xmi {

struct EcoreReader::Sources {
    explicit Sources(const ReadLimits& limits) : files(limits) {}

    void add(const std::string& name, std::string bytes, const ReadLimits& limits);

    EcoreSources files;
    /// By bytes, which is rarely more than a handful: the same file may be given twice.
    std::set<std::string, std::less<>> known;
};

void EcoreReader::Sources::add(const std::string& name, std::string bytes,
                               const ReadLimits& limits) {
    const auto [text, isNew] = known.insert(std::move(bytes));
    if (!isNew) return;
    try {
        TextSource source(*text);
        files.add(XmlDocument::parse(name, source, limits), true);
    } catch (...) {
        known.erase(text);
        throw;
    }
}

EcoreReader::EcoreReader(ReadOptions options)
    : options_(options), sources_(std::make_unique<Sources>(options_.limits)) {}

EcoreReader::~EcoreReader() = default;

EcoreReader& EcoreReader::addFile(const std::string& path) {
    FileSource source(path, options_.limits.fileBytes);
    sources_->add(path, allBytes(source), options_.limits);
    return *this;
}

EcoreReader& EcoreReader::addText(const std::string& name, std::string_view bytes) {
    sources_->add(name, std::string(bytes), options_.limits);
    return *this;
}

LoadedMetamodel EcoreReader::read() const {
    EcoreSources& files = sources_->files;
    const std::size_t given = files.size();
    if (given == 0) throw ReadError("metamodel", {}, "no file was given");
    bool needsEcore = false;
    for (std::size_t i = 0; i < given; ++i) needsEcore = needsEcore || files.needsEcore(i);
    if (needsEcore && files.fileWith(ecoreNamespace) == EcoreSources::noFile) {
        files.add(builtInEcore(), false);
    }
    EcoreBuilder builder(files, options_);
    builder.extend();
    return std::move(builder).take();
}

}  // namespace nuv::zero::xmi
