#include "Output.h"

#include <cstdio>
#include <stdexcept>
#include <vector>

#include "model/memory/Text.h"

namespace model_walk {
namespace {

using nuv::zero::ModelElement;
using nuv::zero::meta::Class;
using nuv::zero::meta::Property;
using nuv::zero::traversal::dumpElement;
using nuv::zero::traversal::dumpLink;
using nuv::zero::traversal::Link;
using nuv::zero::traversal::links;
using nuv::zero::traversal::ResultSetup;
using nuv::zero::traversal::TraversalResult;

constexpr const char* pseudo = "[pseudo]";

std::string propertyName(const Link& link) {
    return link.getProperty() ? nuv::zero::text::toUtf8(link.getProperty()->getName()) : pseudo;
}

/// A line stays a line and a field a field, whatever a model holds.
std::string escaped(std::string_view text) {
    std::string result;
    for (const char character : text) {
        switch (character) {
            case '\n':
                result += "\\n";
                break;
            case '\r':
                result += "\\r";
                break;
            case '\t':
                result += "\\t";
                break;
            default:
                result += character;
        }
    }
    return result;
}

/// Counts the elements that a walk enters, per class.
class EnteredElements final : public nuv::zero::traversal::TraversalProcessor {
  public:
    void onEnterElement(const ModelElement& element) override {
        if (!element) return;
        ++total_;
        ++perClass_[element->getClass()];
    }
    std::size_t total() const noexcept { return total_; }
    const std::unordered_map<Class, std::size_t>& perClass() const noexcept { return perClass_; }

  private:
    std::size_t total_ = 0;
    std::unordered_map<Class, std::size_t> perClass_;
};

void printTable(Sink& sink, const std::string& title,
                const std::map<std::string, std::size_t>& rows) {
    sink.line(title);
    for (const auto& [name, count] : rows) {
        const std::string number = std::to_string(count);
        constexpr std::size_t width = 9;
        const std::size_t padding = number.size() < width ? width - number.size() : 0;
        sink.line(std::string(padding, ' ') + number + "  " + name);
    }
}

}  // namespace

void Sink::line(std::string_view text) {
    constexpr std::size_t pieceSize = std::size_t{1} << 16U;
    buffer_.append(text) += '\n';
    if (buffer_.size() >= pieceSize) flush();
}

void Sink::flush() {
    const bool written = std::fwrite(buffer_.data(), 1, buffer_.size(), stdout) == buffer_.size();
    buffer_.clear();
    if (!written || std::fflush(stdout) != 0) {
        throw std::runtime_error("cannot write to standard output");
    }
}

Output::Output(const Names& names, const nuv::zero::xmi::LoadedModel& model, Sink& sink)
    : names_(names), model_(model), sink_(sink) {}

void Output::print(const std::shared_ptr<TraversalResult>& result, Format format) {
    if (format == Format::Count) {
        printCounts(result);
    } else {
        for (const Link& link : links(result)) {
            sink_.line(format == Format::Tsv ? tsvLine(link) : textLine(link));
        }
    }
    sink_.flush();
}

std::string Output::textLine(const Link& link) {
    const auto isPrintable = [&](const ModelElement& each) {
        return !each || hasPrintableName(each->getClass());
    };
    if (isPrintable(link.getSource()) && isPrintable(link.getTarget())) {
        return escaped(dumpLink(link));
    }
    const std::string property = link.getProperty() ? "[" + propertyName(link) + "]" : pseudo;
    return escaped(element(link.getSource()) + "-" + property + "-" + element(link.getTarget()));
}

std::string Output::element(const ModelElement& element) {
    if (!element || hasPrintableName(element->getClass())) return dumpElement(element);
    return nuv::zero::text::toUtf8(element->getClass()->getName()) + "'" +
           model_.identity(element) + "'";
}

bool Output::hasPrintableName(const Class& type) {
    const auto known = printableNames_.find(type);
    if (known != printableNames_.end()) return known->second;
    const Property name = type->getProperty(u"name");
    const bool isPrintable =
        !name ||
        (name->isSingleValued() && name->getType() == nuv::zero::meta::StandardTypes::stringMeta());
    printableNames_.emplace(type, isPrintable);
    return isPrintable;
}

std::string Output::tsvLine(const Link& link) const {
    return escaped(model_.identity(link.getSource())) + '\t' + escaped(propertyName(link)) + '\t' +
           escaped(model_.identity(link.getTarget())) + '\t' +
           (link.shouldCascade() ? "true" : "false");
}

void Output::printCounts(const std::shared_ptr<TraversalResult>& result) {
    EnteredElements entered;
    ResultSetup(result).observe(&entered);
    std::size_t total = 0;
    std::unordered_map<Property, std::size_t> perProperty;
    for (const Link& link : links(result)) {
        ++total;
        ++perProperty[link.getProperty()];
    }

    std::map<std::string, std::size_t> elementRows;
    for (const auto& [type, count] : entered.perClass()) elementRows[names_.nameOf(type)] = count;
    std::map<std::string, std::size_t> linkRows;
    for (const auto& [property, count] : perProperty) {
        const std::string name = property ? names_.nameOf(Class(property->getOwningType())) + "." +
                                                nuv::zero::text::toUtf8(property->getName())
                                          : pseudo;
        linkRows[name] = count;
    }
    printTable(sink_, "elements per class", elementRows);
    printTable(sink_, "links per property", linkRows);
    sink_.line("elements reached: " + std::to_string(entered.total()));
    sink_.line("links: " + std::to_string(total));
}

}  // namespace model_walk
