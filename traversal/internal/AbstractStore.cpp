#include "traversal/internal/AbstractStore.h"

#include <algorithm>
#include <deque>
#include <vector>

#include "traversal/internal/LentLink.h"

namespace nuv::zero::traversal::internal {

AbstractStore::~AbstractStore() = default;

namespace {

/// What the two disciplines share: the links in the order in which they were pushed.
template <class Derived, class Links>
class Store : public AbstractStore {
  public:
    void push(const Link& link) final { links_.emplace_back(link); }
    bool empty() const final { return links_.empty(); }
    bool equals(const AbstractStore& other) const final {
        const auto* same = dynamic_cast<const Derived*>(&other);
        return same != nullptr &&
               std::equal(links_.begin(), links_.end(), same->links_.begin(), same->links_.end(),
                          [](const LentLink& a, const LentLink& b) { return a.get() == b.get(); });
    }
    std::unique_ptr<AbstractStore> clone() const final {
        auto copy = std::make_unique<Derived>();
        copy->links_ = links_;
        return copy;
    }

  protected:
    Links links_;
};

/// A queue. Served from the front, so it must not move what is left.
class BfsStore final : public Store<BfsStore, std::deque<LentLink>> {
  public:
    const Link& top() const override { return links_.front().get(); }
    void pop() override { links_.pop_front(); }
};

/// A stack.
class DfsStore final : public Store<DfsStore, std::vector<LentLink>> {
  public:
    const Link& top() const override { return links_.back().get(); }
    void pop() override { links_.pop_back(); }
};

}  // namespace

std::unique_ptr<AbstractStore> makeBfsStore() {
    return std::make_unique<BfsStore>();
}
std::unique_ptr<AbstractStore> makeDfsStore() {
    return std::make_unique<DfsStore>();
}

}  // namespace nuv::zero::traversal::internal
