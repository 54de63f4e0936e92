#include "xmi/SourceFile.h"

#include <cerrno>
#include <cstdio>
#include <memory>
#include <system_error>
#include <vector>

#include "xmi/ReadError.h"

namespace nuv::zero::xmi {
namespace {

struct Closing {
    void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};

std::string systemReason(int code) {
    return std::generic_category().message(code);
}

}  // namespace

std::string readFile(const std::string& path, std::size_t limit) {
    errno = 0;
    const std::unique_ptr<std::FILE, Closing> file(std::fopen(path.c_str(), "rb"));
    if (!file) throw ReadError(path, {}, "cannot be opened: " + systemReason(errno));

    std::string bytes;
    // On the heap: readers may run on threads whose whole stack is no larger.
    std::vector<char> chunk(std::size_t{1} << 16U);
    while (const std::size_t count = std::fread(chunk.data(), 1, chunk.size(), file.get())) {
        if (count > limit - bytes.size()) {
            throw ReadError(path, {}, "is longer than " + std::to_string(limit) + " bytes");
        }
        bytes.append(chunk.data(), count);
    }
    if (std::ferror(file.get()) != 0) {
        throw ReadError(path, {}, "cannot be read: " + systemReason(errno));
    }
    return bytes;
}

}  // namespace nuv::zero::xmi
