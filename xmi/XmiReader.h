#pragma once

#include <string>
#include <string_view>

#include "xmi/LoadedMetamodel.h"
#include "xmi/LoadedModel.h"
#include "xmi/ReadError.h"
#include "xmi/ReadOptions.h"

namespace nuv::zero::xmi {

/// Reads model files of XMI shape into the in-memory model.
///
///     const LoadedModel model = XmiReader(metamodel).readFile("railway-1.xmi");
///
/// Understood: `xmi:id`, attributes declared as iD, references by id, by fragment path
/// (`//@a.0/@b.1`, `/2/@x`), by names (`#//package/Class`), by sources and keys (`LoadedModel`),
/// several in one attribute, as elements too (`href`, `xmi:idref`), values as attributes or as
/// elements, `xsi:type` and `xmi:type`, several roots. Elements in the namespace of XMI, such as
/// `xmi:Extension`, are skipped. Opposites are not completed: what the file says of each end is
/// what the model holds.
///
/// Files that follow an XML schema are read by a metamodel that says how they do (`XmlForm`):
/// global elements at the top and in place of others, wrappers, texts as values. There is no
/// element for the document itself. What is of another namespace is skipped where anything may
/// stand. Members of a group are properties, each in the order of the file; their order among each
/// other is not kept.
///
/// The file is read and checked as a whole; any bytes give a model or one `ReadError`. The
/// metamodel has to outlive the reader only.
class XmiReader {
  public:
    explicit XmiReader(const LoadedMetamodel& metamodel, ReadOptions options = {});

    LoadedModel readFile(const std::string& path) const;
    /// The same for bytes that are at hand; `name` stands for the path.
    LoadedModel readText(const std::string& name, std::string_view bytes) const;

  private:
    const LoadedMetamodel& metamodel_;
    ReadOptions options_;
};

}  // namespace nuv::zero::xmi
