#include "xmi/FileTree.h"

namespace nuv::zero::xmi {

FileTree::~FileTree() = default;

}  // namespace nuv::zero::xmi
