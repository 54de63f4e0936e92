#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "xmi/FileRoots.h"

namespace nuv::zero::xmi {

/// A text file that lists file roots:
///
///     # What the plant is made of.
///     units = ../libraries/units.zip
///         platform:/plugin/org.units/
///         http://units.org/si = model/si.xmi
///     plugins = /opt/tool/plugins
///
/// A line `NAME = PATH` is a root; paths lead from the folder that the file stands in. Indented
/// lines below it are prefixes that lead into it, each perhaps with the path in it that it leads
/// to. Empty lines mean nothing, nor do those that begin with `#`.
///
///     FileRoots roots;
///     roots.add("model", "projects/plant");
///     RootsFile("plant.roots").addTo(roots);
///
/// A value: copies share nothing.
class RootsFile {
  public:
    struct Prefix {
        std::string text;
        /// Where it leads to in its root.
        std::string path;
        std::uint32_t line = 0;
    };
    struct Row {
        std::string name;
        /// As it can be opened from here.
        std::string path;
        std::uint32_t line = 0;
        std::vector<Prefix> prefixes;
    };

    /// Throws `ReadError` with the line when the file cannot be read or understood.
    explicit RootsFile(const std::string& file);
    /// The same for text that is at hand; paths in it lead from the folder of the path.
    RootsFile(std::string file, std::string_view text);

    const std::vector<Row>& rows() const noexcept { return rows_; }

    /// Adds the roots in the order in which they are listed. Throws `ReadError` with the line when
    /// one of them is not there or may not be added; the file roots are then as before.
    void addTo(FileRoots& roots) const;

  private:
    void parse(std::string_view text);
    void addRow(std::string_view line, std::uint32_t number);
    void addPrefix(std::string_view line, std::uint32_t number);

    std::string file_;
    std::vector<Row> rows_;
};

}  // namespace nuv::zero::xmi
