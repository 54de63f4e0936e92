#include "xmi/GzipSource.h"

#include <array>
#include <utility>

#include "xmi/Gunzip.h"

namespace nuv::zero::xmi {

GzipSource::GzipSource(std::string name, std::unique_ptr<ByteSource> source, std::size_t limit)
    : name_(std::move(name)), source_(std::move(source)), limit_(limit) {}

GzipSource::~GzipSource() = default;

std::size_t GzipSource::size() {
    return plain().size();
}

std::size_t GzipSource::read(std::size_t from, char* into, std::size_t wanted) {
    return plain().read(from, into, wanted);
}

ByteSource& GzipSource::plain() {
    if (isKnown_) return *source_;
    std::array<char, 2> begin{};
    const std::size_t count = source_->read(0, begin.data(), begin.size());
    if (count == begin.size() && begin[0] == '\x1F' && begin[1] == '\x8B') {
        source_ = std::make_unique<TextSource>(
            std::make_shared<const std::string>(gunzip(name_, *source_, limit_)));
    }
    isKnown_ = true;
    return *source_;
}

}  // namespace nuv::zero::xmi
