#include "xmi/ReferenceResolver.h"

#include <algorithm>
#include <filesystem>

#include "model/memory/ModelAccess.h"
#include "xmi/ElementBuilder.h"
#include "xmi/Fragment.h"
#include "xmi/FragmentWay.h"
#include "xmi/ReadError.h"

namespace nuv::zero::xmi {

ReferenceResolver::ReferenceResolver(const ReferenceTargets& targets, const FeatureTable& features,
                                     const OwnNames& ownNames, bool leavesOut)
    : targets_(targets),
      loaded_(targets.loaded),
      features_(features),
      ownNames_(ownNames),
      ownFileName_(std::filesystem::path(ownNames.file).filename().string()),
      leavesOut_(leavesOut),
      // The empty text is this file already.
      askedMeansThis_(true) {}

void ReferenceResolver::resolve(const ReferenceLog& log) {
    ReferenceLog::Reader reader(log);
    while (reader.next()) {
        begin(reader.place());
        if (reader.isPaths()) {
            resolvePaths(reader);
        } else if (reader.isOne()) {
            attempt([&] { resolveOne(trimmed(reader.text())); });
        } else {
            resolveList(reader.text());
        }
        end();
    }
    std::sort(containedRoots_.begin(), containedRoots_.end());
    loaded_.containedRoots_ = std::move(containedRoots_);
}

void ReferenceResolver::begin(const ReferenceLog::Place& place) {
    place_ = place;
    feature_ = &features_[place.feature];
    isNewList_ =
        feature_->isUnbounded &&
        loaded_.elements_[place.element]
                ->view(feature_->property, ModelElement::Impl::ReflectionPrivateTag::PUBLIC_ACCESS)
                .size() == 0;
}

void ReferenceResolver::end() {
    isNewList_ = false;
    if (list_.empty()) return;
    loaded_.model_.set(loaded_.elements_[place_.element], feature_->property, list_);
    list_.clear();
}

void ReferenceResolver::resolvePaths(ReferenceLog::Reader& log) {
    while (log.nextPath()) {
        if (!log.sharesRoot()) {
            const bool isRoot = log.root() < targets_.roots.size();
            way_.assign(1, isRoot ? targets_.roots[log.root()] : noNode);
        }
        way_.resize(log.sharedSteps() + 1);
        for (std::size_t i = log.sharedSteps(); i < log.steps().size(); ++i) {
            const LoggedStep& step = log.steps()[i];
            const Node from = way_.back();
            way_.push_back(from == noNode ? noNode
                                          : targets_.fragments.child(from, step.tag, step.index));
        }
        attempt([&] { takeNode(way_.back(), [&] { return log.pathText(); }); });
    }
}

void ReferenceResolver::resolveList(std::string_view text) {
    // Ids of single references may hold blanks.
    if (feature_->isSingle) {
        const std::string_view whole = trimmed(text);
        const Index target = loaded_.ids_.find(whole);
        if (target != IdTable::none) {
            attempt([&] { link(target, whole); });
            return;
        }
    }
    for (const ListedReference& each : splitReferences(text)) {
        attempt([&] { resolveOne(each.text); });
    }
}

template <class Action>
void ReferenceResolver::attempt(const Action& action) {
    try {
        action();
    } catch (const Misfit& misfit) {
        if (findings_ == nullptr) throw;
        const Node other = misfit.kind().other;
        findings_->add(misfit,
                       {targets_.contents[place_.node].offset, place_.element,
                        other == noNode ? FileFindings::nothing : targets_.contents[other].offset});
    }
}

void ReferenceResolver::resolveOne(std::string_view reference) {
    const std::size_t hash = reference.find('#');
    const bool hasFile = hash != std::string_view::npos && hash != 0;
    if (hasFile && !meansThisFile(reference.substr(0, hash))) {
        leaveOut(reference, noNode);
        return;
    }
    const std::string_view fragment =
        hash == std::string_view::npos ? reference : reference.substr(hash + 1);
    if (fragment.starts_with('/')) {
        takeNode(nodeOfPath(fragment), [&] { return std::string(reference); });
    } else {
        takeElement(targetOfId(fragment), reference);
    }
}

struct ReferenceResolver::Steps {
    using Step = Node;
    static constexpr Step none = noNode;

