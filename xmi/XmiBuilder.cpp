#include "xmi/XmiBuilder.h"

#include <algorithm>
#include <utility>

#include "model/memory/Text.h"
#include "xmi/Fragment.h"
#include "xmi/ReadError.h"

namespace nuv::zero::xmi {

XmiBuilder::XmiBuilder(const LoadedMetamodel& metamodel, const std::string& file,
                       ByteSource& source, const ReadOptions& options)
    : metamodel_(metamodel),
      file_(file),
      source_(source),
      options_(options),
      features_(metamodel, names_),
      meanings_(metamodel, names_, features_),
      references_(fragments_),
      ownNames_{file, {}, !metamodel.xmlForm().empty(), {}},
      elements_(loaded_, features_, options.limits) {}

LoadedModel XmiBuilder::build(std::vector<OutgoingReference>* outgoing, Findings* findings) {
    if (findings != nullptr) findings_.emplace(file_, *findings);
    parseXml(file_, source_, options_.limits, names_, *this);
    if (failure_) failAt(failure_->node, failure_->reason);
    if (rootNodes_.empty()) failAt(0, "the file holds no element of a model");
    try {
        finish(outgoing);
    } catch (const Misfit& misfit) {
        failAt(misfit.node(), misfit.what());
    }
    if (findings_) findings_->settle(loaded_, source_);
    if (loaded_.roots_.empty()) {
        const Finding* const first = findings_->first();
        if (first == nullptr) failAt(0, "nothing of the file is an element of a model");
        throw ReadError(file_, first->position, first->message);
    }
    return std::move(loaded_);
}

void XmiBuilder::finish(std::vector<OutgoingReference>* outgoing) {
    // The lists of large containers need not be there while references are resolved.
    elements_.shrink();
    for (std::uint32_t i = 0; i < features_.size(); ++i) {
        loaded_.features_.push_back(features_[i].property.get());
    }
    loaded_.rootCount_ = rootNodes_.size();
    loaded_.numbers_.sort(loaded_.elements_);
    loaded_.ids_.settle();
    elements_.nameClasses(metamodel_);
    const bool leavesOut = options_.crossFile == CrossFile::LeaveOut ||
                           (options_.crossFile == CrossFile::LeaveOutOfMetamodels && isMetamodel_);
    ReferenceResolver resolver({loaded_, fragments_, contents_, rootNodes_}, features_, ownNames_,
                               leavesOut);
    if (outgoing != nullptr) resolver.collectInto(*outgoing);
    if (findings_) resolver.reportTo(*findings_);
    resolver.resolve(references_);
    loaded_.leftOut_ = resolver.leftOut();
    if (findings_) addRepeatedIds(resolver);
}

void XmiBuilder::addRepeatedIds(const ReferenceResolver& resolver) {
    if (loaded_.ids_.repeated().empty()) return;
    std::vector<std::uint32_t> offsets(loaded_.elements_.size());
    for (Node node = 0; node < contents_.size(); ++node) {
        const Index element = contents_[node].element;
        if (element < elementElsewhere) offsets[element] = contents_[node].offset;
    }
    for (const IdTable::Repeated& each : loaded_.ids_.repeated()) {
        // Who refers to it has been told.
        if (resolver.isAskedFor(each)) continue;
        findings_->addRepeatedId(loaded_.ids_.textOf(each),
                                 {offsets[each.second], each.second, offsets[each.first]});
    }
}

void XmiBuilder::fail(Node node, Check check, const std::string& reason) {
    // The text of an element is looked at first and known last, so it may come before a failure.
    if (failure_ && std::pair(failure_->node, failure_->check) <= std::pair(node, check)) return;
    failure_ = Failure{node, check, reason};
}

void XmiBuilder::failAt(Node node, std::string_view reason) {
    throw ReadError(file_, positionAt(source_, contents_[node].offset), reason);
}

template <class Action>
void XmiBuilder::attempt(Index element, const Action& action) {
    try {
        action();
    } catch (const Misfit& misfit) {
        if (!isFinding(misfit)) throw;
        addFinding(misfit, element);
    }
}

void XmiBuilder::addFinding(const Misfit& misfit, Index element) {
    findings_->add(misfit, {contents_[misfit.node()].offset, element});
}

void XmiBuilder::enter(const XmlStart& start) {
    if (unseen_ != 0 || failure_) {
        ++unseen_;
        ++lost_;
        return;
    }
    const Node node = fragments_.add();
    contents_.push_back({static_cast<std::uint32_t>(start.place.offset()), noElement});
    const std::size_t depth = open_.size();
    const std::size_t steps = fragments_.depth();
    try {
        open(node, start);
    } catch (const Misfit& misfit) {
        if (isFinding(misfit)) {
            leaveOut(misfit);
            // Others keep their places beside it.
            if (fragments_.depth() > steps) fragments_.leave();
            return;
        }
        // What was opened before the failure has a text that is to be looked at.
        const bool isOpen = open_.size() > depth;
        unseen_ = isOpen ? 0 : 1;
        fail(misfit.node(), isOpen ? Check::AfterText : Check::BeforeText, misfit.what());
    }
}

void XmiBuilder::leaveOut(const Misfit& misfit) {
    addFinding(misfit, open_.empty() ? noElement : open_.back().element);
    unseen_ = 1;
    lost_ = 1;
    if (open_.empty()) return;
    // What holds elements where it should not is no value and no list of references.
    Role& around = open_.back().role;
    if (around == Role::Value || around == Role::References) around = Role::Skipped;
}

void XmiBuilder::text(std::string_view part) {
    if (unseen_ != 0) return;
    Open& around = open_.back();
    const bool isKept = around.role == Role::Value || around.role == Role::References ||
                        (around.role == Role::Element && around.feature != nullptr);
    if (isKept) {
        text_.append(part);
        return;
    }
    const bool isBetween = around.role == Role::Element || around.role == Role::Wrapper;
    if (!isBetween || around.takesText || isBlank(part)) return;
    if (around.role == Role::Element && meanings_.mayHoldText(*around.type)) {
        around.takesText = true;
        return;
    }
    const Misfit misfit(around.node, {Misfit::Reason::WrongValue, Misfit::Weight::ValueWrong},
                        "the element " + inQuotes(names_[around.name].local) +
                            " holds text where elements are expected");
    if (findings_) {
        around.takesText = true;
        addFinding(misfit, around.element);
    } else {
        fail(misfit.node(), Check::Text, misfit.what());
    }
}

void XmiBuilder::declare(std::string_view prefix, std::string_view uri) {
    if (ownNames_.hasQNames) ownNames_.prefixes.emplace(prefix, uri);
}

void XmiBuilder::leave() {
    if (unseen_ != 0) {
        --unseen_;
        if (unseen_ == 0 && findings_ && !failure_) findings_->setLost(lost_);
        return;
    }
    const Open closed = open_.back();
    open_.pop_back();
    if (failure_) return;
    if (closed.isStep) fragments_.leave();
    try {
        attempt(closed.element, [&] { close(closed); });
    } catch (const Misfit& misfit) {
        fail(misfit.node(), Check::AfterText, misfit.what());
    }
}

void XmiBuilder::close(const Open& closed) {
    if (closed.role == Role::Element) {
        closeElement(closed);
        if (closed.feature != nullptr && !isBlank(text_)) addText(closed);
    } else if (closed.role == Role::Value) {
        addText(closed);
    } else if (closed.role == Role::References) {
        references_.addList({closed.node, closed.element, closed.feature->number}, text_);
    }
}

void XmiBuilder::addText(const Open& closed) {
    const Feature& feature = *closed.feature;
    if (feature.isSingle) {
        refuseSecondValue(closed.node, loaded_.elements_[closed.element], feature.property);
    }
    elements_.addValue(closed.node, closed.element, feature, text_);
}

void XmiBuilder::closeElement(const Open& closed) {
    loaded_.places_[closed.element].end = static_cast<Index>(loaded_.elements_.size());
    fragments_.forEachChild(closed.node, [&](Node child, std::uint32_t ordinal) {
        const Index element = contents_[child].element;
        if (element < elementElsewhere) loaded_.places_[element].ordinal = ordinal;
    });
    elements_.addContents(closed.element, closed.firstChild);
}

void XmiBuilder::open(Node node, const XmlStart& start) {
    const XmlName& name = names_[start.name];
    if (open_.empty()) {
        if (name.isXmi && name.local == "XMI") {
            push(node, start.name, Role::Roots, noElement);
        } else {
            openRoot(node, start);
        }
        return;
    }
    const Open& parent = open_.back();
    const bool isValue = parent.role == Role::Value || parent.role == Role::References;
    if (isValue) failInside(parent);
    if (parent.role == Role::Foreign) {
        openForeign(node, start);
    } else if (name.isXmi || parent.role == Role::Skipped) {
        push(node, start.name, Role::Skipped, noElement);
    } else if (parent.role == Role::Roots) {
        openRoot(node, start);
    } else if (parent.role == Role::Wrapper) {
        openInWrapper(node, start, parent);
    } else {
        openChild(node, start, parent);
    }
}

XmiBuilder::Open& XmiBuilder::push(Node node, NameId name, Role role, Index element) {
    Open& opened = open_.emplace_back();
    opened.node = node;
    opened.name = name;
    opened.role = role;
    opened.element = element;
    return opened;
}

void XmiBuilder::failInside(const Open& parent) const {
    const meta::Property& property = parent.feature->property;
    if (parent.role == Role::Value) {
        throw Misfit(parent.node,
                     {Misfit::Reason::WrongValue, Misfit::Weight::ValueWrong, nameOf(property)},
                     "the value of " + nameOf(property) + " is no text");
    }
    throw Misfit(parent.node,
                 {Misfit::Reason::NoFit, Misfit::Weight::ContentsLost, nameOf(property)},
                 nameOf(property) + " refers to elements and does not contain them");
}

void XmiBuilder::step(Node node, const Feature& feature) {
    if (feature.number >= tags_.size()) tags_.resize(features_.size(), TextTable::none);
    FragmentIndex::Tag& tag = tags_[feature.number];
    if (tag == TextTable::none) {
        tag = fragments_.tagNamed(text::toUtf8(feature.property->getName()));
    }
    fragments_.enter(node, tag);
}

void XmiBuilder::openRoot(Node node, const XmlStart& start) {
    const auto ordinal = static_cast<std::uint32_t>(rootNodes_.size());
    if (ordinal == 0) isMetamodel_ = names_[start.name].uri == ecoreNamespace;
    rootNodes_.push_back(node);
    const std::string_view* nsUri = start.attribute(names_, "nsURI");
    if (isMetamodel_ && nsUri != nullptr) ownNames_.namespaces.add(*nsUri);
    const KnownClass& type = meanings_.classOfRoot(node, start);
    // No path says what a root is called.
    fragments_.enter(node, 0);
    create(node, start, type, noElement, nullptr);
    const Index root = contents_[node].element;
    loaded_.places_[root].ordinal = ordinal;
    loaded_.roots_.push_back(loaded_.elements_[root]);
}

void XmiBuilder::openChild(Node node, const XmlStart& start, const Open& parent) {
    // The texts of such elements are values as long as no others stand inside.
    open_.back().feature = nullptr;
    const FileNames::Child child = meanings_.child(node, start, *parent.type);
    const Index owner = parent.element;
    if (child.feature != nullptr) {
        openPart(node, start, owner, child);
    } else if (child.isForeign) {
        openForeign(node, start);
    } else {
        Open& wrapper = push(node, start.name, Role::Wrapper, owner);
        wrapper.wrapper = child.wrapper;
        wrapper.depth = 1;
    }
}

void XmiBuilder::openInWrapper(Node node, const XmlStart& start, const Open& parent) {
    const XmlForm::Wrapper* const around = parent.wrapper;
    const std::uint32_t depth = parent.depth;
    const Index owner = parent.element;
    if (depth < around->depth) {
        Open& wrapper = push(node, start.name, Role::Wrapper, owner);
        wrapper.wrapper = around;
        wrapper.depth = depth + 1;
    } else {
        openPart(node, start, owner, meanings_.inWrapper(node, start, *around));
    }
}

void XmiBuilder::openForeign(Node node, const XmlStart& start) {
    if (findings_) {
        findings_->addForeign(names_[start.name].uri, contents_[node].offset);
    }
    push(node, start.name, Role::Foreign, noElement);
}

void XmiBuilder::openPart(Node node, const XmlStart& start, Index owner,
                          const FileNames::Child& part) {
    const bool isReference = part.feature->kind == Feature::Kind::Reference;
    if (meanings_.isNil(start)) {
        push(node, start.name, Role::Skipped, owner);
    } else if (isReference) {
        openContent(node, start, owner, part);
    } else {
        text_.clear();
        push(node, start.name, Role::Value, owner).feature = part.feature;
    }
}

void XmiBuilder::openContent(Node node, const XmlStart& start, Index owner,
                             const FileNames::Child& part) {
    const Feature& feature = *part.feature;
    const std::string_view* reference =
        feature.target->hasHref ? nullptr : start.attribute(names_, "href");
    if (reference != nullptr) contents_[node].element = elementElsewhere;
    for (const XmlAttribute& each : start.attributes) {
        const XmlName& name = names_[each.name];
        if (reference == nullptr && name.isXmi && name.local == "idref") reference = &each.value;
    }
    if (reference != nullptr) {
        references_.addOne({node, owner, feature.number}, *reference);
        step(node, feature);
        push(node, start.name, Role::Skipped, noElement).isStep = true;
    } else if (feature.isComposite) {
        step(node, feature);
        const KnownClass& type = meanings_.classOfContent(node, start, feature, part.type);
        if (findings_) elements_.checkRoom(node, owner, feature, type);
        const bool fits = ElementBuilder::fits(type, feature);
        create(node, start, type, owner, &feature);
        // Of those that wait, its siblings stand in front of its own children.
        if (elements_.contain(node, owner, feature, contents_[node].element, fits)) {
            ++open_.back().firstChild;
        }
    } else {
        text_.clear();
        push(node, start.name, Role::References, owner).feature = &feature;
    }
}

void XmiBuilder::create(Node node, const XmlStart& start, const KnownClass& type, Index container,
                        const Feature* feature) {
    const Index index = elements_.create(node, type, container, feature);
    contents_[node].element = index;
    Open& opened = push(node, start.name, Role::Element, index);
    opened.isStep = true;
    opened.type = &type;
    opened.firstChild = elements_.waiting();
    opened.feature = meanings_.text(type);
    if (opened.feature != nullptr) text_.clear();
    addAttributes(node, start, index, type);
}

void XmiBuilder::addAttributes(Node node, const XmlStart& start, Index element,
                               const KnownClass& type) {
    for (const XmlAttribute& each : start.attributes) {
        const XmlName& name = names_[each.name];
        if (name.isXmi && name.local == "id") addXmiId(node, element, each.value);
        if (name.isXmi || name.isXsi || name.isXml) continue;
        attempt(element, [&] { addAttribute(node, each, element, type); });
    }
}

void XmiBuilder::addAttribute(Node node, const XmlAttribute& attribute, Index element,
                              const KnownClass& type) {
    const Feature* const feature = meanings_.attribute(node, attribute.name, type);
    if (feature == nullptr) {
        if (findings_) {
            findings_->addForeign(names_[attribute.name].uri, contents_[node].offset);
        }
    } else if (feature->kind == Feature::Kind::Reference) {
        references_.addList({node, element, feature->number}, attribute.value);
    } else if (feature->isSingle) {
        elements_.addFirstValue(node, element, *feature, attribute.value);
    } else {
        for (const std::string_view word : splitAtBlanks(attribute.value)) {
            attempt(element, [&] { elements_.addValue(node, element, *feature, word); });
        }
    }
}

void XmiBuilder::addXmiId(Node node, Index element, std::string_view id) {
    if (!IdTable::isId(id)) return;
    const Index before = loaded_.ids_.addXmiId(id, element);
    // Whether somebody refers to it shows in the end.
    if (before == IdTable::none || findings_) return;
    Node first = 0;
    while (contents_[first].element != before) ++first;
    const Position position = positionAt(source_, contents_[first].offset);
    throw Misfit(node, {Misfit::Reason::DuplicateId, Misfit::Weight::Warning},
                 "the id " + inQuotes(id) + " is given twice, first in line " +
                     std::to_string(position.line));
}

}  // namespace nuv::zero::xmi
