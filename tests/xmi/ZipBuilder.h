#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace nuv::zero::xmi::test {

/// Builds zip files byte by byte, also such as no other program would.
class ZipBuilder {
  public:
    struct Entry {
        std::string name;
        std::string content;
        /// Whether its bytes are compressed.
        bool isDeflated = false;
        /// What the directory says when it does not say the truth.
        std::uint16_t method = 0;
        std::uint16_t flags = 0;
        std::uint32_t attributes = 0;
        std::uint32_t sizeOff = 0;
        std::uint32_t checksumOff = 0;
    };

    ZipBuilder& add(std::string name, std::string content, bool isDeflated = false);
    ZipBuilder& add(Entry entry);
    std::string bytes() const;

  private:
    std::vector<Entry> entries_;
};

/// As gzip writes them.
std::string gzipped(std::string_view bytes);

}  // namespace nuv::zero::xmi::test
