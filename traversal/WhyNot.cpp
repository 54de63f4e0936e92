#include "traversal/WhyNot.h"

#include <algorithm>
#include <stdexcept>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "traversal/internal/Dumps.h"
#include "traversal/internal/WalkAccess.h"
#include "traversal/support/ElementSet.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER {

using internal::Link;
using internal::Walk;
using internal::WalkAccess;

namespace {

/// What a listener has recorded of the links to an element and of prunes, found by what it is
/// about: an element may have as many links as there are records.
class Recorded {
  public:
    Recorded(const WalkBoundaries* boundaries, const ModelElement& target) {
        if (boundaries == nullptr) return;
        for (const WalkBoundaries::Refusal& refusal : boundaries->refusals()) {
            if (refusal.link.getTarget() == target) refused_.insert(refusal.link);
        }
        for (const WalkBoundaries::Cut& cut : boundaries->cuts()) {
            cuts_[cut.element()].push_back(&cut);
        }
    }

    bool isRefused(const Link& link) const { return refused_.contains(link); }
    /// The first prune that cut a property of an element; null where there was none.
    const WalkBoundaries::Cut* findCut(const ModelElement& element,
                                       const Property& property) const {
        const auto cuts = cuts_.find(element);
        if (cuts == cuts_.end()) return nullptr;
        const auto found = std::find_if(
            cuts->second.begin(), cuts->second.end(),
            [&](const auto* cut) { return !cut->property || cut->property == property; });
        return found == cuts->second.end() ? nullptr : *found;
    }

  private:
    std::unordered_set<Link, internal::LinkHasher> refused_;
    std::unordered_map<ModelElement, std::vector<const WalkBoundaries::Cut*>> cuts_;
};

/// Looks for the links to an element, in a breadth-first pass over what a walk has entered.
class MissedLinks {
  public:
    MissedLinks(Walk& walk, const ModelElement& element, const WalkBoundaries* boundaries)
        : walk_(walk), element_(element), recorded_(boundaries, element) {}

    std::vector<MissedLink> find() {
        addInputs();
        std::size_t distanceEnd = found_.size();
        for (std::size_t next = 0; next < found_.size(); ++next) {
            if (next == distanceEnd) {
                ++distance_;
                distanceEnd = found_.size();
            }
            lookFrom(found_[next]);
        }
        return std::move(links_);
    }

  private:
    using Element = internal::Lent<ModelElement>;
    /// The associations of a class, and how the walk takes them.
    struct Associations {
        std::vector<AssociationSetting> all;
        /// None where the walk has not come to an element of the class that it goes on from.
        const std::vector<AssociationSetting>* followed = nullptr;

        bool isFollowed(const Property& property) const noexcept {
            return followed != nullptr && std::any_of(followed->begin(), followed->end(),
                                                      [&](const AssociationSetting& setting) {
                                                          return setting.property() == property;
                                                      });
        }
    };

    void addInputs() {
        const std::vector<ModelElement>& inputs = walk_.inputs();
        bool isMet = false;
        bool isToCome = false;
        for (std::size_t index = 0; index < inputs.size(); ++index) {
            if (inputs[index] == element_) {
                isMet = true;
                isToCome = isToCome || mayBeEntered(index);
            }
            if (inputs[index]) goOnTo(inputs[index]);
        }
        if (!isMet) return;
        add(Link(ModelElement(), element_, Property()),
            isToCome ? Obstacle::NotYet : Obstacle::NotTaken);
    }
    /// Whether the walk has still to enter an input that it has not entered. The one under way may
    /// have been lost: then nothing waits.
    bool mayBeEntered(std::size_t input) const noexcept {
        if (walk_.hasEnded()) return false;
        const bool isUnderWay = input + 1 == walk_.inputsBegun();
        return input >= walk_.inputsBegun() || (isUnderWay && walk_.waitingCount() != 0);
    }
    void goOnTo(const ModelElement& element) {
        if (walk_.hasEntered(element) && known_.insert(element)) found_.emplace_back(element);
    }

    // NOLINTNEXTLINE(performance-unnecessary-value-param): what is found makes the list longer
    void lookFrom(Element lent) {
        const ModelElement& source = lent.get();
        const Associations& associations = associationsOf(access::classOf(source));
        for (const AssociationSetting& setting : associations.all) {
            const auto values = setting.read(source);
            const bool isFollowed = associations.isFollowed(setting.property());
            bool isMet = false;
            for (std::size_t index = 0; index < values.size(); ++index) {
                const Element value = Element::adopt(values.lend(index));
                if (value.get() == element_) isMet = true;
                if (isFollowed && value.get()) goOnTo(value.get());
            }
            if (isMet) miss(source, setting.property(), associations);
        }
    }

