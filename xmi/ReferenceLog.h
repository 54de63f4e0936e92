#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "xmi/FragmentIndex.h"

namespace nuv::zero::xmi {

/// The references of a file, to be resolved when all elements are there, in the order of the file.
///
/// Kept small, since most of a large file is references, and most of these are long paths that
/// begin as the one before: a path of the usual form is a few numbers for the steps in which it
/// differs from it. Everything else is kept as the text that it is.
class ReferenceLog {
  public:
    /// Where references stand.
    struct Place {
        /// The XML element.
        Node node;
        /// The number of the element that refers.
        std::uint32_t element;
        /// The number of the feature.
        std::uint32_t feature;
    };

    /// REQUIRES: the index outlives the log; it numbers the features that paths lead through.
    explicit ReferenceLog(FragmentIndex& index) : index_(index) {}

    /// One reference, whatever the text looks like.
    void addOne(const Place& place, std::string_view text);
    /// Any number of references.
    void addList(const Place& place, std::string_view text);

    class Reader;

  private:
    enum class Form : std::uint8_t { One, List, Paths };
    struct Block {
        std::unique_ptr<char[]> bytes;
        std::size_t used;
        std::size_t capacity;
    };

    void begin(const Place& place, Form form);
    void putNumber(std::uint64_t number);
    bool putPaths(std::string_view text);
    /// Takes a path from the front of the text, unless it has another form than the usual one.
    bool putPath(std::string_view& text);
    bool putStep(std::string_view step);
    /// The number of a feature; `TextTable::none` for a text that may be something else.
    FragmentIndex::Tag tagOf(std::string_view feature);
    void flush(const Place& place);

    FragmentIndex& index_;
    /// Features that were asked for last; a model has few.
    struct Known {
        FragmentIndex::Tag tag = TextTable::none;
    };
    std::array<Known, 128> known_;
    std::vector<Block> blocks_;
    /// The place that was added last.
    Place before_{};
    /// What is being added.
    std::string record_;
    /// The path that was added last, and where each of its steps ends; the root is the first.
    std::string previous_;
    std::vector<std::size_t> stepEnds_;
};

/// One step of a path that is kept in numbers.
struct LoggedStep {
    FragmentIndex::Tag tag;
    std::uint32_t index;
    /// Whether the index is written, as it need not be where it is 0.
    bool hasIndex;
};

/// Reads a log from the front to the back. The log has to outlive it, and to stay as it is.
class ReferenceLog::Reader {
  public:
    explicit Reader(const ReferenceLog& log) : log_(log) {}

    /// Goes on to the next place; says whether there is one.
    bool next();
    const Place& place() const noexcept { return place_; }

    bool isPaths() const noexcept { return form_ == Form::Paths; }
    bool isOne() const noexcept { return form_ == Form::One; }
    /// REQUIRES: `!isPaths()`.
    std::string_view text() const noexcept { return text_; }

    /// Goes on to the next path of the place; says whether there is one. REQUIRES: `isPaths()`.
    bool nextPath();
    /// Which root, and the way down from it.
    std::size_t root() const noexcept { return root_ == 0 ? 0 : root_ - 1; }
    const std::vector<LoggedStep>& steps() const noexcept { return steps_; }
    /// How many of the steps are those of the path before; nothing where its root was another one.
    std::size_t sharedSteps() const noexcept { return shared_ == 0 ? 0 : shared_ - 1; }
    bool sharesRoot() const noexcept { return shared_ != 0; }
    /// The path as it is written in the file.
    std::string pathText() const;

  private:
    std::uint64_t number() noexcept;

    const ReferenceLog& log_;
    std::size_t block_ = 0;
    std::size_t at_ = 0;
    Place place_{};
    Form form_ = Form::List;
    std::string_view text_;
    /// One more than the number of the root; 0 where it is not written.
    std::uint64_t root_ = 0;
    std::size_t shared_ = 0;
    std::vector<LoggedStep> steps_;
};

}  // namespace nuv::zero::xmi
