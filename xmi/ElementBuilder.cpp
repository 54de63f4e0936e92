#include "xmi/ElementBuilder.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "model/memory/ModelAccess.h"
#include "xmi/Utf16.h"

namespace nuv::zero::xmi {
namespace {

std::string classNameOf(const KnownClass& type) {
    return text::toUtf8(type.type->getName());
}

Misfit::Kind kindOf(Misfit::Reason reason, const meta::Property& property) {
    return {reason, weightOf(property), nameOf(property)};
}

}  // namespace

ElementBuilder::Index ElementBuilder::create(Node node, const KnownClass& type, Index container,
                                             const Feature* feature) {
    if (type.isAbstract) {
        throw Misfit(node, {Misfit::Reason::AbstractClass, Misfit::Weight::ContentsLost},
                     "the class " + classNameOf(type) +
                         " is abstract, so the type of the element is missing (xsi:type)");
    }
    slots_ += type.slotCount;
    if (slots_ > limits_.slots) {
        throw Misfit(node, "the model needs more than " + std::to_string(limits_.slots) +
                               " places for values");
    }
    const auto index = static_cast<Index>(loaded_.elements_.size());
    loaded_.elements_.push_back(loaded_.model_.create(type.type));
    loaded_.numbers_.add(loaded_.elements_.back(), index);
    loaded_.places_.push_back(
        {container, LoadedModel::none, 0, feature == nullptr ? 0 : feature->number});
    return index;
}

void ElementBuilder::checkRoom(Node node, Index container, const Feature& feature,
                               const KnownClass& type) const {
    const ModelElement& owner = loaded_.elements_[container];
    const meta::Property& property = feature.property;
    if (!fits(type, feature)) {
        throw Misfit(node, kindOf(Misfit::Reason::NoFit, property),
                     "an element of the class " + classNameOf(type) + " may not stand in " +
                         nameOf(property));
    }
    if (feature.isUnbounded) return;
    if (feature.isSingle) {
        refuseSecondValue(node, owner, property);
        return;
    }
    const auto most = static_cast<std::size_t>(property->getUpperBound());
    const auto access = ModelElement::Impl::ReflectionPrivateTag::PUBLIC_ACCESS;
    if (owner->view(property, access).size() < most) return;
    throw Misfit(node, kindOf(Misfit::Reason::TooManyValues, property),
                 nameOf(property) + " holds at most " + std::to_string(most) + " values");
}

bool ElementBuilder::contain(Node node, Index container, const Feature& feature, Index element,
                             bool fits) {
    const ModelElement& owner = loaded_.elements_[container];
    const ModelElement& content = loaded_.elements_[element];
    const meta::Property& property = feature.property;
    if (feature.isUnbounded && fits) {
        waiting_.push_back({feature.number, element});
        return true;
    }
    if (feature.isSingle) refuseSecondValue(node, owner, property);
    try {
        feature.isSingle ? loaded_.model_.set(owner, property, content)
                         : loaded_.model_.add(owner, property, content);
    } catch (const memory::ModelError& error) {
        throw Misfit(node, kindOf(Misfit::Reason::NoFit, property), error.what());
    }
    return false;
}

void ElementBuilder::addContents(Index element, std::size_t firstChild) {
    const auto begin = waiting_.begin() + static_cast<std::ptrdiff_t>(firstChild);
    // By feature; those of one feature stay in the order of the file.
    if (!std::is_sorted(begin, waiting_.end())) std::sort(begin, waiting_.end());
    for (auto each = begin; each != waiting_.end();) {
        const auto end = std::find_if(each, waiting_.end(), [&](const Waiting& other) {
            return other.feature != each->feature;
        });
        list_.clear();
        const meta::Property& property = features_[each->feature].property;
        for (; each != end; ++each) list_.push_back(loaded_.elements_[each->element]);
        loaded_.model_.set(loaded_.elements_[element], property, list_);
    }
    waiting_.erase(begin, waiting_.end());
}

void ElementBuilder::addFirstValue(Node node, Index element, const Feature& feature,
                                   std::string_view text) {
    if (feature.isSingle) {
        // Only another attribute can have set the value.
        if (feature.number >= lastOwner_.size()) {
            lastOwner_.resize(features_.size(), LoadedModel::none);
        }
        const Index before = std::exchange(lastOwner_[feature.number], element);
        if (before == element) {
            refuseSecondValue(node, loaded_.elements_[element], feature.property);
        }
    }
    addValue(node, element, feature, text);
}

void ElementBuilder::addValue(Node node, Index element, const Feature& feature,
                              std::string_view text) {
    const ModelElement& owner = loaded_.elements_[element];
    const meta::Property& property = feature.property;
    const auto refuse = [&](const std::string& why) {
        throw Misfit(node, kindOf(Misfit::Reason::WrongValue, property),
                     "the value " + inQuotes(text) + " of " + nameOf(property) + why);
    };
    try {
        if (feature.kind == Feature::Kind::Integer) {
            const std::optional<std::int64_t> number = ValueCheck::integer(text);
            if (!number) refuse(" is no integer");
            feature.isSingle ? loaded_.model_.set(owner, property, *number)
                             : loaded_.model_.add(owner, property, *number);
        } else {
            if (!values_.holds(feature.dataType, text)) {
                refuse(" is none of its type " + feature.dataType->qualifiedName());
            }
            assignUtf16(text16_, text);
            feature.isSingle ? loaded_.model_.set(owner, property, text16_)
                             : loaded_.model_.add(owner, property, text16_);
        }
    } catch (const memory::ModelError& error) {
        throw Misfit(node, kindOf(Misfit::Reason::TooManyValues, property), error.what());
    }
    if (feature.isId) loaded_.ids_.addValue(text, element);
}

void ElementBuilder::nameClasses(const LoadedMetamodel& metamodel) {
    // As `LoadedMetamodel::hasDerivedId` says. Classes have most of their properties in common, so
    // each is asked what it declares itself.
    struct Ids {
        bool isStored = false;
        bool isDerived = false;
    };
    std::unordered_map<const memory::ClassObject*, Ids> declared;
    const auto idsOf = [&](const memory::ClassObject* type) -> const Ids& {
        const auto [known, isNew] = declared.try_emplace(type);
        if (!isNew) return known->second;
        for (const memory::PropertyObject& each : type->ownProperties()) {
            if (!metamodel.isId(meta::Property(&each))) continue;
            (each.isDerived() ? known->second.isDerived : known->second.isStored) = true;
        }
        return known->second;
    };
    std::unordered_set<const memory::ClassObject*> met;
    const memory::ClassObject* last = nullptr;
    for (const ModelElement& each : loaded_.elements_) {
        const memory::ClassObject* const type = each->getClass().get();
        if (std::exchange(last, type) == type || !met.insert(type).second) continue;
        Ids all;
        for (const memory::ClassObject* ancestor : type->layout().lineage()) {
            const Ids& some = idsOf(ancestor);
            all.isStored = all.isStored || some.isStored;
            all.isDerived = all.isDerived || some.isDerived;
        }
        if (all.isDerived && !all.isStored) loaded_.namedClasses_.push_back(type);
    }
    std::sort(loaded_.namedClasses_.begin(), loaded_.namedClasses_.end(), std::less<>());
}

void ElementBuilder::shrink() {
    // Swapped: an assignment would keep the room.
    decltype(waiting_)().swap(waiting_);
    decltype(list_)().swap(list_);
}

void refuseSecondValue(Node node, const ModelElement& element, const meta::Property& property) {
    if (!access::isSet(access::read(element, property))) return;
    throw Misfit(node, kindOf(Misfit::Reason::TooManyValues, property),
                 nameOf(property) + " holds one value, and the file gives two");
}

}  // namespace nuv::zero::xmi
