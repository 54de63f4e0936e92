#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "benchmarks/Figures.h"
#include "benchmarks/Shapes.h"

namespace nuv::zero::benchmarks {

/// A model file with its metamodel. The biggest one of the folder of sample models, which may
/// be absent.
struct ModelFile {
    std::string path;
    std::string metamodelPath;

    /// Null where the folder or the file is absent.
    static std::unique_ptr<ModelFile> biggest();
};

/// The model of the file as a shape called `file`.
std::unique_ptr<Shape> readShape(const ModelFile& file);

/// Megabytes per second: reading the file into a model, and the XML library's own parse alone.
std::vector<Figure> measureReading(const ModelFile& file, std::size_t rounds);

}  // namespace nuv::zero::benchmarks
