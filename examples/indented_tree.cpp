// An observer that prints the walk as a tree: elements nest as their brackets do.
#include <iostream>
#include <string>

#include "examples/Station.h"
#include "traversal/Traversal.h"

using namespace nuv::zero;
using namespace nuv::zero::traversal;

class TreePrinter : public TraversalProcessor {
  public:
    void onEnterElement(const ModelElement& element) override { line(dumpElement(element), 1); }
    void onEnterProperty(const ModelElement& /*element*/, const meta::Property& property) override {
        line(access::toUtf8(property->getName()) + ":", 1);
    }
    void onExitProperty(const ModelElement& /*element*/,
                        const meta::Property& /*property*/) override {
        --depth_;
    }
    void onExitElement(const ModelElement& /*element*/) override { --depth_; }

  private:
    void line(const std::string& text, std::size_t deeper) {
        std::cout << std::string(2 * depth_, ' ') << text << '\n';
        depth_ += deeper;
    }

    std::size_t depth_ = 0;
};

int main() {
    const Station plant;
    const auto result = Spec::compositionTraversal()->depthFirst({plant.station});

    TreePrinter printer;
    ResultSetup(result).observe(&printer);
    // The links are of no interest here: the observer hears of everything on the way to the end.
    for ([[maybe_unused]] const Link& link : links(result)) {
    }
}
