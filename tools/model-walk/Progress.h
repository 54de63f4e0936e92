#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <thread>

#include "CommandLine.h"

namespace model_walk {

/// Tells on standard error how far loading has come, once it takes longer than a second: on one
/// line, which is gone when it is done.
class Progress {
  public:
    explicit Progress(const CommandLine& line);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress();

    /// May be called on any thread.
    void onFile(std::size_t elements, std::size_t bytes) noexcept;

  private:
    void tell();

    std::atomic<std::size_t> files_ = 0;
    std::atomic<std::size_t> elements_ = 0;
    std::atomic<std::size_t> bytes_ = 0;
    std::mutex mutex_;
    std::condition_variable end_;
    bool hasEnded_ = false;
    std::thread teller_;
};

}  // namespace model_walk
