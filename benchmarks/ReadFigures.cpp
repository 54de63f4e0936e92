#include "benchmarks/ReadFigures.h"

#include <expat.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <unordered_map>
#include <variant>

#include "benchmarks/Format.h"
#include "model/memory/ModelAccess.h"
#include "xmi/XmiReader.h"

namespace nuv::zero::benchmarks {
namespace {

constexpr double ratioTarget = 2.2;
constexpr double bytesTarget = 120;

std::string bytesOf(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) throw std::runtime_error("cannot read " + path);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

void parseByExpat(const std::string& bytes) {
    const std::unique_ptr<XML_ParserStruct, void (*)(XML_Parser)> parser(
        XML_ParserCreateNS("ISO-8859-1", ' '), XML_ParserFree);
    XML_SetElementHandler(
        parser.get(), [](void*, const XML_Char*, const XML_Char**) {},
        [](void*, const XML_Char*) {});
    XML_SetCharacterDataHandler(parser.get(), [](void*, const XML_Char*, int) {});
    if (XML_Parse(parser.get(), bytes.data(), static_cast<int>(bytes.size()), XML_TRUE) == 0) {
        throw std::runtime_error("the XML library refuses the file");
    }
}

/// Makes a second model like a loaded one: the same elements, made in the same order, and the same
/// values, set at once. What that takes is what the model takes by itself.
class ModelCopy {
  public:
    explicit ModelCopy(const xmi::LoadedModel& source) : source_(source) {
        copies_.reserve(source.elements().size());
    }

    void make() {
        for (const ModelElement& each : source_.elements()) {
            copies_.emplace(each, model_.create(access::classOf(each)));
        }
        for (const ModelElement& each : source_.elements()) {
            for (const meta::Property& property : access::allProperties(access::classOf(each))) {
                copyValue(each, property);
            }
        }
    }

  private:
    void copyValue(const ModelElement& from, const meta::Property& property) {
        const Value value = access::read(from, property);
        if (!access::isSet(value)) return;
        std::visit([&](const auto& content) { set(copies_.at(from), property, content); },
                   value.content());
    }
    void set(const ModelElement& /*to*/, const meta::Property& /*property*/, std::monostate) {}
    void set(const ModelElement& to, const meta::Property& property, const ModelElement& target) {
        model_.set(to, property, copies_.at(target));
    }
    void set(const ModelElement& to, const meta::Property& property,
             const std::vector<ModelElement>& targets) {
        if (targets.empty()) return;
        std::vector<ModelElement> list;
        list.reserve(targets.size());
        for (const ModelElement& each : targets) list.push_back(copies_.at(each));
        model_.set(to, property, list);
    }
    template <class Content>
    void set(const ModelElement& to, const meta::Property& property, const Content& content) {
        model_.set(to, property, content);
    }

    const xmi::LoadedModel& source_;
    memory::Model model_;
    std::unordered_map<ModelElement, ModelElement> copies_;
};

/// What the model of a file takes by itself.
double bytesOfModel(const xmi::LoadedModel& loaded) {
    ModelCopy all(loaded);
    const HeapUse withTable = heapUseOf([&] { all.make(); });
    // The table of copies takes the same without a model.
    std::unordered_map<ModelElement, ModelElement> table;
    table.reserve(loaded.elements().size());
    const HeapUse tableAlone = heapUseOf([&] {
        for (const ModelElement& each : loaded.elements()) table.emplace(each, each);
    });
    return static_cast<double>(withTable.remainingBytes - tableAlone.remainingBytes);
}

}  // namespace

ReadRow measureReading(const ModelFile& file, std::size_t rounds) {
    const xmi::LoadedMetamodel metamodel = file.readMetamodel();
    const std::string bytes = bytesOf(file.path);
    const auto read = [&] { return xmi::XmiReader(metamodel).readText(file.path, bytes); };

    ReadRow row;
    row.file = std::filesystem::path(file.path).filename().string();
    row.megabytes = static_cast<double>(bytes.size()) / 1e6;
    std::vector<double> parsing;
    std::vector<double> reading;
    std::vector<double> ratio;
    for (std::size_t round = 0; round < rounds; ++round) {
        settleHeap();
        parsing.push_back(nanosecondsOf([&] { parseByExpat(bytes); }) / 1e6);
        settleHeap();
        reading.push_back(nanosecondsOf([&] { read(); }) / 1e6);
        ratio.push_back(reading.back() / parsing.back());
    }
    row.parsing = spreadOf(parsing);
    row.reading = spreadOf(reading);
    row.ratio = spreadOf(ratio);

    std::optional<xmi::LoadedModel> loaded;
    const HeapUse use = heapUseOf([&] { loaded.emplace(read()); });
    row.objects = loaded->elements().size();
    row.bytesPerObject = (static_cast<double>(use.peakBytes) - bytesOfModel(*loaded)) /
                         static_cast<double>(row.objects);
    return row;
}

void writeTable(std::ostream& out, const std::vector<ReadRow>& rows) {
    out << "| file | parser alone, ms | read and destroyed, ms | MB/s | times the parser | least "
           "to "
           "greatest | target | bytes per object besides the model | target |\n"
           "|---|---|---|---|---|---|---|---|---|\n";
    for (const ReadRow& row : rows) {
        out << "| " << row.file << ", " << fixed(row.megabytes, 1) << " MB, " << row.objects
            << " objects | " << fixed(row.parsing.median, 1) << " | "
            << fixed(row.reading.median, 1) << " | "
            << fixed(row.megabytes * 1e3 / row.reading.median, 0) << " | "
            << judged(row.ratio.median, ratioTarget, 2) << " | " << rangeOf(row.ratio, 2) << " | "
            << fixed(ratioTarget, 1) << " | " << judged(row.bytesPerObject, bytesTarget, 1) << " | "
            << fixed(bytesTarget, 0) << " |\n";
    }
}

}  // namespace nuv::zero::benchmarks
