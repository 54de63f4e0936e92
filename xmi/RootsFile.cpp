#include "xmi/RootsFile.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <stdexcept>
#include <utility>

#include "xmi/ByteSource.h"
#include "xmi/Fragment.h"
#include "xmi/ReadError.h"

namespace nuv::zero::xmi {
namespace {

constexpr std::size_t mostBytes = std::size_t{1} << 20U;

std::string textOf(const std::string& file) {
    FileSource source(file, mostBytes);
    std::string text(source.size(), '\0');
    text.resize(source.read(0, text.data(), text.size()));
    return text;
}

std::string_view nextLine(std::string_view& text) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return line;
}

}  // namespace

RootsFile::RootsFile(const std::string& file) : file_(file) {
    parse(textOf(file));
}

RootsFile::RootsFile(std::string file, std::string_view text) : file_(std::move(file)) {
    parse(text);
}

void RootsFile::parse(std::string_view text) {
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    if (text.starts_with(mark)) text.remove_prefix(mark.size());
    for (std::uint32_t number = 1; !text.empty(); ++number) {
        const std::string_view line = nextLine(text);
        const std::string_view content = trimmed(line);
        if (content.empty() || content.starts_with('#')) continue;
        if (content.find('\0') != std::string_view::npos) {
            throw ReadError(file_, {number, 1}, "this is no text");
        }
        if (line.starts_with(' ') || line.starts_with('\t')) {
            addPrefix(content, number);
        } else {
            addRow(content, number);
        }
    }
}

void RootsFile::addRow(std::string_view line, std::uint32_t number) {
    const std::size_t equals = line.find('=');
    const std::string_view name = trimmed(line.substr(0, equals));
    const std::string_view path =
        equals == std::string_view::npos ? std::string_view() : trimmed(line.substr(equals + 1));
    if (name.empty() || path.empty()) {
        throw ReadError(file_, {number, 1}, "a root is written as NAME = PATH");
    }
    const std::filesystem::path folder = std::filesystem::path(file_).parent_path();
    rows_.push_back({std::string(name), (folder / path).string(), number, {}});
}

void RootsFile::addPrefix(std::string_view line, std::uint32_t number) {
    if (rows_.empty()) {
        throw ReadError(file_, {number, 1},
                        "a prefix stands below the root that it leads into, and there is none");
    }
    // Prefixes may have equals signs of their own.
    constexpr std::string_view equals = " = ";
    const std::size_t end = line.find(equals);
    const std::string_view path =
        end == std::string_view::npos ? std::string_view() : line.substr(end + equals.size());
    rows_.back().prefixes.push_back(
        {std::string(trimmed(line.substr(0, end))), std::string(trimmed(path)), number});
}

void RootsFile::addTo(FileRoots& roots) const {
    FileRoots all = roots;
    std::uint32_t line = 0;
    try {
        for (const Row& row : rows_) {
            line = row.line;
            all.add(row.name, row.path);
            for (const Prefix& prefix : row.prefixes) {
                line = prefix.line;
                all.addPrefix(prefix.text, row.name, prefix.path);
            }
        }
    } catch (const ReadError& error) {
        throw ReadError(file_, {line, 1}, error.what());
    } catch (const std::invalid_argument& error) {
        throw ReadError(file_, {line, 1}, error.what());
    }
    roots = std::move(all);
}

}  // namespace nuv::zero::xmi
