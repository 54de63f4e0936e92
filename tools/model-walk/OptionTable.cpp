#include "OptionTable.h"

#include <algorithm>
#include <array>

namespace model_walk::table {
namespace {

constexpr std::array<Choice, 3> extents = {{
    {"reachable", "the model and all that its references lead to"},
    {"given", "the files that are named, and no other"},
    {"folder", "every model file in the model's folder and below"},
}};
constexpr std::array<Choice, 6> formats = {{
    {"text", "a line for each answer: its address, a tab, what it is"},
    {"tree", "lines drawn as a tree, the address at their ends; (*) was shown before"},
    {"tsv", "fields separated by tabs, the address first"},
    {"json", "one object per line"},
    {"dot", "a picture for Graphviz: model-walk ... -f dot | dot -Tsvg"},
    {"count", "how many elements of each class and links of each property"},
}};
constexpr std::array<Choice, 3> whenever = {{
    {"auto", "on a terminal"},
    {"always", "everywhere"},
    {"never", "nowhere"},
}};
constexpr std::array<Choice, 3> progressing = {{
    {"auto", "on a terminal, when loading takes longer than a second"},
    {"on", "everywhere, when loading takes longer than a second"},
    {"off", "nowhere"},
}};
constexpr std::array<Choice, 3> kinds = {{
    {"composition", "everything that elements contain"},
    {"additive", "only what --traverse names"},
    {"subtractive", "every reference, except what --prune names"},
}};
constexpr std::array<Choice, 3> orders = {{
    {"pre", "a link, then everything below it"},
    {"post", "everything below a link, then the link"},
    {"breadth", "level by level"},
}};
constexpr std::array<Choice, 2> uniqueness = {{
    {"links", "a link and its opposite are printed once"},
    {"elements", "each element is printed as a target once"},
}};
constexpr std::array<Choice, 2> onOrOff = {{
    {"on", "the elements that the walk starts from are printed as links without a source"},
    {"off", "they are not"},
}};

constexpr std::array<OptionEntry, 43> allOptions = {{
    {Option::Metamodel,
     "-m,--metamodel",
     "FILE",
     true,
     "an Ecore file that says which classes there are",
     {}},
    {Option::Root,
     "--root",
     "NAME=FOLDER",
     true,
     "a folder or an archive that references lead into, as platform:/plugin/NAME/... or by "
     "--prefix",
     {}},
    {Option::Roots, "--roots", "FILE", true, "a text file with a root on each line", {}},
    {Option::Prefix,
     "--prefix",
     "PREFIX=NAME[/PATH]",
     true,
     "references that begin with PREFIX lead into the root NAME",
     {}},
    {Option::Namespace, "--namespace", "OLD=NEW", true, "the namespace OLD in files means NEW", {}},
    {Option::Load, "--load", "EXTENT", false, "which files are loaded", extents},
    {Option::Model, "--model", "FILE", true, "one more file of the model", {}},
    {Option::ExpectUnresolved,
     "--expect-unresolved",
     "PREFIX",
     true,
     "references that begin with PREFIX, or into files whose place does, are known to be missing",
     {}},
    {Option::SkipCrossFile,
     "--skip-cross-file",
     "",
     false,
     "load the given file alone, and count its references into others",
     {}},
    {Option::Limit,
     "--limit",
     "NAME=N",
     true,
     "how much a model may take: bytes, depth, elements, names, files, findings",
     {}},
    {Option::Threads, "--threads", "N", false, "on how many threads files are read", {}},
    {Option::Format, "-f,--format", "FORMAT", false, "how answers are printed", formats},
    {Option::Attributes,
     "-a,--attributes",
     "A,B",
     false,
     "print these attributes of each element; * for all that are set",
     {}},
    {Option::ShowFindings,
     "--findings",
     "",
     false,
     "list what could not be resolved on standard error",
     {}},
    {Option::Color, "--color", "WHEN", false, "colour; never where NO_COLOR is set, unless always",
     whenever},
    {Option::Progress, "--progress", "WHEN", false, "how far loading has come", progressing},
    {Option::Quiet, "-q,--quiet", "", false, "no summary on standard error", {}},
    {Option::Kind, "-k,--kind", "KIND", false, "what is followed", kinds},
    {Option::Traverse,
     "-t,--traverse",
     "C.P[=N]",
     true,
     "additive: follow property P of class C and its subclasses",
     {}},
    {Option::Prune,
     "-p,--prune",
     "C.P",
     true,
     "composition, subtractive: do not follow property P of class C",
     {}},
    {Option::Policy,
     "--policy",
     "C.P=N",
     true,
     "what to do with the links of property P of class C: 0 follow without printing, 1 print "
     "(default), 2 print. For additive only where --traverse names the property; for the others "
     "only where --prune does not",
     {}},
    {Option::From,
     "--from",
     "ELEMENT",
     true,
     "an element to start from, beside those behind the model (default: all roots)",
     {}},
    {Option::Order, "-o,--order", "ORDER", false, "in which order", orders},
    {Option::Unique, "--unique", "WHAT", false, "which repeats are left out", uniqueness},
    {Option::PseudoLinks, "--pseudo-links", "WHETHER", false,
     "whether the elements at the beginning are printed", onOrOff},
    {Option::UpTo, "--up-to", "N", false, "go on from elements nearer than N steps only", {}},
    {Option::Nodes,
     "--nodes",
     "N",
     false,
     "draw N nodes at most (200); the picture says what it leaves out",
     {}},
    {Option::Clusters, "--clusters", "", false, "draw elements inside what contains them", {}},
    {Option::NoMerge,
     "--no-merge",
     "",
     false,
     "draw each element by itself, also those of one class with the same neighbours",
     {}},
    {Option::Class,
     "-c,--class",
     "CLASS",
     true,
     "of this class or a subclass; of one of them, where several are given",
     {}},
    {Option::Exactly, "--exactly", "", false, "of the class itself, no subclass", {}},
    {Option::Name,
     "-n,--name",
     "PATTERN",
     false,
     "whose name fits: * stands for any text, ? for one character",
     {}},
    {Option::Where,
     "-w,--where",
     "CONDITION",
     true,
     "A=V: attribute A is V; A!=V: it is not; A~RE: the regular expression RE occurs in it; "
     "A: it is set. Several must all hold",
     {}},
    {Option::Within,
     "--within",
     "ELEMENT",
     false,
     "go on through everything inside this element",
     {}},
    {Option::Outside, "--outside", "", false, "print only the links that leave it", {}},
    {Option::Inside, "--inside", "", false, "also references to anything inside the elements", {}},
    {Option::Property, "--property", "PROPERTY", true, "only links of a property of this name", {}},
    {Option::Undirected, "--undirected", "", false, "follow references backwards as well", {}},
    {Option::Steps, "-s,--steps", "N", false, "how many steps at most (1)", {}},
    {Option::FromFile,
     "--from",
     "FILE",
     false,
     "the file that the reference stands in (default: the model)",
     {}},
    {Option::Reason, "--reason", "REASON", true, "only findings for this reason", {}},
    {Option::Help, "-h,--help", "", false, "this page", {}},
    {Option::Version, "--version", "", false, "the version", {}},
}};

constexpr std::array loadingOptions = {
    Option::Metamodel,     Option::Root,  Option::Roots,  Option::Prefix,
    Option::Namespace,     Option::Load,  Option::Model,  Option::ExpectUnresolved,
    Option::SkipCrossFile, Option::Limit, Option::Threads};
constexpr std::array answeringOptions = {
    Option::Format, Option::Attributes, Option::ShowFindings, Option::Color,   Option::Progress,
    Option::Quiet,  Option::Nodes,      Option::Clusters,     Option::NoMerge, Option::Help};
constexpr std::array ruleOptions = {Option::Kind,   Option::Traverse,    Option::Prune,
                                    Option::Policy, Option::From,        Option::Order,
                                    Option::Unique, Option::PseudoLinks, Option::UpTo};

constexpr GroupEntry loadingGroup = {"loading", "What is loaded", loadingOptions};
constexpr GroupEntry answeringGroup = {"answers", "How it is answered", answeringOptions};
constexpr GroupEntry ruleGroup = {"rules", "What is followed, from where, in which order",
                                  ruleOptions};
constexpr std::array allGroups = {&loadingGroup, &answeringGroup, &ruleGroup};

}  // namespace

std::span<const OptionEntry> options() {
    return allOptions;
}

const OptionEntry& entryOf(Option option) {
    return *std::find_if(allOptions.begin(), allOptions.end(),
                         [&](const OptionEntry& entry) { return entry.id == option; });
}

std::string_view nameOf(Option option) {
    const std::string_view names = entryOf(option).names;
    const std::size_t comma = names.find(',');
    return comma == std::string_view::npos ? names : names.substr(comma + 1);
}

const GroupEntry& loading() {
    return loadingGroup;
}

const GroupEntry& answering() {
    return answeringGroup;
}

const GroupEntry& rules() {
    return ruleGroup;
}

std::span<const GroupEntry* const> groups() {
    return allGroups;
}

const GroupEntry* groupNamed(std::string_view name) {
    const auto* const found =
        std::find_if(allGroups.begin(), allGroups.end(),
                     [&](const GroupEntry* entry) { return entry->name == name; });
    return found == allGroups.end() ? nullptr : *found;
}

}  // namespace model_walk::table
