#include "xmi/Gunzip.h"

#include <zlib.h>

#include <algorithm>
#include <new>
#include <utility>

#include "xmi/ReadError.h"

namespace nuv::zero::xmi {
namespace {

/// Bytes that go in and come out at once.
constexpr std::size_t packedPiece = std::size_t{1} << 16U;

class Inflating {
  public:
    Inflating(const std::string& name, std::size_t limit) : name_(name), limit_(limit) {
        // The largest window that there is, and the wrapping of gzip.
        if (inflateInit2(&stream_, MAX_WBITS + 16) != Z_OK) throw std::bad_alloc();
    }
    Inflating(const Inflating&) = delete;
    Inflating& operator=(const Inflating&) = delete;
    ~Inflating() { inflateEnd(&stream_); }

    void take(char* bytes, std::size_t count) {
        stream_.next_in = reinterpret_cast<Bytef*>(bytes);
        stream_.avail_in = static_cast<uInt>(count);
        // Also what was left inside, when all of it has gone in.
        do {
            if (isPartOver_) beginPart();
            inflatePiece();
        } while (stream_.avail_in != 0 || (stream_.avail_out == 0 && !isPartOver_));
    }

    std::string finish() {
        if (!isPartOver_) fail("is cut off");
        return std::move(bytes_);
    }

  private:
    void beginPart() {
        if (inflateReset(&stream_) != Z_OK) throw std::bad_alloc();
        isPartOver_ = false;
    }

    void inflatePiece() {
        const std::size_t begin = bytes_.size();
        // One byte more tells whether there is more.
        const std::size_t room = std::min(packedPiece, limit_ - begin + 1);
        bytes_.resize(begin + room);
        stream_.next_out = reinterpret_cast<Bytef*>(bytes_.data() + begin);
        stream_.avail_out = static_cast<uInt>(room);
        const int status = inflate(&stream_, Z_NO_FLUSH);
        bytes_.resize(begin + room - stream_.avail_out);
        if (bytes_.size() > limit_) {
            fail("inflates to more than " + std::to_string(limit_) + " bytes");
        }
        if (status == Z_MEM_ERROR) throw std::bad_alloc();
        if (status == Z_STREAM_END) {
            isPartOver_ = true;
        } else if (status != Z_OK && status != Z_BUF_ERROR) {
            fail("is damaged");
        }
    }

    [[noreturn]] void fail(const std::string& how) const {
        throw ReadError(name_, {}, "is compressed by gzip and " + how);
    }

    const std::string& name_;
    std::size_t limit_;
    z_stream stream_{};
    /// Whether the last byte ended one of the parts.
    bool isPartOver_ = false;
    std::string bytes_;
};

}  // namespace

std::string gunzip(const std::string& name, ByteSource& packed, std::size_t limit) {
    Inflating inflating(name, limit);
    std::string in(packedPiece, '\0');
    for (std::size_t from = 0;;) {
        const std::size_t count = packed.read(from, in.data(), in.size());
        if (count == 0) return inflating.finish();
        inflating.take(in.data(), count);
        from += count;
    }
}

}  // namespace nuv::zero::xmi
