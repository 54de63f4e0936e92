#include "ManPage.h"

#include <string_view>

#include "ExitStatus.h"
#include "QuestionTable.h"

namespace model_walk {
namespace {

/// Text as it is: no hyphens, no escapes, and no request at the beginning of a line.
std::string plain(std::string_view text) {
    std::string result;
    for (const char each : text) {
        switch (each) {
            case '\\':
                result += "\\e";
                break;
            case '-':
                result += "\\-";
                break;
            case '\'':
                result += "\\(aq";
                break;
            case '~':
                result += "\\(ti";
                break;
            default:
                result += each;
        }
    }
    return result.starts_with('.') ? "\\&" + result : result;
}

std::string line(std::string_view text) {
    return plain(text) + "\n";
}

std::string optionText(Option option) {
    const OptionEntry& entry = table::entryOf(option);
    std::string names = "\\fB";
    for (const char each : entry.names) {
        names += each == ',' ? "\\fR, \\fB" : plain(std::string_view(&each, 1));
    }
    names += "\\fR";
    if (!entry.value.empty()) names += " \\fI" + plain(entry.value) + "\\fR";
    std::string text =
        ".TP\n" + names + "\n" +
        line(std::string(entry.help) + (entry.mayBeRepeated ? "; may be repeated." : "."));
    for (const Choice& each : entry.choices) {
        text += ".br\n\\fB" + plain(each.word) + "\\fR: " + line(each.meaning);
    }
    return text;
}

std::string questionText(const QuestionEntry& question) {
    std::string text = ".SS " + plain(question.name) + "\n.B model\\-walk " + plain(question.name) +
                       "\n[\\fIOPTIONS\\fR] \\fI" + plain(question.operands) + "\\fR\n.PP\n" +
                       line(question.description);
    for (const Option each : question.options) text += optionText(each);
    text += ".PP\n.nf\n";
    for (const Example& each : question.examples) {
        text += line("    model-walk " + std::string(each.command));
    }
    return text + ".fi\n";
}

}  // namespace

std::string manPage() {
    std::string page =
        ".TH MODEL\\-WALK 1\n"
        ".SH NAME\n"
        "model\\-walk \\- asks models questions: what is in them, and how it hangs together\n"
        ".SH SYNOPSIS\n"
        ".B model\\-walk\n"
        "\\fIQUESTION\\fR [\\fIOPTIONS\\fR] \\fIMODEL\\fR [\\fIELEMENT\\fR...]\n"
        ".SH DESCRIPTION\n";
    page += line(
        "MODEL is a file, or - for standard input. ELEMENT is an address as answers have it "
        "(model:drone.xmi#rotor), or in the model's own file an id or a path (rotor, //@blocks.0). "
        "A - in its place stands for the addresses in the lines of standard input, so questions "
        "compose: what one prints, the next reads.");
    page += ".SH QUESTIONS\n";
    for (const QuestionEntry& each : table::questions()) page += questionText(each);
    page += ".SH OPTIONS\n";
    for (const GroupEntry* group : table::groups()) {
        page += ".SS " + plain(group->title) + "\n";
        for (const Option each : group->options) page += optionText(each);
    }
    page += ".SH EXIT STATUS\n";
    for (const StatusEntry& each : exitStatuses) {
        page += ".TP\n.B " + std::to_string(static_cast<int>(each.status)) + "\n" +
                line(std::string(each.meaning) + ".");
    }
    page += ".PP\n";
    page += line(
        "An interruption and a closed pipe end the command by their signals, behind a whole line.");
    page += ".SH ENVIRONMENT\n.TP\n.B NO_COLOR\n";
    page += line("Where it is set, there is no colour.");
    return page;
}

}  // namespace model_walk
