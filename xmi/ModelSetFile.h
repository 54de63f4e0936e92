#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "xmi/FileRoots.h"
#include "xmi/Findings.h"
#include "xmi/LoadedModel.h"
#include "xmi/OutgoingReference.h"

namespace nuv::zero::xmi {

/// One file of a model set.
struct ModelSetFile {
    FilePlace place;
    /// As texts for people name it.
    std::string shown;
    LoadedModel model;
    /// The rest is there while the file is loaded only.
    std::vector<OutgoingReference> outgoing;
    /// What these lead to; null where they lead to nothing.
    std::vector<ModelElement> targets;
    /// What was found when the file was read.
    Findings findings;
    /// What was found of the outgoing references, each with the byte that it stands at.
    std::vector<std::pair<std::size_t, Finding>> linkFindings;
};

}  // namespace nuv::zero::xmi
