#include "xmi/ModelSetLinker.h"

#include <algorithm>
#include <numeric>

#include "model/memory/ModelAccess.h"
#include "xmi/ReadError.h"

namespace nuv::zero::xmi {
namespace {

using Reason = Finding::Reason;

/// Whether two references belong to one property of one element.
bool belongTogether(const OutgoingReference& one, const OutgoingReference& other) {
    return one.element == other.element && one.property == other.property;
}

}  // namespace

void ModelSetLinker::link(ModelSetFile& file) {
    const std::vector<OutgoingReference>& outgoing = file.outgoing;
    Numbers order(outgoing.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    // What belongs together stays in the order of the file.
    std::stable_sort(order.begin(), order.end(), [&](std::size_t one, std::size_t other) {
        const OutgoingReference& a = outgoing[one];
        const OutgoingReference& b = outgoing[other];
        return a.element != b.element ? a.element < b.element
                                      : std::less<>()(a.property, b.property);
    });
    for (auto begin = order.begin(); begin != order.end();) {
        const auto end = std::find_if(begin, order.end(), [&](std::size_t other) {
            return !belongTogether(outgoing[other], outgoing[*begin]);
        });
        linkGroup(file, {begin, end});
        begin = end;
    }
}

void ModelSetLinker::linkGroup(ModelSetFile& file, const Numbers& group) {
    Numbers fitting;
    for (const std::size_t number : group) {
        if (file.targets[number] && mayStand(file, number)) fitting.push_back(number);
    }
    if (fitting.empty()) return;
    if (file.outgoing[fitting.front()].property->isSingleValued()) {
        for (const std::size_t number : fitting) setOne(file, number);
    } else {
        setMany(file, fitting);
    }
}

bool ModelSetLinker::mayStand(ModelSetFile& file, std::size_t number) {
    const OutgoingReference& reference = file.outgoing[number];
    const ModelElement& target = file.targets[number];
    if (!target->getClass()->canStandFor(reference.property->type())) {
        report_(file, reference,
                {Reason::NoFit, "leads to " + inQuotes(describe(target)) + " of the class " +
                                    text::toUtf8(target->getClass()->getName()) +
                                    ", which may not stand there"});
        return false;
    }
    return !reference.property->isComposite() || mayContain(file, reference, target);
}

bool ModelSetLinker::mayContain(ModelSetFile& file, const OutgoingReference& reference,
                                const ModelElement& target) {
    const ModelElement& owner = file.model.elements()[reference.element];
    ModelElement before = fileOf_(target).model.container(target);
    if (!before) before = containment_.containerOf(target);
    if (before) {
        report_(file, reference,
                {Reason::ContainedTwice,
                 "leads to " + inQuotes(describe(target)) + ", which " +
                     inQuotes(describe(before)) + " contains already",
                 describe(before)});
        return false;
    }
    ModelElement top = owner;
    for (ModelElement up = owner; up; up = file.model.container(up)) top = up;
    const ModelElement outermost = containment_.outermost(top);
    if (outermost == target) {
        report_(file, reference,
                {Reason::ContainedInItself,
                 "leads to " + inQuotes(describe(target)) + ", inside which " +
                     inQuotes(describe(owner)) + " stands itself",
                 describe(owner)});
        return false;
    }
    containment_.add(target, owner, outermost);
    return true;
}

void ModelSetLinker::setOne(ModelSetFile& file, std::size_t number) {
    const OutgoingReference& reference = file.outgoing[number];
    const ModelElement& owner = file.model.elements()[reference.element];
    const meta::Property property(reference.property);
    if (access::isSet(access::read(owner, property))) {
        report_(file, reference,
                {Reason::TooManyValues, "is one value more, and the property holds one"});
        return;
    }
    file.model.model_.set(owner, property, file.targets[number]);
}

void ModelSetLinker::setMany(ModelSetFile& file, const Numbers& group) {
    const OutgoingReference& any = file.outgoing[group.front()];
    const ModelElement& owner = file.model.elements()[any.element];
    const meta::Property property(any.property);
    const std::vector<ModelElement> present = access::toElements(access::read(owner, property));
    std::vector<ModelElement> all;
    all.reserve(present.size() + group.size());
    std::size_t next = 0;
    const auto stands = [&](const OutgoingReference& reference) {
        return property->isComposite() ? file.model.indexOf(present[next]) < reference.before
                                       : next < reference.before;
    };
    for (const std::size_t number : group) {
        while (next < present.size() && stands(file.outgoing[number])) {
            all.push_back(present[next++]);
        }
        all.push_back(file.targets[number]);
    }
    all.insert(all.end(), present.begin() + static_cast<std::ptrdiff_t>(next), present.end());
    try {
        file.model.model_.set(owner, property, all);
    } catch (const memory::ModelError& error) {
        for (const std::size_t number : group) {
            report_(file, file.outgoing[number],
                    {Reason::TooManyValues, std::string("cannot be set: ") + error.what()});
        }
    }
}

std::string ModelSetLinker::describe(const ModelElement& element) const {
    const ModelSetFile& file = fileOf_(element);
    return file.shown + "#" + file.model.identity(element);
}

}  // namespace nuv::zero::xmi
