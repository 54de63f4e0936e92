#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "xmi/LoadedMetamodel.h"
#include "xmi/ReadError.h"
#include "xmi/ReadOptions.h"

namespace nuv::zero::xmi {

/// Reads Ecore metamodels into one in-memory metamodel.
///
///     LoadedMetamodel uml = EcoreReader().addFile("UML.ecore").addFile("Types.ecore").read();
///
/// Files that refer to each other are given together, in any order; a reference is followed by
/// namespace or by path. The data types of Ecore itself need no file.
///
/// The mapping: a class becomes a class with the qualified name `package::Class`; a reference
/// becomes a property with the association flag (containment: composite; derived: derived) and an
/// opposite; an attribute becomes a property without it. Types whose values are Java strings are
/// the standard string type, integers become integer types, every other data type and every
/// enumeration a text type. `EObject` as a type becomes the class of all elements. Annotations,
/// operations, default values and type arguments have no counterpart.
///
/// Any bytes give a metamodel or one `ReadError`.
class EcoreReader {
  public:
    explicit EcoreReader(ReadOptions options = {});
    EcoreReader(const EcoreReader&) = delete;
    EcoreReader& operator=(const EcoreReader&) = delete;
    ~EcoreReader();

    /// Reads and parses one file. Throws `ReadError`, and then the reader is as it was.
    EcoreReader& addFile(const std::string& path);
    /// The same for bytes that are at hand; `name` stands for the path.
    EcoreReader& addText(const std::string& name, std::string_view bytes);

    /// The metamodel of all files added. Throws `ReadError`, also when there is no file.
    LoadedMetamodel read() const;

  private:
    struct Sources;
    ReadOptions options_;
    std::unique_ptr<Sources> sources_;
};

}  // namespace nuv::zero::xmi
