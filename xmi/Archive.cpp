#include "xmi/Archive.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <mutex>
#include <optional>
#include <system_error>
#include <utility>

#include "xmi/FilePaths.h"
#include "xmi/ReadError.h"
#include "xmi/ZipFile.h"

namespace nuv::zero::xmi {
namespace {

/// Models that are named where there should be one.
constexpr std::size_t mostNamed = 5;
/// Bytes by which XML is told from other files.
constexpr std::size_t beginning = 64;

std::string ownPath(const std::string& path) {
    std::error_code ignored;
    const std::string own = std::filesystem::canonical(path, ignored).string();
    return own.empty() ? path : own;
}

bool isXml(std::string_view bytes) {
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    // In UTF-16 every other byte is zero.
    constexpr std::array<std::string_view, 2> wideMarks = {"\xFE\xFF", "\xFF\xFE"};
    if (bytes.starts_with(wideMarks[0]) || bytes.starts_with(wideMarks[1])) return true;
    if (bytes.starts_with(mark)) bytes.remove_prefix(mark.size());
    const std::size_t first = bytes.find_first_not_of(" \t\r\n");
    return first != std::string_view::npos && bytes[first] == '<';
}

}  // namespace

/// What an archive shares with the files that were opened in it.
class Archive::Content {
  public:
    Content(std::string location, std::unique_ptr<ByteSource> bytes, const ArchiveLimits& limits)
        : zip_(std::move(location), std::move(bytes), limits.files),
          limit_(limits.inflatedBytes),
          inflated_(zip_.entries().size()) {
        for (std::size_t i = 0; i < zip_.entries().size(); ++i) add(i);
    }

    const FilePaths& paths() const noexcept { return paths_; }
    const ZipFile& zip() const noexcept { return zip_; }

    /// Why a file is not opened; empty when it is.
    std::string refusal(std::size_t file) const {
        const ZipFile::Entry& entry = zip_.entries()[file];
        if (entry.isLink) return "is a link inside an archive";
        if (entry.isEncrypted) return "is encrypted";
        if (!entry.isPlain) return "is compressed in a way that is not supported";
        return {};
    }

    std::string inflate(std::size_t file, std::size_t limit) {
        std::string bytes = zip_.inflate(file, limit);
        count(file, bytes.size());
        return bytes;
    }

  private:
    void add(std::size_t number) {
        const std::string& name = zip_.entries()[number].name;
        if (name.find('\\') != std::string::npos) fail("with a backslash in its name", name);
        std::optional<std::string> path = withoutDetours(name);
        if (!path) fail("whose name leads out of it", name);
        const bool isFolder = path->empty() || name.ends_with('/');
        if (!isFolder && !paths_.add(std::move(*path), number)) fail("that is there twice", name);
    }

    [[noreturn]] void fail(const std::string& how, const std::string& name) const {
        throw ReadError(zip_.location(), {}, "holds a file " + how + ": " + inQuotes(name));
    }

    void count(std::size_t file, std::size_t bytes) {
        const std::lock_guard<std::mutex> locked(mutex_);
        if (bytes > limit_ - total_ + inflated_[file]) {
            throw ReadError(zip_.location(), {},
                            "inflates to more than " + std::to_string(limit_) + " bytes");
        }
        total_ = total_ - inflated_[file] + bytes;
        inflated_[file] = bytes;
    }

    ZipFile zip_;
    FilePaths paths_;
    std::size_t limit_;
    std::mutex mutex_;
    std::size_t total_ = 0;
    /// By the number of the file.
    std::vector<std::size_t> inflated_;
};

/// The bytes of a file in an archive, inflated when they are first needed.
class Archive::EntrySource final : public ByteSource {
  public:
    EntrySource(std::shared_ptr<Content> content, std::size_t file, std::size_t limit)
        : content_(std::move(content)), file_(file), limit_(limit) {}

    std::size_t size() override { return bytes().size(); }
    std::size_t read(std::size_t from, char* into, std::size_t wanted) override {
        return TextSource(bytes()).read(from, into, wanted);
    }

  private:
    std::string_view bytes() {
        if (!bytes_) bytes_ = content_->inflate(file_, limit_);
        return *bytes_;
    }

    std::shared_ptr<Content> content_;
    std::size_t file_;
    std::size_t limit_;
    std::optional<std::string> bytes_;
};

Archive::Archive(const std::string& path, ArchiveLimits limits)
    : Archive(ownPath(path), std::make_unique<FileSource>(path, limits.bytes), limits) {}

Archive::Archive(std::string location, std::unique_ptr<ByteSource> bytes, ArchiveLimits limits)
    : location_(std::move(location)) {
    if (bytes->size() > limits.bytes) throw ReadError(location_, {}, tooLong(limits.bytes));
    content_ = std::make_shared<Content>(location_, std::move(bytes), limits);
}

Archive::~Archive() = default;

FileTree::Opening Archive::open(std::string_view path, std::size_t limit) const {
    Opening opening;
    FilePaths::Found found = content_->paths().find(path);
    opening.outcome = found.outcome;
    if (found.outcome != Outcome::Opened) return opening;
    opening.reason = content_->refusal(found.number);
    if (opening.reason.empty() && content_->zip().entries()[found.number].size > limit) {
        opening.reason = tooLong(limit);
    }
    if (!opening.reason.empty()) {
        opening.outcome = Outcome::Refused;
        return opening;
    }
    opening.bytes = std::make_unique<EntrySource>(content_, found.number, limit);
    opening.path = std::move(found.path);
    return opening;
}

std::vector<std::string> Archive::files(std::size_t limit) const {
    if (content_->paths().size() > limit) throw ReadError(location_, {}, tooMany(limit));
    return content_->paths().all();
}

std::string Archive::onlyModel() const {
    std::vector<std::string> models;
    std::string refused;
    for (std::string& path : content_->paths().all()) {
        const std::size_t file = content_->paths().find(path).number;
        const std::string refusal = content_->refusal(file);
        if (!refusal.empty()) {
            if (refused.empty()) refused = "; " + inQuotes(path) + " " + refusal;
        } else if (isXml(content_->zip().inflateBeginning(file, beginning))) {
            models.push_back(std::move(path));
        }
    }
    if (models.size() == 1) return std::move(models.front());
    if (models.empty()) throw ReadError(location_, {}, "holds no XML file" + refused);
    std::string names;
    for (std::size_t i = 0; i < std::min(models.size(), mostNamed); ++i) {
        names += (i == 0 ? "" : ", ") + inQuotes(models[i]);
    }
    if (models.size() > mostNamed) {
        names += " and " + std::to_string(models.size() - mostNamed) + " more";
    }
    throw ReadError(location_, {}, "holds several XML files: " + names);
}

bool isArchive(ByteSource& bytes) {
    std::array<char, 4> begin{};
    if (bytes.read(0, begin.data(), begin.size()) < begin.size()) return false;
    const std::string_view text(begin.data(), begin.size());
    // Of the first file, or of the end of an empty directory.
    return text == "PK\x03\x04" || text == "PK\x05\x06";
}

}  // namespace nuv::zero::xmi
