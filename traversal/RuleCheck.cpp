#include "traversal/RuleCheck.h"

#include <algorithm>
#include <set>
#include <utility>

#include "traversal/ClassHierarchyComparator.h"
#include "traversal/NamedPredicate.h"

namespace nuv::zero::traversal {

namespace {

using Calls = std::vector<RuleCall>;
/// What is followed from the elements of each class, in order, and how it is reported.
using Answer = std::vector<std::vector<std::pair<Property, ResultPolicy>>>;

bool filesRule(const RuleCall& call) {
    return call.operation != RuleCall::Operation::SetResultPolicy;
}

std::string labelOf(const Class& type) {
    return type ? access::toUtf8(access::nameOf(type)) : "no class";
}
std::string labelOf(const Property& property) {
    if (!property) return "no property";
    return labelOf(Class(access::owningClass(property))) + "." +
           access::toUtf8(access::nameOf(property));
}

std::string describe(const Calls& calls, std::size_t index) {
    const RuleCall& call = calls[index];
    std::string text = "rule " + std::to_string(index + 1);
    if (const auto* named = call.matcher.getMatcher().target<NamedPredicate>()) {
        text += " \"" + named->name + "\"";
    }
    switch (call.operation) {
        case RuleCall::Operation::Traverse:
            text += " (traverse ";
            break;
        case RuleCall::Operation::Prune:
            text += " (prune ";
            break;
        case RuleCall::Operation::SetResultPolicy:
            text += " (setResultPolicy of ";
            break;
    }
    return text + labelOf(call.matcher.getProperty()) + ", owner " +
           labelOf(call.matcher.getOwner()) + ")";
}

/// One look through the rules of one builder.
class Search {
  public:
    Search(RuleCheck::Kind kind, const Calls& calls,
           const std::function<std::shared_ptr<PropertyProvider>(const Calls&)>& replay,
           const std::vector<Class>& classes)
        : kind_(kind), calls_(calls), replay_(replay) {
        for (const Class& type : classes) {
            if (type) classes_.push_back(type);
        }
        answer_ = answerOf(calls_);
    }

    std::vector<RuleFinding> run() {
        for (std::size_t index = 0; index < calls_.size(); ++index) look(index);
        return std::move(findings_);
    }

  private:
    Answer answerOf(const Calls& calls) const {
        const std::shared_ptr<PropertyProvider> provider = replay_(calls);
        Answer answer;
        for (const Class& type : classes_) {
            auto& followed = answer.emplace_back();
            for (AssociationSetting& setting : provider->computeSettings(type)) {
                followed.emplace_back(setting.property(), setting.policy());
            }
        }
        return answer;
    }
    Answer answerWithout(std::size_t index) const {
        Calls calls = calls_;
        calls.erase(calls.begin() + static_cast<std::ptrdiff_t>(index));
        return answerOf(calls);
    }

    void look(std::size_t index) {
        const bool isMissed = answerWithout(index) != answer_;
        const bool isExplained = lookForReason(index, isMissed);
        if (!isExplained && !isMissed) {
            add(RuleProblem::Redundant, index, others(index), isMissed,
                "changes nothing, because other rules on the property say the same");
        }
        if (!isExplained) lookForOrder(index, isMissed);
    }

    /// Whether a reason was found why a rule does not do what it says.
    bool lookForReason(std::size_t index, bool isMissed) {
        const RuleCall& call = calls_[index];
        const Property& property = call.matcher.getProperty();
        if (!property) {
            return add(RuleProblem::NoProperty, index, {}, isMissed, "is on no property");
        }
        std::vector<Class> having;
        std::copy_if(classes_.begin(), classes_.end(), std::back_inserter(having),
                     [&](const Class& type) { return access::hasProperty(type, property); });
        if (having.empty()) {
            return add(RuleProblem::NoClassHasProperty, index, {}, isMissed,
                       "is on a property that none of the classes has");
        }
        if (!access::isAssociation(property) || access::isDerived(property)) {
            return add(RuleProblem::NeverFollowed, index, {}, isMissed,
                       access::isAssociation(property)
                           ? "is on a derived property, which no walk follows"
                           : "is on a property that is no association, which no walk follows");
        }
        if (kind_ == RuleCheck::Kind::Composition && !access::isComposite(property)) {
            return add(RuleProblem::NotFollowedByKind, index, {}, isMissed,
                       "is on a property that is no containment, which a composition traversal "
                       "does not follow");
        }
        if (filesRule(call) ? lookAtRule(index, isMissed) : lookAtPolicy(index, isMissed)) {
            return true;
        }
        return lookAtPredicate(index, having, isMissed);
    }

    bool lookAtPolicy(std::size_t index, bool isMissed) {
        std::vector<std::size_t> earlier = others(index);
        std::erase_if(earlier, [&](std::size_t other) { return other > index; });
        if (kind_ == RuleCheck::Kind::Additive) {
            const Class& owner = calls_[index].matcher.getOwner();
            const bool isNamed =
                std::any_of(earlier.begin(), earlier.end(), [&](std::size_t other) {
                    return filesRule(calls_[other]) && calls_[other].matcher.getOwner() == owner;
                });
            return !isNamed &&
                   add(RuleProblem::PolicyWithoutRule, index, {}, isMissed,
                       "sets the policy of a rule that no traverse() before it has given");
        }
        return !earlier.empty() &&
               add(RuleProblem::PolicyNotUsed, index, std::move(earlier), isMissed,
                   "sets a policy that is not used, because the property has rules already");
    }

