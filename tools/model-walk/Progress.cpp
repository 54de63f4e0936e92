#include "Progress.h"

#include <unistd.h>

#include <chrono>
#include <iostream>
#include <string>

namespace model_walk {

Progress::Progress(const CommandLine& line) {
    const std::string when = line.value(Option::Progress);
    const bool isWanted = when == "on" || (when == "auto" && isatty(STDERR_FILENO) != 0);
    if (isWanted) teller_ = std::thread([this] { tell(); });
}

Progress::~Progress() {
    if (!teller_.joinable()) return;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        hasEnded_ = true;
    }
    end_.notify_one();
    teller_.join();
}

void Progress::onFile(std::size_t elements, std::size_t bytes) noexcept {
    ++files_;
    elements_ += elements;
    bytes_ += bytes;
}

void Progress::tell() {
    using namespace std::chrono_literals;
    const auto start = std::chrono::steady_clock::now();
    const char* const clearLine = isatty(STDERR_FILENO) != 0 ? "\r\x1b[K" : "";
    const char* const endOfLine = isatty(STDERR_FILENO) != 0 ? "" : "\n";
    bool hasTold = false;
    std::unique_lock<std::mutex> lock(mutex_);
    for (auto pause = 1000ms; !end_.wait_for(lock, pause, [this] { return hasEnded_; });
         pause = 200ms) {
        const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
        const double megabytes = static_cast<double>(bytes_) / 1e6;
        const auto perSecond = static_cast<std::size_t>(megabytes / seconds.count());
        std::string text = "loading: " + std::to_string(files_) + " files, " +
                           std::to_string(elements_) + " elements, " + std::to_string(perSecond) +
                           " MB/s";
        if (files_ == 0) text = "loading: " + std::to_string(int(seconds.count())) + " s";
        std::cerr << clearLine << text << endOfLine << std::flush;
        hasTold = true;
    }
    if (hasTold) std::cerr << clearLine << std::flush;
}

}  // namespace model_walk
