// Stands for what reads archives and compressed files in builds that do without.

#include <utility>

#include "xmi/Gunzip.h"
#include "xmi/ReadError.h"
#include "xmi/ZipFile.h"

namespace nuv::zero::xmi {

class ZipFile::Library {};

ZipFile::ZipFile(std::string location, std::unique_ptr<ByteSource> /*bytes*/, std::size_t /*limit*/)
    : location_(std::move(location)) {
    throw ReadError(location_, {}, "is an archive, and this program was built without those");
}

ZipFile::~ZipFile() = default;

std::string ZipFile::inflate(std::size_t /*entry*/, std::size_t /*limit*/) const {
    return {};
}

std::string ZipFile::inflateBeginning(std::size_t /*entry*/, std::size_t /*count*/) const {
    return {};
}

std::string gunzip(const std::string& name, ByteSource& /*packed*/, std::size_t /*limit*/) {
    throw ReadError(name, {},
                    "is compressed by gzip, and this program was built without what reads it");
}

}  // namespace nuv::zero::xmi