    Step root(std::size_t number) const {
        return number < self.targets_.roots.size() ? self.targets_.roots[number] : none;
    }
    Step byFeature(Step from, std::string_view name, std::size_t number) const {
        const FragmentIndex::Tag tag = self.targets_.fragments.findTag(name);
        return tag == TextTable::none ? none : self.targets_.fragments.child(from, tag, number);
    }
    Step byName(Step from, std::string_view name, std::size_t number) const {
        return ofElement(from, [&](Index parent) {
            return self.loaded_.contentIndex().named(self.loaded_.contentElements(), parent, name,
                                                     number);
        });
    }
    Step bySource(Step from, std::string_view source, std::size_t number) const {
        return ofElement(from, [&](Index parent) {
            return self.loaded_.contentIndex().withSource(self.loaded_.contentElements(), parent,
                                                          source, number);
        });
    }
    Step byKeys(Step from, const FragmentStep& step) const {
        return ofElement(from, [&](Index parent) {
            return self.loaded_.contentIndex().withKeys(self.loaded_.contentElements(), parent,
                                                        step);
        });
    }
    /// What is found below an element of the model.
    template <class Find>
    Step ofElement(Step from, const Find& find) const {
        const Index parent = self.targets_.contents[from].element;
        return parent >= elementElsewhere ? none : self.nodeOf(find(parent));
    }

