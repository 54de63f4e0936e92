#include "QuestionTable.h"

#include <algorithm>
#include <array>

namespace model_walk::table {
namespace {

constexpr std::array findOptions = {Option::Class, Option::Exactly, Option::Name, Option::Where};
constexpr std::array dependsOptions = {Option::Within, Option::Outside};
constexpr std::array incomingOptions = {Option::Inside, Option::Property};
constexpr std::array pathOptions = {Option::Undirected};
constexpr std::array nearOptions = {Option::Steps, Option::Undirected};
constexpr std::array resolveOptions = {Option::FromFile};
constexpr std::array findingsOptions = {Option::Reason};

constexpr std::array<Example, 2> infoExamples = {{
    {"info drone.xmi", "classes and counts, roots, files, what is unresolved"},
    {"info -f json drone.xmi", "the same as data"},
}};
constexpr std::array<Example, 3> findExamples = {{
    {"find drone.xmi --class Block --attributes massInGrams", "all blocks, with their mass"},
    {"find drone.xmi --name 'r*' --where direction=out", "what is called r... and leads out"},
    {"near drone.xmi rotor | model-walk find drone.xmi - -c Port", "the ports near the rotor"},
}};
constexpr std::array<Example, 1> contentsExamples = {{
    {"contents drone.xmi rotor -f tree", "the rotor and all its parts"},
}};
constexpr std::array<Example, 2> dependsExamples = {{
    {"depends drone.xmi rotor", "what the rotor refers to outside of itself"},
    {"depends drone.xmi rotor --within //Structure --outside",
     "where what the rotor needs leaves the package Structure"},
}};
constexpr std::array<Example, 2> incomingExamples = {{
    {"incoming drone.xmi rotor --inside", "what refers to the rotor or its ports"},
    {"find drone.xmi -c Interface | model-walk incoming drone.xmi -", "what uses interfaces"},
}};
constexpr std::array<Example, 1> pathExamples = {{
    {"path drone.xmi camera rotor --undirected", "how camera and rotor are connected"},
}};
constexpr std::array<Example, 1> nearExamples = {{
    {"near drone.xmi battery --steps 2", "all within two steps, with their distance"},
}};
constexpr std::array<Example, 1> impactExamples = {{
    {"impact drone.xmi battery", "the references that lead nowhere when it is deleted"},
}};
constexpr std::array<Example, 2> walkExamples = {{
    {"walk drone.xmi -k additive -t Block.parts -t Part.type drone", "along two properties"},
    {"walk drone.xmi -k subtractive -o breadth rotor", "everything that can be reached"},
}};
constexpr std::array<Example, 1> whyExamples = {{
    {"why drone.xmi R2.1 --from drone -k subtractive", "the links from the drone to R2.1"},
}};
constexpr std::array<Example, 1> whyNotExamples = {{
    {"why-not drone.xmi R2.1 --from drone", "what stands between"},
}};
constexpr std::array<Example, 1> explainExamples = {{
    {"explain drone.xmi Block", "which properties of blocks a walk follows, and why"},
}};
constexpr std::array<Example, 1> checkExamples = {{
    {"check drone.xmi -p Port.type", "which rules do not do what they seem to say"},
}};
constexpr std::array<Example, 1> resolveExamples = {{
    {"resolve drone.xmi 'library.xmi#rotor'", "where it is looked for, and what is found"},
}};
constexpr std::array<Example, 1> findingsExamples = {{
    {"findings drone.xmi --reason missing-file", "references into files that are not there"},
}};

constexpr std::array<QuestionEntry, 15> allQuestions = {{
    {Question::Info,
     "info",
     "what is in this model",
     "MODEL",
     "Tells the files, the roots, how many elements there are of each class, and what could not be "
     "resolved.",
     {},
     false,
     infoExamples},
    {Question::Find, "find", "find elements by class, name, attribute or pattern",
     "MODEL [ELEMENT...]",
     "Searches all files that are loaded, or the given elements alone. Without a condition, all "
     "elements fit.",
     findOptions, false, findExamples},
    {Question::Contents,
     "contents",
     "what elements contain",
     "MODEL [ELEMENT...]",
     "Tells the elements (default: the roots) and everything in them, in the order of the file.",
     {},
     false,
     contentsExamples},
    {Question::Depends, "depends", "what elements depend on", "MODEL ELEMENT...",
     "Tells the references that leave the elements: from anything inside them to anything "
     "outside. References to what contains them are no dependencies.",
     dependsOptions, false, dependsExamples},
    {Question::Incoming, "incoming", "who refers to elements", "MODEL ELEMENT...",
     "Tells the references to the elements, over all files that are loaded. The address of each "
     "line is that of the element that refers.",
     incomingOptions, false, incomingExamples},
    {Question::Path, "path", "how one gets from one element to another", "MODEL ELEMENT ELEMENT",
     "Tells the links of a shortest way.", pathOptions, false, pathExamples},
    {Question::Near, "near", "what is within so many steps", "MODEL ELEMENT...",
     "Tells each element once, nearest first, with its distance and a link that leads to it.",
     nearOptions, false, nearExamples},
    {Question::Impact,
     "impact",
     "what breaks when elements are deleted",
     "MODEL ELEMENT...",
     "Tells the references from elsewhere to the elements or anything inside them, which goes with "
     "them. The address of each line is that of the element that refers.",
     {},
     false,
     impactExamples},
    {Question::Walk,
     "walk",
     "walk along properties and print the links",
     "MODEL [ELEMENT...]",
     "Runs one traversal and tells its links. C is the name of a class (Block) or its qualified "
     "name (system::Block); a rule holds for its subclasses as well.",
     {},
     true,
     walkExamples},
    {Question::Why,
     "why",
     "why is an element in the result of a walk",
     "MODEL ELEMENT",
     "Tells the links by which the walk comes to the element.",
     {},
     true,
     whyExamples},
    {Question::WhyNot,
     "why-not",
     "why is an element not in the result of a walk",
     "MODEL ELEMENT",
     "Tells the links that would have led to the element, and why they are not followed.",
     {},
     true,
     whyNotExamples},
    {Question::Explain,
     "explain",
     "what the rules say of a class",
     "MODEL CLASS...",
     "Tells for each property whether it is followed, and why.",
     {},
     true,
     explainExamples},
    {Question::Check,
     "check",
     "which rules do not do what they seem to say",
     "MODEL",
     "Tries each rule of a walk on the classes of the model. Ends with status 2 when a rule can "
     "never match.",
     {},
     true,
     checkExamples},
    {Question::Resolve, "resolve", "how a reference is resolved", "MODEL REFERENCE",
     "Tells the places where the file was looked for, and what the reference leads to.",
     resolveOptions, false, resolveExamples},
    {Question::Findings, "findings", "what could not be resolved", "MODEL",
     "Lists everything in the files that is not as it should be, with the places that were tried.",
     findingsOptions, false, findingsExamples},
}};

}  // namespace

std::span<const QuestionEntry> questions() {
    return allQuestions;
}

const QuestionEntry& entryOf(Question question) {
    return *std::find_if(allQuestions.begin(), allQuestions.end(),
                         [&](const QuestionEntry& entry) { return entry.id == question; });
}

const QuestionEntry* questionNamed(std::string_view name) {
    const auto* const found =
        std::find_if(allQuestions.begin(), allQuestions.end(),
                     [&](const QuestionEntry& entry) { return entry.name == name; });
    return found == allQuestions.end() ? nullptr : found;
}

bool takes(const QuestionEntry& question, Option option) {
    const auto isIn = [&](std::span<const Option> options) {
        return std::find(options.begin(), options.end(), option) != options.end();
    };
    return isIn(question.options) || isIn(loading().options) || isIn(answering().options) ||
           (question.hasRules && isIn(rules().options));
}

}  // namespace model_walk::table
