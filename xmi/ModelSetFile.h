#pragma once

#include <string>
#include <vector>

#include "xmi/FileRoots.h"
#include "xmi/LoadedModel.h"
#include "xmi/OutgoingReference.h"

namespace nuv::zero::xmi {

/// One file of a model set.
struct ModelSetFile {
    FilePlace place;
    /// As texts for people name it.
    std::string shown;
    LoadedModel model;
    std::vector<OutgoingReference> outgoing;
    /// What these lead to; null where they lead to nothing.
    std::vector<ModelElement> targets;
};

}  // namespace nuv::zero::xmi
