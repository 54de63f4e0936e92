#include "xmi/ZipFile.h"

#include <sys/stat.h>
#include <zip.h>
#include <zlib.h>

#include <algorithm>
#include <exception>
#include <limits>
#include <mutex>
#include <new>
#include <string_view>
#include <utility>

#include "xmi/ReadError.h"

namespace nuv::zero::xmi {
namespace {

/// Bytes that are inflated at once.
constexpr std::size_t inflatedPiece = std::size_t{1} << 16U;
/// Bytes of the directory per entry: a header of 46 bytes, a name and what else there may be. And
/// those in which its end is looked for.
constexpr std::size_t bytesPerEntry = 512;
constexpr std::size_t bytesOfEnd = std::size_t{1} << 18U;
constexpr std::size_t noLimit = std::numeric_limits<std::size_t>::max();

struct ErrorText {
    ErrorText() { zip_error_init(&error); }
    ErrorText(const ErrorText&) = delete;
    ErrorText& operator=(const ErrorText&) = delete;
    ~ErrorText() { zip_error_fini(&error); }

    zip_error_t error{};
};

struct EntryClosing {
    void operator()(zip_file_t* entry) const noexcept { zip_fclose(entry); }
};

bool isLinkOf(zip_t* archive, zip_uint64_t entry) {
    zip_uint8_t system = 0;
    zip_uint32_t attributes = 0;
    if (zip_file_get_external_attributes(archive, entry, 0, &system, &attributes) != 0)
        return false;
    const bool hasModes = system == ZIP_OPSYS_UNIX || system == ZIP_OPSYS_OS_X;
    return hasModes && S_ISLNK(attributes >> 16U);
}

}  // namespace

/// The library, and the bytes that it reads. It asks for them by a function of C, which nothing may
/// be thrown through: what is thrown is kept, and thrown again when the library has returned.
class ZipFile::Library {
  public:
    Library(const std::string& location, std::unique_ptr<ByteSource> bytes)
        : location_(location), bytes_(std::move(bytes)) {}
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;
    ~Library() {
        if (archive_ != nullptr) zip_discard(archive_);
    }

    /// While it is opened, the library keeps what it reads, many times over. Nobody can tell it
    /// where to stop but who gives it the bytes.
    void open(std::size_t limit) {
        // For the library, it is an archive without files.
        if (bytes_->size() == 0) {
            throw ReadError(location_, {}, "cannot be read as an archive: it is empty");
        }
        const std::size_t most = (noLimit - bytesOfEnd) / bytesPerEntry;
        left_ = std::min(limit, most) * bytesPerEntry + bytesOfEnd;
        ErrorText why;
        zip_source_t* const source = zip_source_function_create(&Library::answer, this, &why.error);
        if (source == nullptr) throw std::bad_alloc();
        archive_ = zip_open_from_source(source, ZIP_RDONLY, &why.error);
        if (archive_ == nullptr) zip_source_free(source);
        left_ = noLimit;
        if (archive_ == nullptr || thrown_) fail(why.error);
    }

    zip_t* archive() const noexcept { return archive_; }

    /// The bytes of an entry up to a count; what is there beyond is not looked at. Says whether
    /// that was all.
    bool inflate(std::size_t entry, const std::string& name, std::size_t count,
                 std::string& bytes) {
        const std::lock_guard<std::mutex> locked(mutex_);
        const std::unique_ptr<zip_file_t, EntryClosing> opened(zip_fopen_index(archive_, entry, 0));
        if (!opened) fail(*zip_get_error(archive_), name);
        for (;;) {
            const std::size_t begin = bytes.size();
            // One byte more tells whether there is more.
            const std::size_t wanted = std::min(inflatedPiece, count - begin + 1);
            bytes.resize(begin + wanted);
            const zip_int64_t got = zip_fread(opened.get(), bytes.data() + begin, wanted);
            if (got < 0) fail(*zip_file_get_error(opened.get()), name);
            bytes.resize(begin + static_cast<std::size_t>(got));
            if (bytes.size() > count) {
                bytes.resize(count);
                return false;
            }
            if (got == 0) return true;
        }
    }

    /// The name is that of the file inside, if one is to blame.
    [[noreturn]] void fail(zip_error_t& why, const std::string& name = {}) {
        if (const std::exception_ptr thrown = std::exchange(thrown_, nullptr)) {
            std::rethrow_exception(thrown);
        }
        const int code = zip_error_code_zip(&why);
        const bool isOutOfMemory =
            code == ZIP_ER_MEMORY ||
            (code == ZIP_ER_ZLIB && zip_error_code_system(&why) == Z_MEM_ERROR);
        if (isOutOfMemory) throw std::bad_alloc();
        const std::string reason = std::string("cannot be read") +
                                   (name.empty() ? " as an archive: " : ": ") +
                                   zip_error_strerror(&why);
        throw ReadError(
            location_, {},
            name.empty() ? reason : "holds the file " + inQuotes(name) + ", which " + reason);
    }

