#include <exception>
#include <iostream>
#include <optional>

#include "Names.h"
#include "Options.h"
#include "Output.h"
#include "Rules.h"
#include "xmi/EcoreReader.h"
#include "xmi/XmiReader.h"

namespace {

enum ExitStatus { done = 0, fileFailed = 1, wrongUsage = 2 };

void tellLeftOut(const std::string& file, std::size_t count) {
    if (count == 0) return;
    std::cerr << file << ": " << count
              << (count == 1 ? " reference into another file is"
                             : " references into other files are")
              << " left out\n";
}

void walk(const model_walk::Options& options) {
    namespace xmi = nuv::zero::xmi;
    xmi::ReadOptions readOptions;
    if (options.skipCrossFile) readOptions.crossFile = xmi::CrossFile::LeaveOut;

    xmi::EcoreReader metamodelReader(readOptions);
    for (const std::string& file : options.metamodelFiles) metamodelReader.addFile(file);
    const xmi::LoadedMetamodel metamodel = metamodelReader.read();
    const xmi::LoadedModel model =
        xmi::XmiReader(metamodel, readOptions).readFile(options.modelFile);

    const model_walk::Names names(metamodel, model);
    const auto result = model_walk::prepare(options, names, model);
    tellLeftOut("the metamodel", metamodel.leftOut());
    tellLeftOut(options.modelFile, model.leftOut());
    model_walk::Sink sink;
    model_walk::Output(names, model, sink).print(result, options.format);
}

}  // namespace

int main(int argc, char** argv) {
    try {
        const std::optional<model_walk::Options> options = model_walk::parseOptions(argc, argv);
        if (options) walk(*options);
        return done;
    } catch (const model_walk::UsageError& error) {
        std::cerr << "model-walk: " << nuv::zero::xmi::onOneLine(error.what()) << '\n';
        return wrongUsage;
    } catch (const nuv::zero::xmi::ReadError& error) {
        std::cerr << error.what() << '\n';
        return fileFailed;
    } catch (const std::exception& error) {
        std::cerr << "model-walk: " << nuv::zero::xmi::onOneLine(error.what()) << '\n';
        return fileFailed;
    }
}
