#include "benchmarks/HostProcess.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstring>
#include <stdexcept>
#include <string>

namespace nuv::zero::benchmarks {
namespace {

/// Closed in programs that this one starts, but for what they are given.
std::array<int, 2> makePipe() {
    std::array<int, 2> ends = {};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw std::runtime_error(std::string("no pipe: ") + std::strerror(errno));
    }
    return ends;
}

}  // namespace

HostProcess::HostProcess(const PlainGraph& graph) {
    // A program that dies is reported by the write that fails.
    std::signal(SIGPIPE, SIG_IGN);
    const std::array<int, 2> in = makePipe();
    const std::array<int, 2> out = makePipe();
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, in[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
    std::string path = MODELING_NUV0_HOST_WALKS;
    std::array<char*, 2> arguments = {path.data(), nullptr};
    const int error =
        posix_spawn(&process_, path.c_str(), &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(in[0]);
    close(out[1]);
    requests_ = fdopen(in[1], "w");
    answers_ = fdopen(out[0], "r");
    if (error != 0) throw std::runtime_error("cannot start " + path + ": " + std::strerror(error));
    graph.write(requests_);
}

HostProcess::~HostProcess() {
    std::fclose(requests_);
    std::fclose(answers_);
    waitpid(process_, nullptr, 0);
}

HostProcess::Answer HostProcess::walk(std::uint32_t kind, std::uint32_t order) {
    writeNumber(requests_, kind);
    writeNumber(requests_, order);
    std::fflush(requests_);
    unsigned long long links = 0;
    unsigned long long sum = 0;
    Answer answer;
    // NOLINTNEXTLINE(cert-err34-c): the other side writes what is read here
    if (std::fscanf(answers_, "%lf %llu %llu", &answer.nanoseconds, &links, &sum) != 3) {
        throw std::runtime_error("host-walks gives no answer");
    }
    answer.links = links;
    answer.sum = sum;
    return answer;
}

}  // namespace nuv::zero::benchmarks
