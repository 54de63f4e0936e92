#include <exception>
#include <fstream>
#include <functional>
#include <iostream>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "benchmarks/FileModel.h"
#include "benchmarks/ForeignTable.h"
#include "benchmarks/HostTable.h"
#include "benchmarks/ModelFigures.h"
#include "benchmarks/Options.h"
#include "benchmarks/Plot.h"
#include "benchmarks/ReadFigures.h"
#include "benchmarks/SingleCases.h"
#include "benchmarks/Summary.h"
#include "benchmarks/VariantTable.h"
#include "benchmarks/WalkFigures.h"
#include "benchmarks/WalkTable.h"

namespace {

using namespace nuv::zero::benchmarks;

/// What the tables are made of.
struct Measured {
    std::vector<WalkRow> walks;
    std::vector<VariantRow> variants;
    std::vector<VariantRow> whereabouts;
    std::vector<ForeignRow> foreign;
    std::vector<HostRow> host;
};

template <class Row>
void append(std::vector<Row>& rows, std::vector<Row> more) {
    rows.insert(rows.end(), std::make_move_iterator(more.begin()),
                std::make_move_iterator(more.end()));
}

/// All kinds on the rich shape; elsewhere one of them tells enough.
bool wantsVariants(const Options& options, const std::string& section, const Walk& walk) {
    if (!options.wants(section)) return false;
    return walk.kind == Kind::Subtractive || walk.shape->name == "rich" || !options.kind.empty();
}

bool wantsForeign(const Options& options, const Walk& walk) {
    return options.wants("foreign") && walk.kind == Kind::Subtractive &&
           walk.shape->roots.size() == 1;
}

void measureWalks(const Options& options, const Shape& shape, Measured& measured) {
    for (const Kind kind : allKinds) {
        if (!options.kind.empty() && options.kind != nameOf(kind)) continue;
        for (const auto order : allOrders) {
            if (!options.order.empty() && options.order != nameOf(order)) continue;
            Walk walk;
            walk.shape = &shape;
            walk.kind = kind;
            walk.order = order;
            std::cerr << shape.name << ", " << nameOf(kind) << ", " << nameOf(order) << '\n';
            if (options.wants("walks")) {
                measured.walks.push_back(measureWalk(walk, options.rounds));
            }
            if (wantsVariants(options, "variants", walk)) {
                measured.variants.push_back(
                    measureVariants(walk, everydayVariants(), options.rounds));
            }
            if (wantsVariants(options, "whereabouts", walk)) {
                measured.whereabouts.push_back(
                    measureVariants(walk, whereaboutsVariants(), options.rounds));
            }
            if (wantsForeign(options, walk)) {
                ForeignRow row = measureForeign(walk, options.rounds);
                if (!row.cells.empty()) measured.foreign.push_back(std::move(row));
            }
        }
    }
}

std::unique_ptr<Shape> shapeFor(const std::string& name) {
    if (name != "file") return makeShape(name, shapeSize(name));
    const auto file = ModelFile::biggest();
    if (file) return readShape(*file);
    std::cerr << "skipped: the shape 'file', since there is no folder of sample models\n";
    return nullptr;
}

void writeHeading(const std::string& heading) {
    std::cout << "\n### " << heading << "\n\n";
}

void writeFigures(const Options& options, const std::string& section, const std::string& heading,
                  const std::function<std::vector<Figure>(std::size_t)>& measure) {
    if (!options.wants(section)) return;
    std::cerr << section << '\n';
    const std::vector<Figure> figures = measure(options.rounds);
    writeHeading(heading);
    writeTable(std::cout, figures);
}

void writeReading(const Options& options) {
    if (!options.wants("reading")) return;
    std::vector<ReadRow> rows;
    for (const auto& file : {ModelFile::biggest(), ModelFile::withIds()}) {
        if (!file) continue;
        std::cerr << "reading " << file->path << '\n';
        rows.push_back(measureReading(*file, options.rounds));
    }
    if (rows.empty()) {
        std::cerr << "skipped: reading files, since there is no folder of sample models\n";
        return;
    }
    writeHeading("Reading model files");
    writeTable(std::cout, rows);
}

std::vector<Figure> measureStarts(std::size_t rounds) {
    std::vector<Figure> figures = measureFirstLinks(rounds);
    append(figures, measureSetup(rounds));
    return figures;
}

/// Nowhere, where no file is named.
void writeFile(const std::string& path, const std::function<void(std::ostream&)>& write) {
    if (path.empty()) return;
    std::ofstream file(path);
    write(file);
    if (!file.flush()) throw std::runtime_error("cannot write " + path);
}

void writeTables(const Options& options) {
    Measured measured;
    const bool wantsShapes = options.wants("walks") || options.wants("variants") ||
                             options.wants("whereabouts") || options.wants("foreign") ||
                             options.wants("host");
    std::vector<std::string> names = options.shapes;
    if (names.empty()) {
        names = shapeNames();
        names.emplace_back("file");
    }
    for (const std::string& name : names) {
        if (!wantsShapes) break;
        const auto shape = shapeFor(name);
        if (!shape) continue;
        measureWalks(options, *shape, measured);
        if (options.wants("host")) {
            std::cerr << shape->name << ", by way of a host\n";
            measured.host.push_back(measureHost(*shape, options.rounds));
        }
    }
    if (!measured.walks.empty()) {
        writeHeading("Walks");
        writeTable(std::cout, measured.walks);
    }
    if (!measured.variants.empty()) {
        writeHeading("Walks with more to do");
        writeTable(std::cout, measured.variants, everydayVariants());
    }
    if (!measured.whereabouts.empty()) {
        writeHeading("Walks that are asked where they are");
        writeTable(std::cout, measured.whereabouts, whereaboutsVariants());
    }
    if (!measured.foreign.empty()) {
        writeHeading("Other libraries over the same model");
        writeTable(std::cout, measured.foreign);
    }
    if (!measured.host.empty()) {
        writeHeading("A host's model of {store, number} handles over the built-in model");
        writeTable(std::cout, measured.host);
    }
    writeFigures(options, "first", "Starting and copying", measureStarts);
    writeFigures(options, "scaling", "Growth with the model", measureScaling);
    writeFigures(options, "threads", "Two threads", measureThreads);
    writeFigures(options, "model", "The in-memory model", measureModel);
    writeReading(options);
    const std::vector<GroupSummary> groups = summarise(measured.walks);
    writeFile(options.plot, [&](std::ostream& out) { drawPlot(out, groups); });
    writeFile(options.summary, [&](std::ostream& out) { writeSummary(out, groups); });
}

}  // namespace

int main(int argc, char** argv) {
    try {
        const Options options = Options::parse({argv + 1, argv + argc});
        if (options.help) {
            std::cout << Options::usage();
        } else if (options.single) {
            runSingleCases(argc, argv);
        } else {
            writeTables(options);
        }
        return 0;
    } catch (const UsageError& error) {
        std::cerr << "walk-benchmarks: " << error.what() << '\n' << Options::usage();
        return 2;
    } catch (const std::exception& error) {
        std::cerr << "walk-benchmarks: " << error.what() << '\n';
        return 1;
    }
}
