#include "Options.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <string_view>

namespace model_walk {
namespace {

using nuv::zero::traversal::Algo;
using nuv::zero::traversal::ResultPolicy;
using nuv::zero::traversal::UniquenessMode;

/// The page that `--help` prints. Written out, since a generated list of options explains nothing.
constexpr std::string_view helpPage =
    R"(model-walk - walks the elements of a model along their properties and prints the links

Usage: model-walk [OPTIONS] METAMODEL... MODEL

  METAMODEL  Ecore files (.ecore) that say which classes and properties there are
  MODEL      the file to walk: .xmi, or any file of XMI shape; an .ecore file, too, with
             Ecore.ecore as its metamodel

What is followed
  -k, --kind KIND           composition  everything that elements contain (default)
                            additive     only what --traverse names
                            subtractive  every reference, except what --prune names
  -t, --traverse C.P[=N]    additive: follow property P of class C
  -p, --prune C.P           composition, subtractive: do not follow property P of class C
      --policy C.P=N        what to do with the links of property P of class C:
                            0 follow without printing, 1 print (default), 2 print.
                            For additive: only for a property that --traverse names;
                            for the others: only for a property that --prune does not name
  C is the name of a class (Block) or its qualified name (system::Block); a rule holds for its
  subclasses as well. These options may be repeated.

Where it starts, and in which order
      --from ELEMENT        an id, or a path such as /, /2 or //@blocks.0 (default: all roots);
                            may be repeated
  -o, --order ORDER         pre      a link, then everything below it (default)
                            post     everything below a link, then the link
                            breadth  level by level

What is printed
  -f, --format FORMAT       text   one readable line per link (default):
                                   Block'Rotor'-[ports]-Port'power'
                            tsv    source, property, target and cascade, separated by tabs.
                                   Elements are printed as their ids, else as their paths; cascade
                                   is false where the target was reached before
                            count  the number of elements per class and of links per property
      --pseudo-links on|off whether the elements that the walk starts from are printed as links
                            without a source (default: on)
      --unique links|elements
                            links: a link and its opposite are printed once;
                            elements: each element is printed as a target once

Other
  -m, --metamodel FILE      one more metamodel file; may be repeated
      --skip-cross-file     leave out references into other files instead of failing. Their number
                            is told on standard error. In .ecore models they are always left out
  -h, --help                this page
      --version             the version

Exit status: 0 done, 1 a file cannot be read, 2 the command line is wrong.

Examples
  model-walk system.ecore drone.xmi
  model-walk --kind additive --traverse Block.parts --traverse Block.ports system.ecore drone.xmi
  model-walk --kind subtractive --order breadth --from rotor --format tsv system.ecore drone.xmi
)";

template <class Value>
using Choices = std::vector<std::pair<std::string, Value>>;

/// The value that a word stands for. The parser's own check of words tells more than one line.
template <class Value>
Value choose(const std::string& option, const std::string& word, const Choices<Value>& choices) {
    std::string known;
    for (const auto& [name, value] : choices) {
        if (name == word) return value;
        known += (known.empty() ? "" : ", ") + name;
    }
    throw UsageError("option " + option + " does not know '" + word + "'; it knows " + known);
}

ResultPolicy parsePolicy(const std::string& text, std::string_view number) {
    if (number == "0") return ResultPolicy::WalkOnly;
    if (number == "1") return ResultPolicy::Report;
    if (number == "2") return ResultPolicy::Extended;
    throw UsageError("the policy in '" + text + "' is none of 0, 1, 2");
}

Rule parseRule(const std::string& text, bool mayHavePolicy, bool mustHavePolicy) {
    Rule rule;
    rule.text = text;
    std::string place = text;
    const std::size_t equals = text.rfind('=');
    const bool hasPolicy = mayHavePolicy && equals != std::string::npos;
    if (hasPolicy) {
        rule.policy = parsePolicy(text, std::string_view(text).substr(equals + 1));
        place = text.substr(0, equals);
    }
    const std::size_t dot = place.rfind('.');
    const bool isComplete = dot != std::string::npos && dot != 0 && dot + 1 != place.size();
    if (!isComplete || (mustHavePolicy && !hasPolicy)) {
        throw UsageError("'" + text + "' is not of the form Class.property" +
                         (mustHavePolicy ? "=N" : ""));
    }
    rule.className = place.substr(0, dot);
    rule.propertyName = place.substr(dot + 1);
    return rule;
}

std::vector<Rule> parseRules(const std::vector<std::string>& texts, bool mayHavePolicy,
                             bool mustHavePolicy) {
    std::vector<Rule> rules;
    for (const std::string& text : texts) {
        rules.push_back(parseRule(text, mayHavePolicy, mustHavePolicy));
    }
    return rules;
}

/// The words of the command line, before anything is made of them.
struct CommandLine {
    std::vector<std::string> files;
    std::string kind = "composition";
    std::string order = "pre";
    std::vector<std::string> traverse;
    std::vector<std::string> prune;
    std::vector<std::string> policies;
    std::string format = "text";
    std::string pseudoLinks = "on";
    std::string unique;
    bool help = false;
    bool version = false;
};

void declare(CLI::App& parser, CommandLine& words, Options& options) {
    parser.set_help_flag();
    parser.add_flag("-h,--help", words.help);
    parser.add_flag("--version", words.version);
    parser.add_option("files", words.files);
    parser.add_option("-k,--kind", words.kind);
    parser.add_option("-o,--order", words.order);
    parser.add_option("-f,--format", words.format);
    parser.add_option("--pseudo-links", words.pseudoLinks);
    parser.add_option("--unique", words.unique);
    parser.add_flag("--skip-cross-file", options.skipCrossFile);
    // One value each time, or they would swallow the files behind them.
    parser.add_option("-m,--metamodel", options.metamodelFiles)->allow_extra_args(false);
    parser.add_option("-t,--traverse", words.traverse)->allow_extra_args(false);
    parser.add_option("-p,--prune", words.prune)->allow_extra_args(false);
    parser.add_option("--policy", words.policies)->allow_extra_args(false);
    parser.add_option("--from", options.from)->allow_extra_args(false);
}

void interpret(const CommandLine& words, Options& options) {
    options.kind = choose<Kind>("--kind", words.kind,
                                {{"additive", Kind::Additive},
                                 {"composition", Kind::Composition},
                                 {"subtractive", Kind::Subtractive}});
    options.order = choose<Algo>("--order", words.order,
                                 {{"pre", Algo::DepthFirstPreOrder},
                                  {"post", Algo::DepthFirstPostOrder},
                                  {"breadth", Algo::BreadthFirst}});
    options.format =
        choose<Format>("--format", words.format,
                       {{"text", Format::Text}, {"tsv", Format::Tsv}, {"count", Format::Count}});
    options.pseudoLinks =
        choose<bool>("--pseudo-links", words.pseudoLinks, {{"on", true}, {"off", false}});
    if (!words.unique.empty()) {
        options.uniqueness = choose<UniquenessMode>(
            "--unique", words.unique,
            {{"links", UniquenessMode::UniqueLinks}, {"elements", UniquenessMode::UniqueElements}});
    }
    options.traverse = parseRules(words.traverse, true, false);
    options.prune = parseRules(words.prune, false, false);
    options.policies = parseRules(words.policies, true, true);
    if (options.kind != Kind::Additive && !options.traverse.empty()) {
        throw UsageError("--traverse needs --kind additive; the other kinds take --prune");
    }
    if (options.kind == Kind::Additive && !options.prune.empty()) {
        throw UsageError(
            "--prune needs --kind composition or subtractive; additive takes "
            "--traverse");
    }

    // As with other commands that take many files and one at the end.
    if (words.files.empty()) throw UsageError("the model file is missing; see model-walk --help");
    options.modelFile = words.files.back();
    options.metamodelFiles.insert(options.metamodelFiles.end(), words.files.begin(),
                                  words.files.end() - 1);
    if (options.metamodelFiles.empty()) {
        throw UsageError("a metamodel and a model are needed; see model-walk --help");
    }
}

}  // namespace

std::optional<Options> parseOptions(int argc, const char* const* argv) {
    CLI::App parser;
    CommandLine words;
    Options options;
    declare(parser, words, options);
    try {
        parser.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        throw UsageError(std::string(error.what()) + "; see model-walk --help");
    }
    if (words.help) {
        std::cout << helpPage;
        return std::nullopt;
    }
    if (words.version) {
        std::cout << "model-walk " MODEL_WALK_VERSION "\n";
        return std::nullopt;
    }
    interpret(words, options);
    return options;
}

}  // namespace model_walk
