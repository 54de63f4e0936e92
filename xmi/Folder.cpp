#include "xmi/Folder.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <filesystem>
#include <new>
#include <system_error>
#include <utility>
#include <vector>

#include "xmi/FilePaths.h"
#include "xmi/ReadError.h"

namespace nuv::zero::xmi {

/// An open file or folder of the system.
class Folder::Descriptor {
  public:
    explicit Descriptor(int number) noexcept : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (number_ >= 0) close(number_);
    }

    int number() const noexcept { return number_; }
    bool isOpen() const noexcept { return number_ >= 0; }
    int release() noexcept { return std::exchange(number_, -1); }

  private:
    int number_;
};

namespace {

/// As many links as the system follows itself.
constexpr int mostLinks = 40;

/// The steps of a path that are still to be taken, the next one at the end.
using Steps = std::vector<std::string>;

/// Puts the steps of a path in front of those that are to be taken.
void putFirst(Steps& steps, std::string_view path) {
    while (!path.empty()) {
        const std::size_t slash = path.rfind('/');
        const std::string_view last =
            slash == std::string_view::npos ? path : path.substr(slash + 1);
        if (!last.empty() && last != ".") steps.emplace_back(last);
        path = slash == std::string_view::npos ? std::string_view() : path.substr(0, slash);
    }
}

/// Whether a failure means that there is nothing of the name.
bool meansMissing(int code) {
    return code == ENOENT || code == ENOTDIR || code == ENAMETOOLONG;
}

bool isLinkRefused(int code) {
    // What systems say to `O_NOFOLLOW` at a link.
    return code == ELOOP || code == EMLINK;
}

struct FolderClosing {
    void operator()(DIR* folder) const noexcept { closedir(folder); }
};

/// Whether a folder is one of those that others do not want to be read, or gone.
bool isLeftOut(int code) {
    return code == EACCES || code == EPERM || code == ENOENT || code == ENOTDIR ||
           isLinkRefused(code);
}

/// The names of what is in a folder, in the order of their bytes, but not many more than the limit.
/// Nothing where it cannot be read, and the reason why.
Steps namesIn(int folder, std::size_t limit, int& code) {
    Steps names;
    // Reading moves the place of a descriptor and of all that share it.
    const int own = openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const std::unique_ptr<DIR, FolderClosing> opened(own < 0 ? nullptr : fdopendir(own));
    if (!opened) {
        code = errno;
        if (own >= 0) close(own);
        return names;
    }
    errno = 0;
    while (const dirent* const entry = readdir(opened.get())) {
        const std::string_view name = &entry->d_name[0];
        if (name == "." || name == "..") continue;
        names.emplace_back(name);
        if (names.size() > limit) break;
        errno = 0;
    }
    code = names.size() > limit ? 0 : errno;
    std::sort(names.begin(), names.end());
    return names;
}

}  // namespace

/// Goes through a folder and those in it, each of which is open only as long as it is gone through.
class Folder::Listing {
  public:
    Listing(const Folder& folder, std::size_t limit) : folder_(folder), limit_(limit) {}

    std::vector<std::string> files() {
        enter(folder_.descriptor_->number(), Descriptor(-1), {});
        while (!levels_.empty()) {
            Level& level = levels_.back();
            if (level.names.empty()) {
                levels_.pop_back();
                continue;
            }
            const std::string name = std::move(level.names.back());
            level.names.pop_back();
            take(level, name);
        }
        std::sort(files_.begin(), files_.end());
        return std::move(files_);
    }

  private:
    static constexpr std::size_t mostLevels = 100;

    struct Level {
        int number;
        Descriptor own;
        /// With a slash at the end.
        std::string path;
        /// What is still to be looked at, the next one at the end.
        Steps names;
    };

    void enter(int number, Descriptor own, std::string path) {
        if (levels_.size() > mostLevels) {
            throw ReadError(folder_.path_, {},
                            "holds folders nested deeper than " + std::to_string(mostLevels) +
                                " levels: " + inQuotes(path));
        }
        int code = 0;
        Steps names = namesIn(number, limit_ - seen_, code);
        checkReading(code, path);
        if (names.size() > limit_ - seen_) {
            throw ReadError(folder_.path_, {}, tooMany(limit_));
        }
        seen_ += names.size();
        std::reverse(names.begin(), names.end());
        levels_.push_back({number, std::move(own), std::move(path), std::move(names)});
    }

    void take(const Level& level, const std::string& name) {
        struct stat kind {};
        if (fstatat(level.number, name.c_str(), &kind, AT_SYMLINK_NOFOLLOW) != 0) return;
        std::string path = level.path + name;
        if (S_ISREG(kind.st_mode)) {
            files_.push_back(std::move(path));
        } else if (S_ISDIR(kind.st_mode)) {
            Descriptor folder(openat(level.number, name.c_str(),
                                     O_RDONLY | O_NOFOLLOW | O_DIRECTORY | O_CLOEXEC));
            const int code = errno;
            const int number = folder.number();
            path += '/';
            if (folder.isOpen()) {
                enter(number, std::move(folder), std::move(path));
            } else {
                checkReading(code, path);
            }
        }
    }

