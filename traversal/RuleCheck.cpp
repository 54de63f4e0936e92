#include "traversal/RuleCheck.h"

#include <algorithm>
#include <set>
#include <utility>

#include "traversal/ClassHierarchyComparator.h"
#include "traversal/NamedPredicate.h"
#include "traversal/internal/Names.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER {

namespace {

using Calls = std::vector<RuleCall>;
/// What is followed from the elements of each class, in order, and how it is reported.
using Answer = std::vector<std::vector<std::pair<Property, ResultPolicy>>>;

bool filesRule(const RuleCall& call) {
    return call.operation != RuleCall::Operation::SetResultPolicy;
}

std::string describe(const Calls& calls, std::size_t index) {
    const RuleCall& call = calls[index];
    const NamedPredicate* named = namedIn(call.matcher.getMatcher());
    std::string text =
        internal::ruleName(index + 1, named == nullptr ? std::string() : named->name);
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
    return text + internal::qualifiedName(call.matcher.getProperty()) + ", owner " +
           internal::qualifiedName(call.matcher.getOwner()) + ")";
}

}  // namespace

/// One look through the rules of one builder.
class RuleCheck::Search {
  public:
    Search(Kind kind, const Calls& calls, const Replay& replay, const std::vector<Class>& classes)
        : kind_(kind), calls_(calls), replay_(replay), provider_(replay_(calls_)) {
        for (const Class& type : classes) {
            if (!type) continue;
            classes_.push_back(type);
            decisions_.push_back(provider_->decide(type));
        }
        answer_ = answerOf(*provider_);
    }

    std::vector<RuleFinding> run() {
        for (std::size_t index = 0; index < calls_.size(); ++index) look(index);
        return std::move(findings_);
    }

  private:
    Answer answerOf(PropertyProvider& provider) const {
        Answer answer;
        for (const Class& type : classes_) {
            auto& followed = answer.emplace_back();
            for (AssociationSetting& setting : provider.computeSettings(type)) {
                followed.emplace_back(setting.property(), setting.policy());
            }
        }
        return answer;
    }
    Answer answerOf(const Calls& calls) const { return answerOf(*replay_(calls)); }
    Answer answerWithout(std::size_t index) const {
        Calls calls = calls_;
        calls.erase(calls.begin() + static_cast<std::ptrdiff_t>(index));
        return answerOf(calls);
    }

    void look(std::size_t index) {
        const bool isMissed = answerWithout(index) != answer_;
        const bool isExplained = lookForReason(index, isMissed);
        if (!isExplained && !isMissed) {
            std::vector<std::size_t> beside = others(index);
            const char* sentence =
                beside.empty() ? "changes nothing: the property is followed like this without it"
                               : "changes nothing beside the others on the property";
            add(RuleProblem::Redundant, index, std::move(beside), isMissed, sentence);
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
        if (kind_ == Kind::Composition && !access::isComposite(property)) {
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
        if (kind_ == Kind::Additive) {
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
        if (accepted.empty() || !filesRule(call) || answers(call)) return false;
        // It would accept them if it were asked: where nobody else answers, it is not there any
        // more.
        std::vector<std::size_t> replacing = policiesBehind(index);
        if (!replacing.empty() && !isAnswered(call.matcher.getProperty(), accepted)) {
            return add(RuleProblem::Overwritten, index, std::move(replacing), isMissed,
                       "is replaced by a rule that never applies, which a policy for its owner "
                       "puts in its place");
        }
        if (isMissed) return false;
        return add(RuleProblem::Shadowed, index, others(index), isMissed,
                   "is never asked or never decides, because other rules answer for every class "
                   "that it accepts");
    }

    static const PropertyDecision* find(const std::vector<PropertyDecision>& decisions,
                                        const Property& property) {
        const auto found =
            std::find_if(decisions.begin(), decisions.end(),
                         [&](const PropertyDecision& each) { return each.property == property; });
        return found == decisions.end() ? nullptr : &*found;
    }
    /// Whether a rule decides for one of the classes. REQUIRES: no later one has its owner.
    bool answers(const RuleCall& call) const {
        return std::any_of(decisions_.begin(), decisions_.end(), [&](const auto& decisions) {
            const PropertyDecision* decision = find(decisions, call.matcher.getProperty());
            return decision != nullptr && decision->rule != nullptr &&
                   decision->rule->owner == call.matcher.getOwner();
        });
    }
    /// Whether some rule decides about a property for each of these classes.
    bool isAnswered(const Property& property, const std::vector<Class>& classes) const {
        for (std::size_t place = 0; place < classes_.size(); ++place) {
            const PropertyDecision* decision = find(decisions_[place], property);
            if (decision != nullptr && decision->rule != nullptr) continue;
            if (std::find(classes.begin(), classes.end(), classes_[place]) != classes.end()) {
                return false;
            }
        }
        return true;
    }
    /// The policies that were set later under the owner of a rule.
    std::vector<std::size_t> policiesBehind(std::size_t index) const {
        std::vector<std::size_t> later = others(index);
        std::erase_if(later, [&](std::size_t other) {
            return other < index || filesRule(calls_[other]) ||
                   calls_[other].matcher.getOwner() != calls_[index].matcher.getOwner();
        });
        return later;
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

    Kind kind_;
    const Calls& calls_;
    const Replay& replay_;
    /// What the rules decide, all of them together, about each class.
    std::shared_ptr<PropertyProvider> provider_;
    std::vector<Class> classes_;
    std::vector<std::vector<PropertyDecision>> decisions_;
    Answer answer_;
    std::vector<RuleFinding> findings_;
};

std::vector<RuleFinding> RuleCheck::findingsIn(Kind kind, const std::vector<RuleCall>& calls,
                                               const Replay& replay,
                                               const std::vector<Class>& classes) {
    return Search(kind, calls, replay, classes).run();
}

}  // namespace nuv::zero::traversal
