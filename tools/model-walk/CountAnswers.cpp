#include "CountAnswers.h"
#include "xmi/EscapedText.h"

namespace model_walk {

using nuv::zero::xmi::escaped;

using nuv::zero::ModelElement;

void CountAnswers::onLink(const LinkAnswer& answer) {
    elements_.insert(answer.subject());
    ++links_[answer.link.getProperty()];
}

void CountAnswers::print(const std::string& title, const Rows& rows) {
    sink_.line(title);
    for (const auto& [name, count] : rows) {
        const std::string number = std::to_string(count);
        constexpr std::size_t width = 9;
        const std::size_t padding = number.size() < width ? width - number.size() : 0;
        sink_.line(std::string(padding, ' ') + number + "  " + escaped(name));
    }
}

void CountAnswers::end() {
    if (!facts_.empty()) return print("facts per kind", facts_);
    Rows perClass;
    for (const ModelElement& each : elements_) ++perClass[labels_.className(each)];
    Rows perProperty;
    std::size_t total = 0;
    for (const auto& [property, count] : links_) {
        perProperty[property ? labels_.names().nameOf(property) : "[pseudo]"] += count;
        total += count;
    }
    print("elements per class", perClass);
    if (!links_.empty()) print("links per property", perProperty);
    sink_.line("elements reached: " + std::to_string(elements_.size()));
    if (!links_.empty()) sink_.line("links: " + std::to_string(total));
}

}  // namespace model_walk
