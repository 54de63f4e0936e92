#include "xmi/TextFiles.h"

#include <optional>
#include <stdexcept>
#include <utility>

#include "xmi/ReadError.h"

namespace nuv::zero::xmi {

TextFiles::TextFiles(std::string location) : location_(std::move(location)) {}

TextFiles::~TextFiles() = default;

TextFiles& TextFiles::add(std::string_view path, std::string bytes) {
    std::optional<std::string> plain = withoutDetours(path);
    if (!plain || plain->empty()) {
        throw std::invalid_argument("no file may have the path " + inQuotes(path));
    }
    bytes_.push_back(std::make_shared<const std::string>(std::move(bytes)));
    bool isNew = false;
    try {
        isNew = paths_.add(std::move(*plain), bytes_.size() - 1);
    } catch (...) {
        bytes_.pop_back();
        throw;
    }
    if (!isNew) {
        bytes_.pop_back();
        throw std::invalid_argument("there are two files with the path " + inQuotes(path));
    }
    return *this;
}

FileTree::Opening TextFiles::open(std::string_view path, std::size_t limit) const {
    Opening opening;
    FilePaths::Found found = paths_.find(path);
    opening.outcome = found.outcome;
    if (found.outcome != Outcome::Opened) return opening;
    const std::shared_ptr<const std::string>& bytes = bytes_[found.number];
    if (bytes->size() > limit) {
        opening.outcome = Outcome::Refused;
        opening.reason = tooLong(limit);
        return opening;
    }
    opening.bytes = std::make_unique<TextSource>(bytes);
    opening.path = std::move(found.path);
    return opening;
}

std::vector<std::string> TextFiles::files(std::size_t limit) const {
    if (paths_.size() > limit) throw ReadError(location_, {}, tooMany(limit));
    return paths_.all();
}

}  // namespace nuv::zero::xmi