    bool lookAtRule(std::size_t index, bool isMissed) {
        if (calls_[index].operation == RuleCall::Operation::Prune) {
            const auto first = static_cast<std::size_t>(
                std::find_if(calls_.begin(), calls_.end(),
                             [&](const RuleCall& call) {
                                 return call.matcher.getProperty() ==
                                        calls_[index].matcher.getProperty();
                             }) -
                calls_.begin());
            if (calls_[first].operation == RuleCall::Operation::SetResultPolicy) {
                return add(RuleProblem::PruneUndone, index, {first}, isMissed,
                           "does not cut the property away but makes its links silent, because a "
                           "policy was set for the property before");
            }
        }
        for (std::size_t later = index + 1; later < calls_.size(); ++later) {
            if (filesRule(calls_[later]) && isOnSameProperty(later, index) &&
                calls_[later].matcher.getOwner() == calls_[index].matcher.getOwner()) {
                return add(RuleProblem::Overwritten, index, {later}, isMissed,
                           "is replaced by a later one under the same owner");
            }
        }
        return false;
    }

    bool lookAtPredicate(std::size_t index, const std::vector<Class>& having, bool isMissed) {
        const RuleCall& call = calls_[index];
        std::vector<Class> accepted;
        std::copy_if(having.begin(), having.end(), std::back_inserter(accepted),
                     [&](const Class& type) { return call.matcher.matches(type); });
        if (accepted.empty() && !isMissed) {
            return add(RuleProblem::AcceptsNoClass, index, {}, isMissed,
                       "accepts none of the classes that have the property");
        }
        if (isMissed || !filesRule(call)) return false;
        // Without the others it would have a say.
        std::vector<std::size_t> others = this->others(index);
        if (others.empty()) return false;
        Calls alone;
        for (std::size_t other = 0; other < calls_.size(); ++other) {
            if (other == index || !isOnSameProperty(other, index)) alone.push_back(calls_[other]);
        }
        Calls none = alone;
        std::erase_if(none, [&](const RuleCall& other) {
            return other.matcher.getProperty() == call.matcher.getProperty();
        });
        if (answerOf(alone) == answerOf(none)) return false;
        return add(RuleProblem::Shadowed, index, std::move(others), isMissed,
                   "is never asked or never decides, because other rules answer for every class "
                   "that it accepts");
    }

    void lookForOrder(std::size_t index, bool isMissed) {
        if (!filesRule(calls_[index])) return;
        const ClassHierarchyComparator less;
        const Class& owner = calls_[index].matcher.getOwner();
        for (std::size_t earlier = 0; earlier < index; ++earlier) {
            const Class& other = calls_[earlier].matcher.getOwner();
            const bool isOpen = filesRule(calls_[earlier]) && isOnSameProperty(earlier, index) &&
                                less(owner, other) && less(other, owner);
            if (!isOpen) continue;
            Calls swapped = calls_;
            std::swap(swapped[index], swapped[earlier]);
            if (answerOf(swapped) == answer_) continue;
            add(RuleProblem::OrderOfGivingDecides, index, {earlier}, isMissed,
                "is asked before or behind the other as they were given, because the name of an "
                "owner sorts behind the name of its superclass");
        }
    }

    bool isOnSameProperty(std::size_t a, std::size_t b) const {
        return calls_[a].matcher.getProperty() == calls_[b].matcher.getProperty();
    }
    std::vector<std::size_t> others(std::size_t index) const {
        std::vector<std::size_t> others;
        for (std::size_t other = 0; other < calls_.size(); ++other) {
            if (other != index && isOnSameProperty(other, index)) others.push_back(other);
        }
        return others;
    }

    /// Always true: it was found. Rules are numbered from 1 in findings.
    bool add(RuleProblem problem, std::size_t index, std::vector<std::size_t> causes, bool isMissed,
             const std::string& sentence) {
        std::string text = describe(calls_, index) + " " + sentence;
        text[0] = 'R';
        for (std::size_t i = 0; i < causes.size(); ++i) {
            text += (i == 0 ? ": " : ", ") + describe(calls_, causes[i]);
            ++causes[i];
        }
        findings_.push_back({problem, index + 1, std::move(causes), isMissed, text + "."});
        return true;
    }

    RuleCheck::Kind kind_;
    const Calls& calls_;
    const std::function<std::shared_ptr<PropertyProvider>(const Calls&)>& replay_;
    std::vector<Class> classes_;
    Answer answer_;
    std::vector<RuleFinding> findings_;
};

}  // namespace

std::vector<RuleFinding> RuleCheck::findingsIn(Kind kind, const std::vector<RuleCall>& calls,
                                               const Replay& replay,
                                               const std::vector<Class>& classes) {
    return Search(kind, calls, replay, classes).run();
}

}  // namespace nuv::zero::traversal
