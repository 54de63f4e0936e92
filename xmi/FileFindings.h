#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "xmi/ByteSource.h"
#include "xmi/Findings.h"
#include "xmi/LoadedModel.h"
#include "xmi/Misfit.h"

namespace nuv::zero::xmi {

/// What is found inside one file while it is read, on its way to the findings of all. In which
/// lines it stands and what its elements are called is known in the end only.
class FileFindings {
  public:
    static constexpr std::uint32_t nothing = 0xFFFFFFFFU;

    /// Where a finding stands.
    struct Spot {
        /// The number of the first byte of the XML element.
        std::uint32_t offset;
        /// The number of the element, or `nothing`.
        std::uint32_t element = nothing;
        /// The first byte of the other XML element, where two are concerned.
        std::uint32_t other = nothing;
    };

    /// REQUIRES: both outlive it.
    FileFindings(const std::string& file, Findings& all)
        : file_(file), all_(all), first_(all.kept().size()) {}

    void add(const Misfit& misfit, const Spot& spot);
    void add(Finding finding, const Spot& spot);
    /// Several elements have the id, and nothing refers to it.
    void addRepeatedId(std::string_view id, const Spot& spot);
    /// So many XML elements were left out with the one that was added last.
    void setLost(std::size_t lost);
    /// An XML element, or an attribute of it, is of a namespace that means nothing and stands where
    /// any may.
    void addForeign(std::string_view uri, std::uint32_t offset);

    /// Completes the findings and puts them in the order of the file. The source is read again up
    /// to the last of them.
    void settle(const LoadedModel& model, ByteSource& source);
    /// The first of the file that is kept; null where there is none. REQUIRES: `settle` was called.
    const Finding* first() const noexcept;

  private:
    /// One that is kept.
    struct Kept {
        Spot spot;
        std::size_t finding;
    };
    struct Foreign {
        std::uint32_t offset;
        std::size_t count = 0;
    };

    void addNotes();
    void sort();
    void place(const LoadedModel& model, ByteSource& source);

    const std::string& file_;
    Findings& all_;
    std::size_t first_;
    std::vector<Kept> kept_;
    bool isLastKept_ = false;
    /// By namespace.
    std::map<std::string, Foreign, std::less<>> foreign_;
};

}  // namespace nuv::zero::xmi