    void miss(const ModelElement& source, const Property& property,
              const Associations& associations) {
        const Link link(source, element_, property);
        // What the rules say of a class that the walk does not go on from, it has never asked.
        const bool isKnown = associations.followed != nullptr;
        const bool isFollowed = associations.isFollowed(property);
        if (!isKnown || (isFollowed && !walk_.mayLeave(source))) {
            return add(link, Obstacle::OutOfReach);
        }
        if (!isFollowed) {
            add(link, Obstacle::Rules);
            const ExplainedProperty* decision =
                explanationOf(access::classOf(source)).find(property);
            if (decision != nullptr) links_.back().decision = *decision;
            return;
        }
        if (recorded_.isRefused(link)) return add(link, Obstacle::Boundary);
        if (const WalkBoundaries::Cut* cut = recorded_.findCut(source, property)) {
            add(link, Obstacle::Pruned);
            links_.back().pruning = cut->pruning;
            return;
        }
        add(link, walk_.hasLeft(source) ? Obstacle::NotTaken : Obstacle::NotYet);
    }
    void add(const Link& link, Obstacle obstacle) {
        links_.push_back({link, distance_, obstacle, std::nullopt, std::nullopt});
    }

    const Associations& associationsOf(const Class& type) {
        const auto known = associations_.find(type);
        if (known != associations_.end()) return known->second;
        Associations associations;
        std::vector<Property> properties;
        if (type) properties = access::allProperties(type);
        for (const Property& property : properties) {
            if (!access::isAssociation(property)) continue;
            associations.all.emplace_back(property, ResultPolicy::Report);
            associations.all.back().prepareFor(type, nullptr);
        }
        associations.followed = walk_.knownSettingsOf(type);
        return associations_.emplace(type, std::move(associations)).first->second;
    }
    const Explanation& explanationOf(const Class& type) {
        const auto known = explanations_.find(type);
        if (known != explanations_.end()) return known->second;
        return explanations_.emplace(type, explain(walk_.result(), type)).first->second;
    }

    Walk& walk_;
    const ModelElement& element_;
    const Recorded recorded_;
    std::vector<MissedLink> links_;
    /// In the order in which they were found.
    std::vector<Element> found_;
    internal::ElementSet known_;
    std::size_t distance_ = 0;
    std::unordered_map<Class, Associations> associations_;
    std::unordered_map<Class, Explanation> explanations_;
};

WhyNot whyNot(Walk* walk, const ModelElement& element, const WalkBoundaries* boundaries) {
    if (!element) throw std::invalid_argument("whyNot() needs an element.");
    WhyNot answer{element, false, 0, {}};
    if (walk == nullptr) return answer;
    answer.isEntered = walk->hasEntered(element);
    answer.enteredCount = walk->enteredCount();
    if (!answer.isEntered) answer.links = MissedLinks(*walk, element, boundaries).find();
    return answer;
}

std::string obstacleText(const MissedLink& missed) {
    switch (missed.obstacle) {
        case Obstacle::Rules:
            return missed.decision ? missed.decision->text() : "the rules do not follow it";
        case Obstacle::Boundary:
            return "a boundary refused it";
        case Obstacle::Pruned:
            switch (missed.pruning.value_or(Pruning::AllChildren)) {
                case Pruning::AllChildren:
                    return "all children of its source were pruned";
                case Pruning::Children:
                    return "children of its source by that property were pruned";
                case Pruning::Siblings:
                    return "the further values of that property were pruned";
            }
            break;
        case Obstacle::OutOfReach:
            return "its source is as far from the inputs as the walk goes";
        case Obstacle::NotYet:
            return "the walk has not come there yet";
        case Obstacle::NotTaken:
            return "refused, pruned or lost; a WalkBoundaries listener would know";
    }
    return "";
}

std::string counted(std::size_t count, const std::string& one, const std::string& many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

}  // namespace

std::size_t WhyNot::count(Obstacle obstacle) const noexcept {
    return static_cast<std::size_t>(
        std::count_if(links.begin(), links.end(),
                      [&](const MissedLink& missed) { return missed.obstacle == obstacle; }));
}

std::string WhyNot::text() const {
    const std::string name = internal::dumpElement(element);
    if (isEntered) return name + " was entered.\n";
    if (links.empty()) {
        return name + " was not entered: nothing that was entered refers to it (" +
               counted(enteredCount, "element", "elements") + ").\n";
    }
    std::string text = name + " was not entered. " + counted(links.size(), "link", "links") +
                       " might have led to it:\n";
    for (const MissedLink& missed : links) {
        text += "  " + internal::dumpLink(missed.link);
        if (missed.link.getProperty()) {
            text += ", " + counted(missed.distance, "link", "links") + " from an input";
        }
        text += ": " + obstacleText(missed) + "\n";
    }
    return text;
}

WhyNot whyNot(const internal::TraversalResult::IterationContext& walk, const ModelElement& element,
              const WalkBoundaries* boundaries) {
    return whyNot(WalkAccess::of(walk), element, boundaries);
}

WhyNot whyNot(const LinkRange& walk, const ModelElement& element,
              const WalkBoundaries* boundaries) {
    return whyNot(WalkAccess::of(walk), element, boundaries);
}

}  // namespace nuv::zero::traversal
