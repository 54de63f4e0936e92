#include "xmi/ReferenceResolver.h"

#include <filesystem>

#include "model/memory/ModelAccess.h"
#include "xmi/Fragment.h"
#include "xmi/Misfit.h"
#include "xmi/ReadError.h"

namespace nuv::zero::xmi {

ReferenceResolver::ReferenceResolver(const ReferenceTargets& targets, const FeatureTable& features,
                                     const OwnNames& ownNames, bool leavesOut)
    : targets_(targets),
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
            resolveOne(trimmed(reader.text()));
        } else {
            resolveList(reader.text());
        }
        end();
    }
}

void ReferenceResolver::begin(const ReferenceLog::Place& place) {
    place_ = place;
    feature_ = &features_[place.feature];
    isNewList_ =
        feature_->isUnbounded &&
        targets_.elements[place.element]
                ->view(feature_->property, ModelElement::Impl::ReflectionPrivateTag::PUBLIC_ACCESS)
                .size() == 0;
}

void ReferenceResolver::end() {
    isNewList_ = false;
    if (list_.empty()) return;
    targets_.model.set(targets_.elements[place_.element], feature_->property, list_);
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
        takeNode(way_.back(), [&] { return log.pathText(); });
    }
}

void ReferenceResolver::resolveList(std::string_view text) {
    // Ids of single references may hold blanks.
    if (feature_->isSingle) {
        const std::string_view whole = trimmed(text);
        const Index target = targets_.ids.find(whole);
        if (target != IdTable::none) {
            link(targets_.elements[target]);
            return;
        }
    }
    for (const ListedReference& each : splitReferences(text)) resolveOne(each.text);
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

Node ReferenceResolver::nodeOfPath(std::string_view fragment) {
    const auto path = parseFragmentPath(fragment);
    if (!path) return noNode;
    if (!keysAreSorted_) {
        targets_.fragments.sortKeys();
        keysAreSorted_ = true;
    }
    return targets_.fragments.resolve(*path, targets_.roots);
}

ReferenceResolver::Index ReferenceResolver::targetOfId(std::string_view id) const {
    Index found = targets_.ids.find(id);
    const bool mayBeEncoded = found == IdTable::none && id.find('%') != std::string_view::npos;
    if (mayBeEncoded) found = targets_.ids.find(percentDecoded(id));
    if (found != IdTable::none) return found;
    if (targets_.ids.isShared(id)) {
        fail("the reference " + inQuotes(id) + " of " + nameOf(feature_->property) +
             " is the id of several elements");
    }
    return noElement;
}

template <class Text>
void ReferenceResolver::takeNode(Node target, const Text& text) {
    const Index element = target == noNode ? noElement : targets_.contents[target].element;
    if (element == elementElsewhere) {
        leaveOut(text(), target);
    } else if (element == noElement) {
        failUnresolved(text());
    } else {
        link(targets_.elements[element]);
    }
}

void ReferenceResolver::takeElement(Index target, std::string_view text) {
    if (target == IdTable::none) failUnresolved(text);
    link(targets_.elements[target]);
}

void ReferenceResolver::failUnresolved(std::string_view reference) const {
    fail("the reference " + inQuotes(reference) + " of " + nameOf(feature_->property) +
         " leads to nothing in this file");
}

void ReferenceResolver::leaveOut(std::string_view reference, Node through) {
    if (outgoing_ != nullptr) {
        outgoing_->push_back({place_.element, feature_->property.get(), place_.node,
                              targets_.contents[place_.node].offset, valuesInFront(),
                              std::string(reference), through});
        return;
    }
    if (!leavesOut_) {
        fail("the reference " + inQuotes(reference) + " of " + nameOf(feature_->property) +
             " leads into another file");
    }
    ++leftOut_;
}

std::uint32_t ReferenceResolver::valuesInFront() {
    if (!feature_->isComposite) {
        const auto listed = targets_.elements[place_.element]->view(
            feature_->property, ModelElement::Impl::ReflectionPrivateTag::PUBLIC_ACCESS);
        return static_cast<std::uint32_t>(listed.size() + list_.size());
    }
    // References come in the order of the file, so each XML element is counted once.
    for (; countedNodes_ < place_.node; ++countedNodes_) {
        if (targets_.contents[countedNodes_].element < elementElsewhere) ++countedElements_;
    }
    return countedElements_;
}

void ReferenceResolver::link(const ModelElement& target) {
    const ModelElement& owner = targets_.elements[place_.element];
    const meta::Property& property = feature_->property;
    if (isNewList_ && target->getClass()->canStandFor(property->type())) {
        list_.push_back(target);
        return;
    }
    if (feature_->isSingle) refuseSecondValue(place_.node, owner, property);
    try {
        end();
        feature_->isSingle ? targets_.model.set(owner, property, target)
                           : targets_.model.add(owner, property, target);
    } catch (const memory::ModelError& error) {
        fail(error.what());
    }
}

bool ReferenceResolver::meansThisFile(std::string_view file) {
    if (file == askedFile_) return askedMeansThis_;
    askedFile_ = file;
    askedMeansThis_ = file == ownNames_.file || percentDecoded(file) == ownFileName_ ||
                      ownNames_.namespaces.find(file) != TextTable::none;
    return askedMeansThis_;
}

void ReferenceResolver::fail(const std::string& reason) const {
    throw Misfit(place_.node, reason);
}

std::string nameOf(const meta::Property& property) {
    return text::toUtf8(property->owner().getName()) + "." + text::toUtf8(property->getName());
}

void refuseSecondValue(Node node, const ModelElement& element, const meta::Property& property) {
    if (!access::isSet(access::read(element, property))) return;
    throw Misfit(node, nameOf(property) + " holds one value, and the file gives two");
}

}  // namespace nuv::zero::xmi
