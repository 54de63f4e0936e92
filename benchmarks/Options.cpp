#include "benchmarks/Options.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace nuv::zero::benchmarks {
namespace {

constexpr std::array<std::string_view, 10> sectionNames = {
    "walks", "variants", "whereabouts", "foreign", "host",
    "first", "scaling",  "threads",     "model",   "reading"};

std::size_t parseCount(const std::string& name, const std::string& text) {
    std::size_t count = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, count);
    if (error != std::errc() || stop != end || count == 0) {
        throw UsageError(name + " wants a number above zero, not '" + text + "'");
    }
    return count;
}

}  // namespace

bool Options::wants(std::string_view section) const {
    return sections.empty() ||
           std::find(sections.begin(), sections.end(), section) != sections.end();
}

Options Options::parse(const std::vector<std::string>& arguments) {
    Options options;
    for (auto argument = arguments.begin(); argument != arguments.end(); ++argument) {
        const std::string name = *argument;
        const auto value = [&]() -> const std::string& {
            if (++argument == arguments.end()) throw UsageError(name + " wants a value");
            return *argument;
        };
        if (name == "--help") {
            options.help = true;
        } else if (name == "--single" || name.rfind("--benchmark", 0) == 0) {
            options.single = true;
        } else if (name == "--rounds") {
            options.rounds = parseCount(name, value());
        } else if (name == "--section") {
            options.sections.push_back(value());
            if (std::find(sectionNames.begin(), sectionNames.end(), options.sections.back()) ==
                sectionNames.end()) {
                throw UsageError("there is no section '" + options.sections.back() + "'");
            }
        } else if (name == "--shape") {
            options.shapes.push_back(value());
        } else if (name == "--kind") {
            options.kind = value();
        } else if (name == "--order") {
            options.order = value();
        } else if (name == "--svg") {
            options.plot = value();
        } else if (name == "--summary") {
            options.summary = value();
        } else if (name != "--table") {
            throw UsageError("unknown argument '" + name + "'");
        }
    }
    return options;
}

std::string_view Options::usage() {
    return "walk-benchmarks [--table] [--rounds N] [--section NAME]... [--shape NAME]...\n"
           "                [--kind NAME] [--order NAME] [--svg FILE] [--summary FILE]\n"
           "    Measures the library against hand-written loops and other libraries over the same\n"
           "    models, and prints Markdown tables; what misses its target is in bold.\n"
           "    sections: walks variants whereabouts foreign host first scaling threads model\n"
           "              reading\n"
           "    shapes:   tree rich chain star small file\n"
           "    kinds:    composition subtractive additive\n"
           "    orders:   pre-order post-order breadth-first\n"
           "walk-benchmarks --single [Google Benchmark's own options]\n"
           "    Times single cases by Google Benchmark.\n";
}

}  // namespace nuv::zero::benchmarks
