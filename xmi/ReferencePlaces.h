#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "xmi/FileRoots.h"
#include "xmi/Finding.h"
#include "xmi/MetamodelSet.h"

namespace nuv::zero::xmi {

/// Where the references between the files of a model set lead: what stands in front of their `#`.
class ReferencePlaces {
  public:
    /// What came of looking for a file.
    struct Lookup {
        /// Nothing where there is none.
        std::optional<FilePlace> place;
        /// The path in the file that fragments lead from, where it is not the file's own.
        std::string base;
        /// Why there is none.
        Finding::Reason reason = Finding::Reason::MissingFile;
        /// The same, to be said of the file.
        std::string message;
        std::string lookedUpBy;
        std::vector<std::string> tried;
    };

    /// REQUIRES: both outlive it.
    ReferencePlaces(const FileRoots& roots, MetamodelSet& metamodels, std::size_t fileBytes)
        : roots_(roots), metamodels_(metamodels), fileBytes_(fileBytes) {}

    /// Looks for the file that a reference in another one means, once for each spelling and folder.
    const Lookup& find(const FilePlace& from, std::string_view file);
    /// The same without asking for metamodels that are not there, and without keeping the answer.
    Lookup explain(const FilePlace& from, std::string_view file) const;
    void forgetAll() noexcept { known_.clear(); }

    /// The fragment of a reference as it is in the file.
    static std::string fragmentIn(const Lookup& lookup, std::string_view fragment);

  private:
    Lookup lookUp(const FilePlace& from, std::string_view file, MetamodelSet* metamodels) const;
    bool lookUpNamespace(Lookup& lookup, std::string_view nsUri) const;

    const FileRoots& roots_;
    MetamodelSet& metamodels_;
    std::size_t fileBytes_;
    /// By the folder that a reference leads from, and the reference without its fragment.
    std::map<std::string, Lookup, std::less<>> known_;
    /// The answer to the last question, since neighbours mostly ask the same.
    const Lookup* last_ = nullptr;
    std::string lastFile_;
    FilePlace lastFrom_;
};

}  // namespace nuv::zero::xmi
