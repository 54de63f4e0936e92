#include "xmi/LoadedModel.h"

#include <algorithm>

#include "model/memory/Text.h"
#include "xmi/Fragment.h"
#include "xmi/FragmentWay.h"

namespace nuv::zero::xmi {

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
    if (rootCount_ > 1) path += std::to_string(places_[way.back()].ordinal);
    for (auto each = way.rbegin() + 1; each != way.rend(); ++each) {
        const ElementPlace& place = places_[*each];
        const memory::PropertyObject& feature = featureOf(place);
        path.append("/@").append(text::toUtf8(feature.getName()));
        if (!feature.isSingleValued()) path += '.' + std::to_string(place.ordinal);
    }
    return path;
}

struct LoadedModel::Steps {
    using Step = Index;
    static constexpr Step none = LoadedModel::none;

    Step root(std::size_t number) const { return model.root(number); }
    Step byFeature(Step from, std::string_view name, std::size_t number) const {
        return index.child(from, name, number);
    }
    Step byName(Step from, std::string_view name, std::size_t number) const {
        return index.named(model.contentElements(), from, name, number);
    }
    Step bySource(Step from, std::string_view source, std::size_t number) const {
        return index.withSource(model.contentElements(), from, source, number);
    }
    Step byKeys(Step from, const FragmentStep& step) const {
        return index.withKeys(model.contentElements(), from, step);
    }

    const LoadedModel& model;
    const ContentIndex& index;
};

LoadedModel::Found LoadedModel::lookUp(std::string_view fragment) const {
    Index id = ids_.find(fragment);
    const bool mayBeEncoded = id == none && fragment.find('%') != std::string_view::npos;
    if (mayBeEncoded) id = ids_.find(percentDecoded(fragment));
    if (id != none) return {elements_[id]};
    if (ids_.isShared(fragment)) return {{}, true};
    if (const auto path = parseFragmentPath(fragment)) {
        const Index found = path->steps.empty() ? root(path->root) : goWay(*path);
        return {found == none ? ModelElement() : elements_[found]};
    }
    if (namedClasses_.empty()) return {};
    const auto [element, isAmbiguous] = contentIndex().byNameAndClass(contentElements(), fragment);
    return {element == none ? ModelElement() : elements_[element], isAmbiguous};
}

LoadedModel::Index LoadedModel::goWay(const FragmentPath& path) const {
    const Steps steps{*this, contentIndex()};
    return FragmentWay<Steps>(steps).go(path);
}

const ContentIndex& LoadedModel::contentIndex() const {
    std::call_once(contents_->once, [&] { contents_->index.emplace(contentElements()); });
    return *contents_->index;
}

LoadedModel::Index LoadedModel::root(std::size_t ordinal) const {
    const auto found = std::lower_bound(roots_.begin(), roots_.end(), ordinal,
                                        [&](const ModelElement& each, std::size_t wanted) {
                                            return places_[indexOf(each)].ordinal < wanted;
                                        });
    if (found == roots_.end()) return none;
    const Index index = indexOf(*found);
    return places_[index].ordinal == ordinal ? index : none;
}

ModelElement LoadedModel::container(const ModelElement& element) const {
    const Index index = indexOf(element);
    if (index == none) return {};
    if (places_[index].parent != none) return elements_[places_[index].parent];
    const auto found = std::lower_bound(containedRoots_.begin(), containedRoots_.end(),
                                        std::pair(index, Index{0}));
    const bool isContained = found != containedRoots_.end() && found->first == index;
    return isContained ? elements_[found->second] : ModelElement();
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
