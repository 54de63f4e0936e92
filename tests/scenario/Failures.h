#pragma once

#include <ostream>

namespace nuv::zero::scenario {

/// Runs an operation of the library; an exception that it ends with becomes one line of the
/// transcript. Malformed statements and failures of the runner itself pass through.
template <class Operation>
void printingFailures(std::ostream& output, Operation operation);

/// Prints the line of the exception that is being handled, or throws it again when transcripts have
/// no line for it.
void printCurrentException(std::ostream& output);

template <class Operation>
void printingFailures(std::ostream& output, Operation operation) {
    try {
        operation();
    } catch (...) {
        printCurrentException(output);
    }
}

}  // namespace nuv::zero::scenario