    ReferenceResolver& self;
};

Node ReferenceResolver::nodeOfPath(std::string_view fragment) {
    const auto path = parseFragmentPath(fragment);
    if (!path) return noNode;
    const Steps steps{*this};
    return FragmentWay<Steps>(steps).go(*path);
}

Node ReferenceResolver::nodeOf(Index element) {
    if (element == LoadedModel::none) return noNode;
    if (nodes_.empty()) {
        nodes_.resize(loaded_.elements_.size());
        for (Node node = 0; node < targets_.contents.size(); ++node) {
            const Index content = targets_.contents[node].element;
            if (content < elementElsewhere) nodes_[content] = node;
        }
    }
    return nodes_[element];
}

ReferenceResolver::Index ReferenceResolver::targetOfId(std::string_view id) {
    Index found = loaded_.ids_.find(id);
    const bool mayBeEncoded = found == IdTable::none && id.find('%') != std::string_view::npos;
    if (mayBeEncoded) found = loaded_.ids_.find(percentDecoded(id));
    if (found != IdTable::none) return found;
    const TextTable::Number shared = loaded_.ids_.numberOfShared(id);
    bool isAmbiguous = shared != TextTable::none;
    if (isAmbiguous) sharedAskedFor_.insert(shared);
    if (!isAmbiguous && !loaded_.namedClasses_.empty()) {
        const auto named = loaded_.contentIndex().byNameAndClass(loaded_.contentElements(), id);
        if (named.element != ContentIndex::none) return named.element;
        isAmbiguous = named.isAmbiguous;
    }
    if (isAmbiguous) {
        fail(Finding::Reason::AmbiguousElement, id,
             "the reference " + inQuotes(id) + " of " + nameOf(feature_->property) +
                 " is the id of several elements");
    }
    // With a prefix it is called by its id as well, where nothing has the whole as its id.
    if (namespaceOf(id) != nullptr) return loaded_.ids_.find(id.substr(id.find(':') + 1));
    return noElement;
}

const std::string* ReferenceResolver::namespaceOf(std::string_view reference) const {
    const std::size_t colon = reference.find(':');
    if (!ownNames_.hasQNames || colon == std::string_view::npos) return nullptr;
    const auto found = ownNames_.prefixes.find(reference.substr(0, colon));
    return found == ownNames_.prefixes.end() ? nullptr : &found->second;
}

template <class Text>
void ReferenceResolver::takeNode(Node target, const Text& text) {
    const Index element = target == noNode ? noElement : targets_.contents[target].element;
    if (element == elementElsewhere) {
        leaveOut(text(), target);
    } else if (element == noElement) {
        failUnresolved(text());
    } else {
        // Containment alone has something to say of the text.
        link(element, feature_->isComposite ? std::string(text()) : std::string());
    }
}

void ReferenceResolver::takeElement(Index target, std::string_view text) {
    if (target == IdTable::none) failUnresolved(text);
    link(target, text);
}

void ReferenceResolver::failUnresolved(std::string_view reference) const {
    const std::string* const uri = namespaceOf(reference);
    fail(Finding::Reason::MissingElement, reference,
         "the reference " + inQuotes(reference) + " of " + nameOf(feature_->property) +
             " leads to nothing in this file" +
             (uri == nullptr ? std::string() : ", in the namespace " + inQuotes(*uri)));
}

void ReferenceResolver::leaveOut(std::string_view reference, Node through) {
    if (outgoing_ != nullptr) {
        outgoing_->push_back({place_.element, feature_->property.get(), place_.node,
                              targets_.contents[place_.node].offset, valuesInFront(),
                              std::string(reference), through});
        return;
    }
    if (!leavesOut_) {
        fail(Finding::Reason::NotLoaded, reference,
             "the reference " + inQuotes(reference) + " of " + nameOf(feature_->property) +
                 " leads into another file");
    }
    ++leftOut_;
}

std::uint32_t ReferenceResolver::valuesInFront() {
    if (!feature_->isComposite) {
        const auto listed = loaded_.elements_[place_.element]->view(
            feature_->property, ModelElement::Impl::ReflectionPrivateTag::PUBLIC_ACCESS);
        return static_cast<std::uint32_t>(listed.size() + list_.size());
    }
    // References come in the order of the file, so each XML element is counted once.
    for (; countedNodes_ < place_.node; ++countedNodes_) {
        if (targets_.contents[countedNodes_].element < elementElsewhere) ++countedElements_;
    }
    return countedElements_;
}

void ReferenceResolver::link(Index number, std::string_view reference) {
    const ModelElement& owner = loaded_.elements_[place_.element];
    const ModelElement& target = loaded_.elements_[number];
    const meta::Property& property = feature_->property;
    const auto fits = [&] { return target->getClass()->canStandFor(property->type()); };
    const bool contains = feature_->isComposite && findings_ != nullptr && fits();
    if (contains) checkContainment(number, reference);
    if (isNewList_ && fits()) {
        list_.push_back(target);
    } else {
        if (feature_->isSingle) refuseSecondValue(place_.node, owner, property);
        try {
            feature_->isSingle ? loaded_.model_.set(owner, property, target)
                               : loaded_.model_.add(owner, property, target);
        } catch (const memory::ModelError& error) {
            fail(fits() ? Finding::Reason::TooManyValues : Finding::Reason::NoFit, reference,
                 error.what());
        }
    }
    if (contains) {
        containment_.add(target, owner, outermostOf(owner));
        containedRoots_.emplace_back(number, place_.element);
    }
}

ModelElement ReferenceResolver::outermostOf(const ModelElement& element) {
    ModelElement top = element;
    for (ModelElement up = element; up; up = loaded_.container(up)) top = up;
    return containment_.outermost(top);
}

void ReferenceResolver::checkContainment(Index target, std::string_view reference) {
    const ModelElement& content = loaded_.elements_[target];
    const ModelElement& owner = loaded_.elements_[place_.element];
    const std::string text =
        "the reference " + inQuotes(reference) + " of " + nameOf(feature_->property) + " leads to ";
    ModelElement before = loaded_.container(content);
    if (!before) before = containment_.containerOf(content);
    if (before) {
        fail(Finding::Reason::ContainedTwice, reference,
             text + "what " + inQuotes(loaded_.identity(before)) + " contains already",
             nodeOf(loaded_.indexOf(before)));
    }
    if (outermostOf(owner) == content) {
        fail(Finding::Reason::ContainedInItself, reference,
             text + "an element inside which it stands itself", nodeOf(target));
    }
}

bool ReferenceResolver::meansThisFile(std::string_view file) {
    if (file == askedFile_) return askedMeansThis_;
    askedFile_ = file;
    askedMeansThis_ = file == ownNames_.file || percentDecoded(file) == ownFileName_ ||
                      ownNames_.namespaces.find(file) != TextTable::none;
    return askedMeansThis_;
}

void ReferenceResolver::fail(Finding::Reason reason, std::string_view reference,
                             const std::string& text, Node other) const {
    const meta::Property& property = feature_->property;
    throw Misfit(place_.node,
                 {reason, weightOf(property), nameOf(property), std::string(reference), other},
                 text);
}

}  // namespace nuv::zero::xmi
