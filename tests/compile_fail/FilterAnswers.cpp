// A filter answers bool or a policy. A number could mean either, and would be taken for what it is
// not meant to be.
#include "traversal/Traversal.h"

using namespace nuv::zero::traversal;

int answersNumber(const Link& link);
void answersNothing(const Link& link);
bool isWanted(const Link& link) {
    return link.shouldCascade();
}

void setUp(const std::shared_ptr<TraversalResult>& result) {
    ResultSetup setup(result);
    setup.filter([](const Link& link) { return link.shouldCascade(); });
    setup.filter([](const auto& link) { return link.shouldCascade(); });
    setup.filter([](auto link) { return link.shouldCascade(); });
    setup.filter([](Link link) { return !link; });
    setup.filter([](const Link& link) -> const bool& {
        static bool answer = false;
        return answer = link.shouldCascade();
    });
    setup.filter(isWanted);
    setup.filter(&isWanted);
    setup.filter(&Link::shouldCascade);
    setup.filter(std::function<bool(Link)>(isWanted));
    setup.filter([](const Link& /*link*/) { return ResultPolicy::Report; });
    setup.filter([](const auto& /*link*/) { return ResultPolicy::Report; });
    setup.filter([](Link /*link*/) { return ResultPolicy::Report; });
    setup.filter(
        std::function<ResultPolicy(Link)>([](const Link&) { return ResultPolicy::Report; }));
    setup.filter(nullptr);
#ifdef EXPECT_ERROR
    setup.filter(FILTER);
#endif
}
