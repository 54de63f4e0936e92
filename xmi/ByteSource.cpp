#include "xmi/ByteSource.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "xmi/ReadError.h"

namespace nuv::zero::xmi {
namespace {

/// Files up to this size are read at once.
constexpr std::size_t firstPiece = std::size_t{1} << 16U;

std::size_t copy(std::string_view bytes, std::size_t from, char* into, std::size_t wanted) {
    const std::size_t begin = std::min(from, bytes.size());
    const std::size_t count = std::min(wanted, bytes.size() - begin);
    if (count != 0) std::memcpy(into, bytes.data() + begin, count);
    return count;
}

}  // namespace

ByteSource::~ByteSource() = default;

std::string allBytes(ByteSource& source) {
    std::string bytes(source.size(), '\0');
    bytes.resize(source.read(0, bytes.data(), bytes.size()));
    return bytes;
}

std::size_t TextSource::read(std::size_t from, char* into, std::size_t wanted) {
    return copy(bytes_, from, into, wanted);
}

FileSource::FileSource(const std::string& path, std::size_t limit) : path_(path) {
    errno = 0;
    file_.reset(std::fopen(path.c_str(), "rb"));
    if (!file_) throw ReadError(path, {}, "cannot be opened: " + systemReason(errno));
    begin(limit);
}

FileSource::FileSource(const std::string& path, FilePointer file, std::size_t limit)
    : path_(path), file_(std::move(file)) {
    begin(limit);
}

FileSource::~FileSource() = default;

void FileSource::begin(std::size_t limit) {
    // Whoever reads asks for large pieces.
    std::setvbuf(file_.get(), nullptr, _IONBF, 0);

    // Before anything is asked of the file: only reading tells a folder from a file.
    bytes_.resize(firstPiece);
    bytes_.resize(std::fread(bytes_.data(), 1, bytes_.size(), file_.get()));
    checkRead();
    if (bytes_.size() > limit) failTooLong(limit);
    if (bytes_.size() == firstPiece && isSeekable(limit)) {
        bytes_ = {};
        return;
    }
    readAll(limit);
}

bool FileSource::isSeekable(std::size_t limit) {
    const long known = static_cast<long>(bytes_.size());
    const bool hasEnd = std::fseek(file_.get(), 0, SEEK_END) == 0;
    const long end = hasEnd ? std::ftell(file_.get()) : -1;
    // Devices have an end of their own making.
    if (end < known) {
        if (hasEnd) std::fseek(file_.get(), known, SEEK_SET);
        return false;
    }
    size_ = static_cast<std::size_t>(end);
    if (size_ > limit) failTooLong(limit);
    at_ = size_;
    return true;
}

void FileSource::readAll(std::size_t limit) {
    isWhole_ = true;
    std::string piece(firstPiece, '\0');
    while (const std::size_t count = std::fread(piece.data(), 1, piece.size(), file_.get())) {
        if (count > limit - bytes_.size()) failTooLong(limit);
        bytes_.append(piece, 0, count);
    }
    checkRead();
    size_ = bytes_.size();
    file_.reset();
}

std::size_t FileSource::read(std::size_t from, char* into, std::size_t wanted) {
    if (isWhole_) return copy(bytes_, from, into, wanted);
    wanted = std::min(wanted, size_ - std::min(from, size_));
    if (wanted == 0) return 0;
    errno = 0;
    if (from != at_ && std::fseek(file_.get(), static_cast<long>(from), SEEK_SET) != 0) {
        throw ReadError(path_, {}, "cannot be read: " + systemReason(errno));
    }
    const std::size_t count = std::fread(into, 1, wanted, file_.get());
    checkRead();
    at_ = from + count;
    return count;
}

void FileSource::failTooLong(std::size_t limit) const {
    throw ReadError(path_, {}, "is longer than " + std::to_string(limit) + " bytes");
}

void FileSource::checkRead() const {
    if (std::ferror(file_.get()) == 0) return;
    throw ReadError(path_, {}, "cannot be read: " + systemReason(errno));
}

}  // namespace nuv::zero::xmi
