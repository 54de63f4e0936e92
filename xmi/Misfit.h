#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

#include "model/memory/Metamodel.h"
#include "xmi/Finding.h"
#include "xmi/XmlDocument.h"

namespace nuv::zero::xmi {

/// Why the content of an XML element is no part of a model. Stays inside the reader, which makes a
/// `ReadError` or a `Finding` of it: only the reader can say in which line the element stands.
class Misfit : public std::runtime_error {
  public:
    using Reason = Finding::Reason;
    using Weight = Finding::Weight;
    /// What a finding says besides the text.
    struct Kind {
        Reason reason;
        Weight weight;
        /// Of the reference that is wrong.
        std::string property = {};
        std::string reference = {};
        /// The other XML element, where two are concerned.
        Node other = noNode;
    };

    Misfit(Node node, Kind kind, const std::string& text)
        : std::runtime_error(text), node_(node), kind_(std::move(kind)) {}
    /// The file demands more than it may, so nothing of it is read.
    Misfit(Node node, const std::string& text) : std::runtime_error(text), node_(node) {}

    Node node() const noexcept { return node_; }
    bool isOfTheWholeFile() const noexcept { return !kind_; }
    /// REQUIRES: `!isOfTheWholeFile()`.
    const Kind& kind() const noexcept { return *kind_; }

  private:
    Node node_;
    std::optional<Kind> kind_;
};

/// What a model lacks where a value of the property is left out.
Finding::Weight weightOf(const meta::Property& property) noexcept;

/// `Class.feature`, for error texts.
std::string nameOf(const meta::Property& property);

}  // namespace nuv::zero::xmi
