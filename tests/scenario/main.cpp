#include <exception>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "tests/scenario/Runner.h"

namespace {

using namespace nuv::zero::scenario;

constexpr int differs = 1;
constexpr int malformed = 2;
constexpr int broken = 3;

int usage() {
    std::cerr
        << "usage: scenario-runner [--check] FILE\n"
           "Runs a scenario and prints its transcript. With --check, compares the transcript\n"
           "with the lines of the file that begin with #= instead, and prints what differs.\n"
           "Exit status: 0 done, 1 the transcript differs, 2 the file is malformed.\n";
    return malformed;
}

int check(const Scenario& scenario) {
    std::ostringstream transcript;
    runScenario(scenario, transcript);
    const std::string difference = differences(scenario, transcript.str());
    std::cout << difference;
    return difference.empty() ? 0 : differs;
}

int run(const std::string& file, bool isCheck) {
    std::ifstream input(file, std::ios::binary);
    if (!input) {
        std::cerr << file << ": cannot be opened\n";
        return malformed;
    }
    const Scenario scenario = readScenario(input, file);
    if (isCheck) return check(scenario);
    runScenario(scenario, std::cout);
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    const bool isCheck = arguments.size() == 2 && arguments.front() == "--check";
    if (arguments.size() != 1 && !isCheck) return usage();
    try {
        return run(arguments.back(), isCheck);
    } catch (const ScenarioError& error) {
        std::cout.flush();
        std::cerr << error.what() << '\n';
        return malformed;
    } catch (const std::exception& error) {
        std::cout.flush();
        std::cerr << arguments.back() << ": unexpected failure: " << error.what() << '\n';
        return broken;
    }
}
