#include "Completion.h"

#include <string_view>

#include "QuestionTable.h"

namespace model_walk {
namespace {

/// `-f --format` for `-f,--format`.
std::string words(std::string_view names) {
    std::string result(names);
    for (char& each : result) {
        if (each == ',') each = ' ';
    }
    return result;
}

/// `-f|--format` for `-f,--format`.
std::string alternatives(std::string_view names) {
    std::string result(names);
    for (char& each : result) {
        if (each == ',') each = '|';
    }
    return result;
}

bool namesAFile(const OptionEntry& entry) {
    return entry.value.find("FILE") != std::string_view::npos ||
           entry.value.find("FOLDER") != std::string_view::npos;
}

/// What comes behind an option: one of its words, a file, or anything.
std::string valueCases() {
    std::string cases;
    for (const OptionEntry& entry : table::options()) {
        // Both options of this name take what follows from the question; a file is the better
        // guess.
        if (entry.value.empty() || entry.id == Option::From) continue;
        std::string action = ":";
        if (!entry.choices.empty()) {
            action = "COMPREPLY=($(compgen -W \"";
            for (const Choice& each : entry.choices) {
                if (&each != entry.choices.data()) action += ' ';
                action.append(each.word);
            }
            action += "\" -- \"$word\"))";
        } else if (namesAFile(entry)) {
            action = "compopt -o filenames; COMPREPLY=($(compgen -f -- \"${word#*=}\"))";
        }
        cases += "        " + alternatives(entry.names) + ") " + action + "; return ;;\n";
    }
    return cases;
}

std::string optionCases() {
    std::string cases;
    for (const QuestionEntry& question : table::questions()) {
        std::string names;
        for (const OptionEntry& entry : table::options()) {
            if (!table::takes(question, entry.id)) continue;
            names += (names.empty() ? "" : " ") + words(entry.names);
        }
        cases += "            " + std::string(question.name) + ") options=\"" + names + "\" ;;\n";
    }
    return cases;
}

std::string questionNames() {
    std::string names;
    for (const QuestionEntry& each : table::questions()) names += std::string(each.name) + ' ';
    return names + "help";
}

}  // namespace

std::string bashCompletion() {
    return "# bash completion for model-walk\n"
           "_model_walk() {\n"
           "    local word=\"${COMP_WORDS[COMP_CWORD]}\" before=\"${COMP_WORDS[COMP_CWORD - 1]}\"\n"
           "    local question=\"${COMP_WORDS[1]}\" options=\"\"\n"
           "    COMPREPLY=()\n"
           "    if ((COMP_CWORD == 1)); then\n"
           "        COMPREPLY=($(compgen -W \"" +
           questionNames() +
           " --help --version\" -- \"$word\"))\n"
           "        return\n"
           "    fi\n"
           "    if [[ $question == help ]]; then\n"
           "        COMPREPLY=($(compgen -W \"" +
           questionNames() +
           " loading answers rules\" -- \"$word\"))\n"
           "        return\n"
           "    fi\n"
           "    case \"$before\" in\n" +
           valueCases() +
           "    esac\n"
           "    if [[ $word == -* ]]; then\n"
           "        case \"$question\" in\n" +
           optionCases() +
           "        esac\n"
           "        COMPREPLY=($(compgen -W \"$options\" -- \"$word\"))\n"
           "        return\n"
           "    fi\n"
           "    compopt -o filenames\n"
           "    COMPREPLY=($(compgen -f -- \"$word\"))\n"
           "}\n"
           "complete -F _model_walk model-walk\n";
}

}  // namespace model_walk
