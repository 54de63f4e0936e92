#pragma once

#include <sys/types.h>

#include <cstdint>
#include <cstdio>

#include "benchmarks/Checksum.h"
#include "benchmarks/PlainGraph.h"

namespace nuv::zero::benchmarks {

/// The program `host-walks` with a model: a second process, because one process cannot hold the
/// library compiled against two model frameworks. It works only while it is asked.
class HostProcess {
  public:
    /// What one walk took there, and the links that it met, summed up by the numbers of a
    /// `PlainGraph` plus one.
    struct Answer {
        double nanoseconds = 0;
        std::uint64_t links = 0;
        std::uint64_t sum = 0;
    };

    /// Starts the program and hands it the model. Throws `std::runtime_error`.
    explicit HostProcess(const PlainGraph& graph);
    HostProcess(const HostProcess&) = delete;
    HostProcess& operator=(const HostProcess&) = delete;
    /// Lets the program end.
    ~HostProcess();

    /// Has a kind walked in an order, both by their numbers. Throws as above.
    Answer walk(std::uint32_t kind, std::uint32_t order);

  private:
    pid_t process_ = -1;
    std::FILE* requests_ = nullptr;
    std::FILE* answers_ = nullptr;
};

}  // namespace nuv::zero::benchmarks
