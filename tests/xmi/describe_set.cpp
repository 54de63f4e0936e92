#include <algorithm>
#include <chrono>
#include <iostream>
#include <map>
#include <string>
#include <vector>

#include "model/memory/ModelAccess.h"
#include "model/memory/Text.h"
#include "xmi/ModelSet.h"
#include "xmi/ReadError.h"

// Loads a set of files and tells what came of it, one line for each figure, fields behind tabs:
//
//     describe_set [--root NAME=FOLDER]... FOLDER [FILE...]
//
// FOLDER is the first root, and FILE a path in it; without one, all models in the folder are
// loaded. For tests that compare the figures with those of another reader, and for the table of
// real models.
namespace {

using nuv::zero::ModelElement;
using nuv::zero::Value;
namespace meta = nuv::zero::meta;
namespace access = nuv::zero::access;
namespace text = nuv::zero::text;
namespace xmi = nuv::zero::xmi;

std::size_t linksOf(const ModelElement& element, const meta::Property& property) {
    const Value value = access::read(element, property);
    if (!property->isSingleValued()) return access::toElements(value).size();
    return access::isSet(value) ? 1 : 0;
}

void tellFile(const xmi::ModelSet& set, std::size_t file) {
    const std::string shown = set.fileRoots().textOf(set.place(file));
    std::cout << "file\t" << shown << '\t' << set.model(file).elements().size() << '\n';
    std::map<std::string, std::size_t> links;
    std::map<std::string, std::size_t> classes;
    for (const ModelElement& element : set.model(file).elements()) {
        const meta::Class& type = element->getClass();
        ++classes[text::toUtf8(type->getName())];
        for (const meta::Property& each : type->getAllClassProperties()) {
            if (!each->isAssociation()) continue;
            const std::size_t count = linksOf(element, each);
            if (count == 0) continue;
            const std::string name =
                text::toUtf8(each->owner().getName()) + "." + text::toUtf8(each->getName());
            links[name] += count;
        }
    }
    for (const auto& [name, count] : classes) {
        std::cout << "class\t" << shown << '\t' << name << '\t' << count << '\n';
    }
    for (const auto& [name, count] : links) {
        std::cout << "links\t" << shown << '\t' << name << '\t' << count << '\n';
    }
}

int describe(std::vector<std::string> words) {
    xmi::FileRoots roots;
    std::vector<std::pair<std::string, std::string>> others;
    while (words.size() > 1 && words.front() == "--root") {
        const std::size_t equals = words[1].find('=');
        others.emplace_back(words[1].substr(0, equals), words[1].substr(equals + 1));
        words.erase(words.begin(), words.begin() + 2);
    }
    if (words.empty()) {
        std::cerr << "usage: describe_set [--root NAME=FOLDER]... FOLDER [FILE...]\n";
        return 2;
    }
    roots.add("model", words.front());
    words.erase(words.begin());
    for (const auto& [name, folder] : others) roots.add(name, folder);
    xmi::ModelSet set(std::move(roots));
    const auto begin = std::chrono::steady_clock::now();
    words.empty() ? set.loadFolder("model") : set.load(words);
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;
    for (std::size_t file = 0; file < set.fileCount(); ++file) tellFile(set, file);
    for (const auto& [where, count] : set.findings().counts()) {
        std::cout << "findings\t" << where.second << '\t' << nameOf(where.first) << '\t' << count
                  << '\n';
    }
    for (const xmi::Finding& each : set.findings()) {
        std::cout << "finding\t" << each.file << '\t' << nameOf(each.reason) << '\t'
                  << nameOf(each.weight) << '\t' << each.text() << '\n';
    }
    std::cerr << "loaded in " << took.count() << " s\n";
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return describe({argv + 1, argv + argc});
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
