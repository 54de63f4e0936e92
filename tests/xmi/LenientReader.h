#pragma once

#include <string>
#include <vector>

#include "tests/xmi/ReaderFixture.h"
#include "xmi/Findings.h"
#include "xmi/XmiBuilder.h"

namespace nuv::zero::xmi::test {

/// A file that was read as far as it makes sense, with what was found in it.
struct LenientRead {
    LoadedModel model;
    Findings findings{1000};
    std::vector<OutgoingReference> outgoing;
    std::vector<std::string> unknownNamespaces;
    /// Why nothing of it was read; mostly empty.
    std::string error;
};

inline LenientRead readLeniently(const LoadedMetamodel& metamodel, const std::string& text,
                                 std::size_t limit = 1000) {
    LenientRead read;
    read.findings = Findings(limit);
    const std::string file = "m.xmi";
    const ReadOptions options;
    TextSource source(text);
    XmiBuilder builder(metamodel, file, source, options);
    try {
        read.model = builder.build(&read.outgoing, &read.findings);
    } catch (const ReadError& error) {
        read.error = error.what();
    }
    read.unknownNamespaces = builder.unknownNamespaces();
    return read;
}

/// One line each: `contents-lost unknown-class at 3:1 in // of A.b, lost 2: the text`.
inline Lines told(const Findings& findings) {
    Lines lines;
    for (const Finding& each : findings.kept()) {
        std::string line =
            std::string(nameOf(each.weight)) + " " + std::string(nameOf(each.reason)) + " at " +
            std::to_string(each.position.line) + ":" + std::to_string(each.position.column);
        if (!each.element.empty()) line += " in " + each.element;
        if (!each.property.empty()) line += " of " + each.property;
        if (!each.other.empty()) line += ", other " + each.other;
        if (each.lost != 0) line += ", lost " + std::to_string(each.lost);
        lines.push_back(line + ": " + each.message);
    }
    return lines;
}

}  // namespace nuv::zero::xmi::test
