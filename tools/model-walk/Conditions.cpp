#include "Conditions.h"

#include <algorithm>
#include <regex>
#include <set>

#include "UsageError.h"
#include "model/memory/Text.h"

namespace model_walk {

using nuv::zero::ModelElement;
using nuv::zero::meta::Class;
using nuv::zero::meta::Property;
using nuv::zero::text::toUtf16;
using nuv::zero::text::toUtf8;

namespace {

using Values = std::vector<std::string>;
using Test = std::function<bool(const Values& values)>;

/// `A=V`, `A!=V`, `A~RE` or `A`.
struct Comparison {
    std::string attribute;
    Test test;
};

Comparison comparisonOf(const std::string& text) {
    const std::size_t sign = std::min({text.find('='), text.find("!="), text.find('~')});
    const std::string attribute = text.substr(0, sign);
    if (attribute.empty()) throw UsageError("'" + text + "' names no attribute");
    if (sign == std::string::npos) {
        return {attribute, [](const Values& values) { return !values.empty(); }};
    }
    const bool isNot = text[sign] == '!';
    const std::string wanted = text.substr(sign + (isNot ? 2 : 1));
    const auto isAmong = [wanted](const Values& values) {
        return std::find(values.begin(), values.end(), wanted) != values.end();
    };
    if (isNot) return {attribute, [isAmong](const Values& values) { return !isAmong(values); }};
    if (text[sign] == '=') return {attribute, isAmong};
    try {
        const std::regex expression(wanted);
        return {attribute, [expression](const Values& values) {
                    return std::any_of(values.begin(), values.end(), [&](const auto& each) {
                        return std::regex_search(each, expression);
                    });
                }};
    } catch (const std::regex_error& error) {
        throw UsageError("'" + wanted + "' is no regular expression: " + error.what());
    }
}

/// An attribute that no class has is a slip; one that another class has is not set.
void checkAttribute(const std::string& attribute, const Names& names) {
    std::set<std::string> known;
    for (const Class& type : names.classes()) {
        for (const Property& each : type->getAllClassProperties()) {
            if (!each->isAssociation()) known.insert(toUtf8(each->getName()));
        }
    }
    if (known.contains(attribute)) return;
    throw UsageError("no class has an attribute '" + attribute + "'" +
                     nearest(attribute, {known.begin(), known.end()}));
}

Values valuesOf(const ModelElement& element, const std::u16string& attribute) {
    const Property property = element->getClass()->getProperty(attribute);
    if (!property || property->isAssociation()) return {};
    return readAttribute(element, property).values;
}

std::size_t lengthOfFirst(std::string_view text) {
    std::size_t length = 1;
    while (length < text.size() && (static_cast<unsigned char>(text[length]) & 0xC0U) == 0x80U) {
        ++length;
    }
    return length;
}

}  // namespace

bool fits(std::string_view text, std::string_view pattern) {
    // Where the last star stood, and how much of the text it has taken: only that one has to be
    // tried again.
    std::string_view behindStar;
    std::string_view retry;
    bool hasStar = false;
    while (!text.empty() || !pattern.empty()) {
        if (!pattern.empty() && pattern.front() == '*') {
            pattern.remove_prefix(1);
            behindStar = pattern;
            retry = text;
            hasStar = true;
        } else if (!text.empty() && !pattern.empty() && pattern.front() == '?') {
            text.remove_prefix(lengthOfFirst(text));
            pattern.remove_prefix(1);
        } else if (!text.empty() && !pattern.empty() && pattern.front() == text.front()) {
            text.remove_prefix(1);
            pattern.remove_prefix(1);
        } else {
            if (!hasStar || retry.empty()) return false;
            retry.remove_prefix(lengthOfFirst(retry));
            text = retry;
            pattern = behindStar;
        }
    }
    return true;
}

Conditions::Conditions(const CommandLine& line, const Labels& labels) {
    const Names& names = labels.names();
    std::vector<Class> classes;
    for (const std::string& each : line.values(Option::Class)) {
        classes.push_back(names.classNamed(each));
    }
    if (!classes.empty()) {
        const bool isExact = line.has(Option::Exactly);
        conditions_.emplace_back([classes, isExact](const ModelElement& element) {
            return std::any_of(classes.begin(), classes.end(), [&](const Class& type) {
                return isExact ? element->getClass() == type
                               : nuv::zero::access::conformsTo(element->getClass(), type);
            });
        });
    }
    const auto compare = [&](const std::string& attribute, const Test& test) {
        checkAttribute(attribute, names);
        conditions_.emplace_back([name = toUtf16(attribute), test](const ModelElement& element) {
            return test(valuesOf(element, name));
        });
    };
    if (line.has(Option::Name)) {
        conditions_.emplace_back(
            [&labels, pattern = line.value(Option::Name)](const ModelElement& element) {
                return fits(labels.givenName(element), pattern);
            });
    }
    for (const std::string& each : line.values(Option::Where)) {
        const Comparison comparison = comparisonOf(each);
        compare(comparison.attribute, comparison.test);
    }
}

bool Conditions::hold(const ModelElement& element) const {
    return std::all_of(conditions_.begin(), conditions_.end(),
                       [&](const Condition& each) { return each(element); });
}

}  // namespace model_walk
