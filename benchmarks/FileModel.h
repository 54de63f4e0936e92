#pragma once

#include <memory>
#include <string>

#include "benchmarks/Shapes.h"
#include "xmi/LoadedMetamodel.h"

namespace nuv::zero::benchmarks {

/// A model file with its metamodel, of the folder of sample models, which may be absent.
struct ModelFile {
    std::string path;
    std::string metamodelPath;

    /// The biggest file; its references are paths. Null where the folder or the file is absent.
    static std::unique_ptr<ModelFile> biggest();
    /// A file whose references are ids. Null as above.
    static std::unique_ptr<ModelFile> withIds();

    xmi::LoadedMetamodel readMetamodel() const;
};

/// The model of the file as a shape called `file`.
std::unique_ptr<Shape> readShape(const ModelFile& file);

}  // namespace nuv::zero::benchmarks
