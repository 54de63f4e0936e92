#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "xmi/FilePaths.h"
#include "xmi/FileTree.h"

namespace nuv::zero::xmi {

/// Files whose bytes are at hand, such as what was read from standard input.
///
///     auto texts = std::make_shared<TextFiles>("standard input");
///     texts->add("plant.xmi", std::move(bytes));
///     FileRoots roots;
///     roots.add("model", texts);
///
/// Nothing is read from anywhere. `..` is taken away with the step in front of it, whether or not
/// that is there. May be used by several threads at once while nothing is added.
class TextFiles final : public FileTree {
  public:
    explicit TextFiles(std::string location);
    ~TextFiles() override;

    /// Adds a file. Throws `std::invalid_argument` when the path leads out of the tree or to no
    /// name, or is there already; and `std::bad_alloc`. The files are then as before.
    TextFiles& add(std::string_view path, std::string bytes);

    const std::string& location() const noexcept override { return location_; }
    Opening open(std::string_view path, std::size_t limit) const override;
    std::vector<std::string> files(std::size_t limit) const override;

  private:
    std::string location_;
    FilePaths paths_;
    /// Shared with those who read them.
    std::vector<std::shared_ptr<const std::string>> bytes_;
};

}  // namespace nuv::zero::xmi
