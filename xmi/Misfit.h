#pragma once

#include <stdexcept>
#include <string>

#include "xmi/XmlDocument.h"

namespace nuv::zero::xmi {

/// Why the content of an XML element is no part of a model. Stays inside the reader, which makes a
/// `ReadError` of it: only the reader can say in which line the element stands.
class Misfit : public std::runtime_error {
  public:
    Misfit(Node node, const std::string& reason) : std::runtime_error(reason), node_(node) {}

    Node node() const noexcept { return node_; }

  private:
    Node node_;
};

}  // namespace nuv::zero::xmi
