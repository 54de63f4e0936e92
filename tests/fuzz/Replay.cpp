#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

std::vector<std::filesystem::path> filesOf(const std::filesystem::path& place) {
    if (!std::filesystem::is_directory(place)) return {place};
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(place)) {
        files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

}  // namespace

/// Runs a fuzz target over files, and over all files of folders, for compilers without a fuzzer.
int main(int argc, char** argv) {
    int count = 0;
    for (int index = 1; index < argc; ++index) {
        for (const std::filesystem::path& path : filesOf(argv[index])) {
            // Said before it is run: a target that finds something ends the program.
            std::printf("%s\n", path.c_str());
            std::fflush(stdout);
            std::ifstream file(path, std::ios::binary);
            const std::vector<char> bytes((std::istreambuf_iterator<char>(file)), {});
            try {
                LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()),
                                       bytes.size());
            } catch (const std::exception& failure) {
                std::fprintf(stderr, "throws: %s\n", failure.what());
                return 1;
            }
            ++count;
        }
    }
    std::printf("%d files\n", count);
    return count > 0 ? 0 : 1;
}
