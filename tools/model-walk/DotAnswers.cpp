#include "DotAnswers.h"

#include <iostream>

#include "UsageError.h"
#include "xmi/EscapedText.h"

namespace model_walk {

using nuv::zero::xmi::escaped;

using nuv::zero::ModelElement;

std::size_t DotAnswers::nodeOf(const ModelElement& element) {
    const auto [known, isNew] = nodes_.emplace(element, picture_.nodes.size());
    if (isNew) {
        picture_.nodes.push_back(
            {escaped(labels_.className(element)), escaped(labels_.name(element))});
    }
    return known->second;
}

void DotAnswers::onLink(const LinkAnswer& answer) {
    const std::size_t target = nodeOf(answer.link.getTarget());
    if (!answer.link.getProperty()) {
        picture_.nodes[target].isInput = true;
        return;
    }
    const std::size_t source = nodeOf(answer.link.getSource());
    std::string property = escaped(Labels::property(answer.link));
    if (!edges_.emplace(source, target, property).second) return;
    picture_.edges.push_back(
        {source, target, std::move(property), answer.link.getProperty()->isComposite()});
}

void DotAnswers::onFact(const FactAnswer& /*answer*/) {
    throw UsageError("--format dot draws elements and links, and this question answers with none");
}

void DotAnswers::findContainers() {
    for (const auto& [element, node] : nodes_) {
        ModelElement container = labels_.project().container(element);
        while (container && !nodes_.contains(container)) {
            container = labels_.project().container(container);
        }
        if (container) picture_.nodes[node].container = nodes_.at(container);
    }
}

void DotAnswers::end() {
    if (options_.hasClusters) findContainers();
    const Picture shown = merging_ == Merging::Yes ? merged(picture_) : picture_;
    const std::string drawn = text(shown, options_);
    sink_.line(std::string_view(drawn).substr(0, drawn.size() - 1));
    sink_.flush();
    const std::size_t missing = leftOut(shown, options_);
    if (missing > 0) {
        std::cerr << "model-walk: " << missing << " of " << picture_.nodes.size()
                  << " elements are left out of the picture; --nodes draws more\n";
    }
}

}  // namespace model_walk