  private:
    static zip_int64_t answer(void* self, void* data, zip_uint64_t length, zip_source_cmd_t what) {
        return static_cast<Library*>(self)->answer(data, length, what);
    }

    zip_int64_t answer(void* data, zip_uint64_t length, zip_source_cmd_t what) noexcept {
        switch (what) {
            case ZIP_SOURCE_OPEN:
                at_ = 0;
                return 0;
            case ZIP_SOURCE_CLOSE:
            case ZIP_SOURCE_FREE:
                return 0;
            case ZIP_SOURCE_READ:
                return guarded([&] {
                    if (length > left_) {
                        throw ReadError(location_, {}, "has too large a directory of its files");
                    }
                    const std::size_t count = bytes_->read(at_, static_cast<char*>(data),
                                                           static_cast<std::size_t>(length));
                    at_ += count;
                    left_ -= count;
                    return static_cast<zip_int64_t>(count);
                });
            case ZIP_SOURCE_STAT:
                return guarded([&] {
                    auto& stat = *static_cast<zip_stat_t*>(data);
                    zip_stat_init(&stat);
                    stat.size = bytes_->size();
                    stat.valid = ZIP_STAT_SIZE;
                    return static_cast<zip_int64_t>(sizeof stat);
                });
            case ZIP_SOURCE_ERROR:
                return zip_error_to_data(&error_.error, data, length);
            case ZIP_SOURCE_SEEK:
                return guarded([&] {
                    const zip_int64_t at = zip_source_seek_compute_offset(at_, bytes_->size(), data,
                                                                          length, &error_.error);
                    if (at >= 0) at_ = static_cast<std::size_t>(at);
                    return at < 0 ? at : 0;
                });
            case ZIP_SOURCE_TELL:
                return static_cast<zip_int64_t>(at_);
            case ZIP_SOURCE_SUPPORTS:
                return zip_source_make_command_bitmap(
                    ZIP_SOURCE_OPEN, ZIP_SOURCE_READ, ZIP_SOURCE_CLOSE, ZIP_SOURCE_STAT,
                    ZIP_SOURCE_ERROR, ZIP_SOURCE_FREE, ZIP_SOURCE_SEEK, ZIP_SOURCE_TELL,
                    ZIP_SOURCE_SUPPORTS, -1);
            default:
                zip_error_set(&error_.error, ZIP_ER_OPNOTSUPP, 0);
                return -1;
        }
    }

    template <typename Action>
    zip_int64_t guarded(const Action& action) noexcept {
        try {
            return action();
        } catch (...) {
            thrown_ = std::current_exception();
            zip_error_set(&error_.error, ZIP_ER_READ, 0);
            return -1;
        }
    }

    const std::string& location_;
    std::unique_ptr<ByteSource> bytes_;
    std::size_t at_ = 0;
    /// Bytes that may still be read.
    std::size_t left_ = 0;
    ErrorText error_;
    std::exception_ptr thrown_;
    zip_t* archive_ = nullptr;
    std::mutex mutex_;
};

ZipFile::ZipFile(std::string location, std::unique_ptr<ByteSource> bytes, std::size_t limit)
    : location_(std::move(location)),
      library_(std::make_unique<Library>(location_, std::move(bytes))) {
    library_->open(limit);
    zip_t* const archive = library_->archive();
    const auto count = static_cast<zip_uint64_t>(zip_get_num_entries(archive, 0));
    if (count > limit) {
        throw ReadError(location_, {}, "holds more than " + std::to_string(limit) + " files");
    }
    entries_.reserve(static_cast<std::size_t>(count));
    for (zip_uint64_t i = 0; i < count; ++i) {
        zip_stat_t stat;
        zip_stat_init(&stat);
        if (zip_stat_index(archive, i, 0, &stat) != 0 || stat.name == nullptr) {
            library_->fail(*zip_get_error(archive));
        }
        const bool isPlain = stat.comp_method == ZIP_CM_STORE || stat.comp_method == ZIP_CM_DEFLATE;
        entries_.push_back({stat.name, stat.size, isLinkOf(archive, i),
                            stat.encryption_method != ZIP_EM_NONE, isPlain});
    }
}

ZipFile::~ZipFile() = default;

std::string ZipFile::inflate(std::size_t entry, std::size_t limit) const {
    std::string bytes;
    if (library_->inflate(entry, entries_[entry].name, limit, bytes)) return bytes;
    throw ReadError(location_, {},
                    "holds the file " + inQuotes(entries_[entry].name) + ", which is longer than " +
                        std::to_string(limit) + " bytes");
}

std::string ZipFile::inflateBeginning(std::size_t entry, std::size_t count) const {
    std::string bytes;
    library_->inflate(entry, entries_[entry].name, count, bytes);
    return bytes;
}

}  // namespace nuv::zero::xmi
