#include "Sink.h"

#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>

namespace model_walk {
namespace {

volatile std::sig_atomic_t isWriting = 0;
volatile std::sig_atomic_t pending = 0;

void endBy(int signal) {
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

/// Ends the process at once, unless a line is being written. A second time it does not wait.
void onInterrupt(int signal) {
    if (isWriting == 0 || pending != 0) {
        endBy(signal);
    } else {
        pending = signal;
    }
}

void waitForLines(int signal) {
    struct sigaction current = {};
    // A command in the background is not interrupted, and stays so.
    if (sigaction(signal, nullptr, &current) != 0 || current.sa_handler == SIG_IGN) return;
    struct sigaction action = {};
    action.sa_handler = onInterrupt;
    sigemptyset(&action.sa_mask);
    sigaction(signal, &action, nullptr);
}

/// How much of a text there is to write when some of it may be cut off: the rest of the line that
/// is under way, or nothing at the beginning of one.
std::size_t restOfLine(std::string_view text, std::size_t written) {
    if (written == 0 || text[written - 1] == '\n') return 0;
    return text.find('\n', written) + 1 - written;
}

void writeAll(std::string_view text) {
    std::size_t written = 0;
    std::size_t end = text.size();
    while (written < end) {
        const ssize_t count = write(STDOUT_FILENO, text.data() + written, end - written);
        if (count < 0 && errno == EPIPE) endBy(SIGPIPE);
        if (count < 0 && errno != EINTR) {
            throw WriteError(std::string("cannot write to standard output: ") +
                             std::strerror(errno));
        }
        if (count > 0) written += static_cast<std::size_t>(count);
        if (pending != 0) end = written + restOfLine(text, written);
    }
}

}  // namespace

Sink::Sink() {
    constexpr std::size_t ofPipes = std::size_t{1} << 16U;
    // People look at lines as they come.
    pieceSize_ = isatty(STDOUT_FILENO) != 0 ? 1 : ofPipes;
    waitForLines(SIGINT);
    waitForLines(SIGTERM);
}

void Sink::line(std::string_view text) {
    buffer_.append(text) += '\n';
    if (buffer_.size() >= pieceSize_) flush();
}

void Sink::flush() {
    isWriting = 1;
    try {
        writeAll(buffer_);
    } catch (...) {
        isWriting = 0;
        buffer_.clear();
        throw;
    }
    isWriting = 0;
    buffer_.clear();
    if (pending != 0) endBy(pending);
}

}  // namespace model_walk
