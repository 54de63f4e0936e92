#include "xmi/LoadedModel.h"

#include "model/memory/ModelAccess.h"
#include "xmi/Fragment.h"

namespace nuv::zero::xmi {
namespace {

std::string textOf(const ModelElement& element, std::u16string_view property) {
    const meta::Property found = element->getClass()->getProperty(property);
    if (!found) return {};
    const Value value = access::read(element, found);
    const memory::Content content = value.content();
    const auto* text = std::get_if<std::u16string>(&content);
    return text == nullptr ? std::string() : text::toUtf8(*text);
}

}  // namespace

std::string LoadedModel::identity(const ModelElement& element) const {
    const Index index = indexOf(element);
    if (index == none) return {};
    const auto id = ids_.idOf(index);
    return id ? std::string(*id) : pathOf(index);
}

std::string LoadedModel::path(const ModelElement& element) const {
    const Index index = indexOf(element);
    return index == none ? std::string() : pathOf(index);
}

LoadedModel::Index LoadedModel::indexOf(const ModelElement& element) const {
    return numbers_.find(elements_, element);
}

std::string LoadedModel::pathOf(Index index) const {
    std::vector<Index> way;
    for (Index each = index; each != none; each = places_[each].parent) way.push_back(each);
    std::string path = "/";
    if (roots_.size() > 1) path += std::to_string(places_[way.back()].ordinal);
    for (auto each = way.rbegin() + 1; each != way.rend(); ++each) {
        const Place& place = places_[*each];
        const memory::PropertyObject& feature = featureOf(place);
        path.append("/@").append(text::toUtf8(feature.getName()));
        if (!feature.isSingleValued()) path += '.' + std::to_string(place.ordinal);
    }
    return path;
}

ModelElement LoadedModel::find(std::string_view idOrPath) const {
    const Index id = ids_.find(idOrPath);
    if (id != none) return elements_[id];

    const auto path = parseFragmentPath(idOrPath);
    if (!path || path->root >= roots_.size()) return {};
    Index index = indexOf(roots_[path->root]);
    for (const FragmentStep& step : path->steps) {
        if (step.kind == FragmentStep::Kind::Feature) {
            index = child(index, step.text, step.index);
        } else {
            const Index parent = index;
            index = childNamed(parent, step.raw, 0);
            if (index == none) index = childNamed(parent, step.text, step.index);
        }
        if (index == none) return {};
    }
    return elements_[index];
}

LoadedModel::Index LoadedModel::child(Index parent, std::string_view feature,
                                      std::size_t ordinal) const {
    const std::u16string name = text::toUtf16(feature);
    for (Index each = parent + 1; each < places_[parent].end; each = places_[each].end) {
        const Place& place = places_[each];
        if (place.ordinal == ordinal && featureOf(place).getName() == name) return each;
    }
    return none;
}

LoadedModel::Index LoadedModel::childNamed(Index parent, std::string_view name,
                                           std::size_t ordinal) const {
    for (Index each = parent + 1; each < places_[parent].end; each = places_[each].end) {
        if (textOf(elements_[each], u"name") == name && ordinal-- == 0) return each;
    }
    return none;
}

ModelElement LoadedModel::container(const ModelElement& element) const {
    const Index index = indexOf(element);
    if (index == none || places_[index].parent == none) return {};
    return elements_[places_[index].parent];
}

std::vector<ModelElement> LoadedModel::contents(const ModelElement& element) const {
    std::vector<ModelElement> all;
    const Index index = indexOf(element);
    if (index == none) return all;
    for (Index each = index + 1; each < places_[index].end; each = places_[each].end) {
        all.push_back(elements_[each]);
    }
    return all;
}

std::vector<std::string> LoadedModel::ids() const {
    return ids_.all();
}

}  // namespace nuv::zero::xmi
