#include "xmi/FileTree.h"

namespace nuv::zero::xmi {

FileTree::~FileTree() = default;

std::string FileTree::tooLong(std::size_t limit) {
    return "is longer than " + std::to_string(limit) + " bytes";
}

std::string FileTree::tooMany(std::size_t limit) {
    return "holds more than " + std::to_string(limit) + " files and folders";
}

}  // namespace nuv::zero::xmi
