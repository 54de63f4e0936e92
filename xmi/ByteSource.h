#pragma once

#include <cstddef>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace nuv::zero::xmi {

/// The bytes that are to be parsed, to be read piece by piece and from any place, so that nobody
/// has to hold all of them.
class ByteSource {
  public:
    ByteSource() = default;
    ByteSource(const ByteSource&) = delete;
    ByteSource& operator=(const ByteSource&) = delete;
    virtual ~ByteSource();

    /// Throws `ReadError` when they cannot be read.
    virtual std::size_t size() = 0;
    /// Copies bytes and says how many. Fewer than wanted mean the end: that of the source, or of a
    /// file that was cut off meanwhile. Throws `ReadError` when they cannot be read.
    virtual std::size_t read(std::size_t from, char* into, std::size_t wanted) = 0;
};

/// All bytes of a source. Throws as reading does.
std::string allBytes(ByteSource& source);

/// Bytes that are at hand.
class TextSource final : public ByteSource {
  public:
    /// REQUIRES: the bytes outlive the source.
    explicit TextSource(std::string_view bytes) : bytes_(bytes) {}
    /// The same for bytes that are kept alive.
    explicit TextSource(std::shared_ptr<const std::string> bytes)
        : bytes_(*bytes), kept_(std::move(bytes)) {}
    std::size_t size() override { return bytes_.size(); }
    std::size_t read(std::size_t from, char* into, std::size_t wanted) override;

  private:
    std::string_view bytes_;
    std::shared_ptr<const std::string> kept_;
};

struct FileClosing {
    void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};
/// A file that is open.
using FilePointer = std::unique_ptr<std::FILE, FileClosing>;

/// The bytes of a file. What can only be read from the front to the back, such as a pipe, is read
/// as a whole at once.
class FileSource final : public ByteSource {
  public:
    /// Throws `ReadError` when the file cannot be opened or read, or is longer than the limit.
    FileSource(const std::string& path, std::size_t limit);
    /// The same for a file that is open, and will be closed; the path is for error texts.
    FileSource(const std::string& path, FilePointer file, std::size_t limit);
    ~FileSource() override;

    std::size_t size() override { return size_; }
    std::size_t read(std::size_t from, char* into, std::size_t wanted) override;

  private:
    void begin(std::size_t limit);
    /// Whether one can go to any place; finds the size then.
    bool isSeekable(std::size_t limit);
    void readAll(std::size_t limit);
    [[noreturn]] void failTooLong(std::size_t limit) const;
    void checkRead() const;

    std::string path_;
    FilePointer file_;
    std::size_t size_ = 0;
    /// Where the next byte comes from without a jump.
    std::size_t at_ = 0;
    /// All bytes, where one cannot go to any place, and of small files.
    std::string bytes_;
    bool isWhole_ = false;
};

}  // namespace nuv::zero::xmi
