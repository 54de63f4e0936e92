#pragma once

#include <string>

#include "CommandLine.h"
#include "Progress.h"
#include "xmi/FileRoots.h"
#include "xmi/LoadOptions.h"

namespace model_walk {

/// Where the model lies that the command line names.
struct ModelPlace {
    nuv::zero::xmi::FileRoots roots;
    /// From the first root's folder; empty for the folder as a whole.
    std::string path;
};

/// The roots that the options name, behind the model's own folder, archive or standard input, which
/// is called `model`. Throws `UsageError` for options of a wrong form, and `ReadError` for a root
/// that is not there.
ModelPlace modelPlaceOf(const CommandLine& line);

/// A path on this system, as it is in the first root: as it stands where there is such a file, and
/// else from the present folder. A text that names a root stays as it is.
std::string pathInModel(const nuv::zero::xmi::FileRoots& roots, const std::string& path);

/// The progress hears of each file. Throws `UsageError` for what is no limit, no number and no pair
/// of namespaces.
nuv::zero::xmi::LoadOptions loadOptionsOf(const CommandLine& line, Progress& progress);

}  // namespace model_walk