    void checkReading(int code, const std::string& path) const {
        if (code == 0 || isLeftOut(code)) return;
        if (code == ENOMEM) throw std::bad_alloc();
        throw ReadError(folder_.path_ + "/" + path, {}, "cannot be read: " + systemReason(code));
    }

    const Folder& folder_;
    std::size_t limit_;
    std::size_t seen_ = 0;
    std::vector<Level> levels_;
    std::vector<std::string> files_;
};

Folder::Folder(const std::string& path) {
    const int number = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (number < 0) {
        throw ReadError(path, {}, "cannot be opened as a folder: " + systemReason(errno));
    }
    Descriptor opened(number);
    descriptor_ = std::make_unique<const Descriptor>(std::move(opened));
    std::error_code error;
    path_ = std::filesystem::canonical(path, error).string();
    if (error) throw ReadError(path, {}, "cannot be opened as a folder: " + error.message());
}

Folder::~Folder() = default;

/// Takes the steps of one path, from folder to folder.
class Folder::Way {
  public:
    explicit Way(const Folder& folder) : folder_(folder) {}

    Opening open(std::string_view path, std::size_t limit) {
        if (path.starts_with('/')) return ended(Outcome::Outside);
        if (path.find('\0') != std::string_view::npos) return ended(Outcome::Missing);
        putFirst(steps_, path);
        while (!steps_.empty()) {
            const std::string step = std::move(steps_.back());
            steps_.pop_back();
            if (take(step)) continue;
            if (!file_.isOpen()) return std::move(opening_);
            if (!steps_.empty()) return ended(Outcome::Missing);
            return openFile(limit);
        }
        return ended(Outcome::NoFile);
    }

  private:
    Opening ended(Outcome outcome, int code = 0) {
        opening_.outcome = outcome;
        if (outcome == Outcome::Refused) {
            opening_.reason = "cannot be opened: " + systemReason(code);
        }
        return std::move(opening_);
    }
    /// Says that the way does not go on.
    bool end(Outcome outcome, int code = 0) {
        opening_ = ended(outcome, code);
        return false;
    }

    int here() const { return way_.empty() ? folder_.descriptor_->number() : way_.back().number(); }

    /// Whether the way goes on. It does not where it leads to a file, which is open then, and
    /// where it leads nowhere.
    bool take(const std::string& step) {
        if (step == "..") {
            if (way_.empty()) return end(Outcome::Outside);
            way_.pop_back();
            names_.pop_back();
            return true;
        }
        // Not to be kept waiting by a pipe.
        Descriptor next(openat(here(), step.c_str(),
                               O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
        if (!next.isOpen()) {
            const int code = errno;
            if (isLinkRefused(code)) return takeLink(step);
            return end(meansMissing(code) ? Outcome::Missing : Outcome::Refused, code);
        }
        struct stat kind {};
        if (fstat(next.number(), &kind) != 0) return end(Outcome::Refused, errno);
        names_.push_back(step);
        if (S_ISDIR(kind.st_mode)) {
            way_.push_back(std::move(next));
            return true;
        }
        isFile_ = S_ISREG(kind.st_mode);
        file_ = std::move(next);
        return false;
    }

    bool takeLink(const std::string& step) {
        std::array<char, PATH_MAX> target;
        const auto length = readlinkat(here(), step.c_str(), target.data(), target.size());
        if (length < 0 || ++links_ > mostLinks) return end(Outcome::Refused, ELOOP);
        std::string_view linked(target.data(), static_cast<std::size_t>(length));
        if (linked.starts_with('/')) {
            const auto below = pathBelow(folder_.path_, linked);
            if (!below) return end(Outcome::Outside);
            linked = *below;
            way_.clear();
            names_.clear();
        }
        putFirst(steps_, linked);
        return true;
    }

    Opening openFile(std::size_t limit) {
        if (!isFile_) return ended(Outcome::NoFile);
        for (const std::string& each : names_) {
            if (!opening_.path.empty()) opening_.path += '/';
            opening_.path += each;
        }
        FilePointer file(fdopen(file_.number(), "rb"));
        if (!file) throw std::bad_alloc();
        file_.release();
        try {
            opening_.bytes = std::make_unique<FileSource>(folder_.path_ + "/" + opening_.path,
                                                          std::move(file), limit);
        } catch (const ReadError& error) {
            opening_.outcome = Outcome::Refused;
            opening_.reason = error.reason();
            return std::move(opening_);
        }
        return ended(Outcome::Opened);
    }

    const Folder& folder_;
    /// Those that are still to be taken, the next one at the end.
    Steps steps_;
    /// The folders that were gone into, and the names on the way.
    std::vector<Descriptor> way_;
    Steps names_;
    int links_ = 0;
    /// What the way leads to.
    Descriptor file_{-1};
    bool isFile_ = false;
    Opening opening_;
};

FileTree::Opening Folder::open(std::string_view path, std::size_t limit) const {
    return Way(*this).open(path, limit);
}

std::vector<std::string> Folder::files(std::size_t limit) const {
    return Listing(*this, limit).files();
}

}  // namespace nuv::zero::xmi
