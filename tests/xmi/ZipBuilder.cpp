#include "tests/xmi/ZipBuilder.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <utility>

namespace nuv::zero::xmi::test {
namespace {

std::string deflated(std::string_view bytes, int windowBits) {
    z_stream stream{};
    EXPECT_EQ(
        deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, windowBits, 8, Z_DEFAULT_STRATEGY),
        Z_OK);
    std::string in(bytes);
    std::string out(deflateBound(&stream, in.size()), '\0');
    stream.next_in = reinterpret_cast<Bytef*>(in.data());
    stream.avail_in = static_cast<uInt>(in.size());
    stream.next_out = reinterpret_cast<Bytef*>(out.data());
    stream.avail_out = static_cast<uInt>(out.size());
    EXPECT_EQ(deflate(&stream, Z_FINISH), Z_STREAM_END);
    out.resize(stream.total_out);
    deflateEnd(&stream);
    return out;
}

/// Numbers as zip files have them, the lowest byte first.
class Record {
  public:
    explicit Record(std::string_view signature) : bytes_(signature) {}
    Record& two(std::size_t number) { return put(number, 2); }
    Record& four(std::size_t number) { return put(number, 4); }
    Record& text(std::string_view text) {
        bytes_ += text;
        return *this;
    }
    const std::string& bytes() const { return bytes_; }

  private:
    Record& put(std::size_t number, int count) {
        for (int i = 0; i < count; ++i, number >>= 8U) bytes_ += static_cast<char>(number & 0xFFU);
        return *this;
    }

    std::string bytes_;
};

}  // namespace

ZipBuilder& ZipBuilder::add(std::string name, std::string content, bool isDeflated) {
    Entry entry;
    entry.name = std::move(name);
    entry.content = std::move(content);
    entry.isDeflated = isDeflated;
    return add(std::move(entry));
}

ZipBuilder& ZipBuilder::add(Entry entry) {
    entries_.push_back(std::move(entry));
    return *this;
}

std::string ZipBuilder::bytes() const {
    std::string all;
    std::string directory;
    for (const Entry& each : entries_) {
        const std::string packed =
            each.isDeflated ? deflated(each.content, -MAX_WBITS) : each.content;
        const std::size_t method = each.isDeflated ? Z_DEFLATED : each.method;
        const std::size_t checksum = crc32(0, reinterpret_cast<const Bytef*>(each.content.data()),
                                           static_cast<uInt>(each.content.size())) +
                                     each.checksumOff;
        const std::size_t size = each.content.size() + each.sizeOff;
        const auto common = [&](Record record) {
            return record.two(20)
                .two(each.flags)
                .two(method)
                .two(0)
                .two(0x21)
                .four(checksum)
                .four(packed.size())
                .four(size)
                .two(each.name.size())
                .two(0);
        };
        // Made on a system that has modes.
        directory += common(Record("PK\x01\x02").two(0x031E))
                         .two(0)
                         .two(0)
                         .two(0)
                         .four(each.attributes)
                         .four(all.size())
                         .text(each.name)
                         .bytes();
        all += common(Record("PK\x03\x04")).text(each.name).text(packed).bytes();
    }
    const std::size_t begin = all.size();
    const std::size_t count = entries_.size();
    return all + directory +
           Record("PK\x05\x06")
               .two(0)
               .two(0)
               .two(count)
               .two(count)
               .four(directory.size())
               .four(begin)
               .two(0)
               .bytes();
}

std::string gzipped(std::string_view bytes) {
    return deflated(bytes, MAX_WBITS + 16);
}

}  // namespace nuv::zero::xmi::test
