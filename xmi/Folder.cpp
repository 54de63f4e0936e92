#include "xmi/Folder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <filesystem>
#include <system_error>
#include <utility>
#include <vector>

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

std::string systemReason(int code) {
    return std::generic_category().message(code);
}

/// Whether a failure means that there is nothing of the name.
bool meansMissing(int code) {
    return code == ENOENT || code == ENOTDIR || code == ENAMETOOLONG;
}

bool isLinkRefused(int code) {
    // What systems say to `O_NOFOLLOW` at a link.
    return code == ELOOP || code == EMLINK;
}

}  // namespace

Folder::Folder(const std::string& path) {
    const int number = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (number < 0) {
        throw ReadError(path, {}, "cannot be opened as a folder: " + systemReason(errno));
    }
    Descriptor opened(number);
    descriptor_ = std::make_shared<const Descriptor>(std::move(opened));
    std::error_code error;
    path_ = std::filesystem::canonical(path, error).string();
    if (error) throw ReadError(path, {}, "cannot be opened as a folder: " + error.message());
}

Folder::Opening Folder::open(std::string_view path) const {
    Opening result;
    const auto ended = [&](Outcome outcome, int code = 0) {
        result.outcome = outcome;
        if (outcome == Outcome::Refused) result.reason = systemReason(code);
        return std::move(result);
    };
    if (path.starts_with('/')) return ended(Outcome::Outside);
    if (path.find('\0') != std::string_view::npos) return ended(Outcome::Missing);

    Steps steps;
    putFirst(steps, path);
    // The folders on the way, and their names.
    std::vector<Descriptor> way;
    Steps names;
    int links = 0;
    while (!steps.empty()) {
        const std::string step = std::move(steps.back());
        steps.pop_back();
        if (step == "..") {
            if (way.empty()) return ended(Outcome::Outside);
            way.pop_back();
            names.pop_back();
            continue;
        }
        const int here = way.empty() ? descriptor_->number() : way.back().number();
        // Not to be kept waiting by a pipe.
        Descriptor next(
            openat(here, step.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
        if (!next.isOpen()) {
            const int code = errno;
            if (!isLinkRefused(code)) {
                return ended(meansMissing(code) ? Outcome::Missing : Outcome::Refused, code);
            }
            std::array<char, PATH_MAX> target;
            const auto length = readlinkat(here, step.c_str(), target.data(), target.size());
            if (length < 0 || ++links > mostLinks) return ended(Outcome::Refused, ELOOP);
            std::string_view linked(target.data(), static_cast<std::size_t>(length));
            if (linked.starts_with('/')) {
                const bool comesBack =
                    linked.starts_with(path_) && linked.substr(path_.size()).starts_with('/');
                if (!comesBack) return ended(Outcome::Outside);
                linked.remove_prefix(path_.size());
                way.clear();
                names.clear();
            }
            putFirst(steps, linked);
            continue;
        }
        struct stat kind {};
        if (fstat(next.number(), &kind) != 0) return ended(Outcome::Refused, errno);
        names.push_back(step);
        if (S_ISDIR(kind.st_mode)) {
            way.push_back(std::move(next));
            continue;
        }
        if (!steps.empty()) return ended(Outcome::Missing);
        if (!S_ISREG(kind.st_mode)) return ended(Outcome::NoFile);
        result.file.reset(fdopen(next.number(), "rb"));
        if (!result.file) throw std::bad_alloc();
        next.release();
        for (const std::string& each : names) {
            if (!result.path.empty()) result.path += '/';
            result.path += each;
        }
        return ended(Outcome::Opened);
    }
    return ended(Outcome::NoFile);
}

}  // namespace nuv::zero::xmi
