#include "xmi/Fragment.h"

#include <algorithm>
#include <charconv>

namespace nuv::zero::xmi {
namespace {

constexpr std::string_view blanks = " \t\r\n";

bool isBlankCharacter(char character) {
    return character == ' ' || character == '\t' || character == '\r' || character == '\n';
}

std::optional<std::size_t> number(std::string_view text) {
    std::size_t value = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, code] = std::from_chars(text.data(), end, value);
    if (text.empty() || code != std::errc() || stop != end) return std::nullopt;
    return value;
}

int hexDigit(char character) {
    if (character >= '0' && character <= '9') return character - '0';
    if (character >= 'a' && character <= 'f') return character - 'a' + 10;
    if (character >= 'A' && character <= 'F') return character - 'A' + 10;
    return -1;
}

/// Takes `.N` off the end of a text, where it ends so.
std::size_t takeIndex(std::string_view& text) {
    const std::size_t dot = text.rfind('.');
    if (dot == std::string_view::npos) return 0;
    const auto index = number(text.substr(dot + 1));
    if (!index) return 0;
    text = text.substr(0, dot);
    return *index;
}

/// Takes `key='value'` from the front of what stands in brackets, and the mark behind it.
bool takeKey(std::string_view& text, std::vector<FragmentStep::Key>& keys) {
    const std::size_t equals = text.find('=');
    if (equals == std::string_view::npos || equals + 1 == text.size()) return false;
    const char quote = text[equals + 1];
    const std::size_t end = text.find(quote, equals + 2);
    const bool isQuoted = quote == '\'' || quote == '"';
    if (!isQuoted || end == std::string_view::npos || end + 1 == text.size()) return false;
    if (text[end + 1] != ',' && text[end + 1] != ']') return false;
    keys.emplace_back(percentDecoded(text.substr(0, equals)),
                      percentDecoded(text.substr(equals + 2, end - equals - 2)));
    text.remove_prefix(end + 1);
    return true;
}

/// The length of the step that a text begins with.
std::size_t lengthOfStep(std::string_view text) {
    std::size_t from = 0;
    if (text.starts_with('%')) {
        // A source is free text between percent signs and may hold slashes.
        from = text.find('%', 1);
    } else if (text.starts_with('@')) {
        // So may the values of keys, between quotation marks.
        const std::size_t open = text.find_first_of("[/");
        std::size_t at = open;
        while (at < text.size() && text[open] == '[' && text[at] != ']') {
            const std::size_t quote = text.find_first_of("'\"]", at + 1);
            if (quote == std::string_view::npos) break;
            at = text[quote] == ']' ? quote : text.find(text[quote], quote + 1);
        }
        from = at;
    }
    return std::min(text.size(), text.find('/', from == std::string_view::npos ? 0 : from));
}

std::optional<FragmentStep> parseKeys(std::string_view raw) {
    const std::size_t open = raw.find('[');
    FragmentStep step{FragmentStep::Kind::Keys, percentDecoded(raw.substr(1, open - 1)), 0, raw};
    std::string_view rest = raw.substr(open);
    while (rest != "]") {
        rest.remove_prefix(1);
        if (!takeKey(rest, step.keys)) return std::nullopt;
    }
    return step;
}

FragmentStep parseStep(std::string_view raw) {
    FragmentStep step{FragmentStep::Kind::Name, {}, 0, raw};
    std::string_view text = raw;
    if (text.starts_with('%')) {
        // What looks so may be a name, too: `%20.a`.
        std::string_view source = text;
        const std::size_t index = source.ends_with('%') ? 0 : takeIndex(source);
        if (source.size() >= 2 && source.ends_with('%')) {
            step.kind = FragmentStep::Kind::Source;
            step.text = percentDecoded(source.substr(1, source.size() - 2));
            step.index = index;
            return step;
        }
    }
    if (text.starts_with('@') && text.ends_with(']') && text.find('[') != std::string_view::npos) {
        if (auto keys = parseKeys(raw)) return *keys;
    }
    if (text.starts_with('@')) {
        step.kind = FragmentStep::Kind::Feature;
        text.remove_prefix(1);
    }
    step.index = takeIndex(text);
    step.text = percentDecoded(text);
    return step;
}

}  // namespace

std::optional<FragmentPath> parseFragmentPath(std::string_view text) {
    if (!text.starts_with('/')) return std::nullopt;
    FragmentPath path;
    text.remove_prefix(1);
    const std::size_t end = text.find('/');
    const std::string_view root = text.substr(0, end);
    if (!root.empty()) {
        const auto index = number(root);
        if (!index) return std::nullopt;
        path.root = *index;
    }
    while (text.find('/') != std::string_view::npos) {
        text.remove_prefix(text.find('/') + 1);
        const std::string_view raw = text.substr(0, lengthOfStep(text));
        if (raw.empty()) return std::nullopt;
        path.steps.push_back(parseStep(raw));
        text.remove_prefix(raw.size());
    }
    return path;
}

std::string percentDecoded(std::string_view text) {
    std::string decoded;
    decoded.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%' && i + 2 < text.size()) {
            const int high = hexDigit(text[i + 1]);
            const int low = hexDigit(text[i + 2]);
            if (high >= 0 && low >= 0) {
                decoded += static_cast<char>(high * 16 + low);
                i += 2;
                continue;
            }
        }
        decoded += text[i];
    }
    return decoded;
}

bool isBlank(std::string_view text) {
    return std::all_of(text.begin(), text.end(), isBlankCharacter);
}

std::string_view trimmed(std::string_view text) {
    const std::size_t begin = text.find_first_not_of(blanks);
    if (begin == std::string_view::npos) return {};
    return text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

std::vector<std::string_view> splitAtBlanks(std::string_view text) {
    std::vector<std::string_view> words;
    while (true) {
        const std::size_t begin = text.find_first_not_of(blanks);
        if (begin == std::string_view::npos) return words;
        text.remove_prefix(begin);
        const std::string_view word = text.substr(0, text.find_first_of(blanks));
        words.push_back(word);
        text.remove_prefix(word.size());
    }
}

std::vector<ListedReference> splitReferences(std::string_view text) {
    const std::vector<std::string_view> words = splitAtBlanks(text);
    const auto has = [&](std::size_t index, char wanted) {
        return index < words.size() && words[index].find(wanted) != std::string_view::npos;
    };
    std::vector<ListedReference> references;
    for (std::size_t i = 0; i < words.size(); ++i) {
        // An id may hold a colon, so only what stands in front of a reference with a file is a
        // type.
        const bool isTyped = has(i, ':') && !has(i, '#') && has(i + 1, '#');
        if (isTyped) {
            references.push_back({words[i + 1], words[i]});
            ++i;
        } else {
            references.push_back({words[i], {}});
        }
    }
    return references;
}

}  // namespace nuv::zero::xmi
