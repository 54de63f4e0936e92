#include "xmi/ContentIndex.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <unordered_map>

#include "model/memory/ModelAccess.h"
#include "xmi/NamedFragment.h"

namespace nuv::zero::xmi {
namespace {

/// So many different sets of keys are looked at; each costs a table.
constexpr std::size_t mostKeys = 100;
/// Of elements that differ in containers further up only, so many are looked at.
constexpr std::size_t mostNamesakes = 1000;

/// A property of each class by its name, looked up once.
class PropertyOfClasses {
  public:
    explicit PropertyOfClasses(std::u16string_view name) : name_(name) {}

    /// The value of the property as files write it; nothing where it has none.
    std::optional<std::string> textOf(const ModelElement& element) {
        const meta::Class& type = element->getClass();
        if (type.get() != last_) {
            last_ = type.get();
            const auto [found, isNew] = known_.try_emplace(last_);
            if (isNew) found->second = type->getProperty(name_);
            property_ = &found->second;
        }
        if (!*property_) return std::nullopt;
        const memory::Content content = access::read(element, *property_).content();
        if (const auto* text = std::get_if<std::u16string>(&content)) return text::toUtf8(*text);
        if (const auto* number = std::get_if<std::int64_t>(&content)) {
            return std::to_string(*number);
        }
        return std::nullopt;
    }

  private:
    std::u16string name_;
    std::unordered_map<const memory::ClassObject*, meta::Property> known_;
    const memory::ClassObject* last_ = nullptr;
    const meta::Property* property_ = nullptr;
};

/// Texts of several parts that are equal only where all parts are.
void append(std::string& joined, std::string_view part) {
    joined.append(std::to_string(part.size())).append(":").append(part);
}

}  // namespace

ContentIndex::ContentIndex(const Elements& all) {
    std::vector<TextTable::Number> names;
    names.reserve(all.features.size());
    for (const memory::PropertyObject* each : all.features) {
        names.push_back(featureNames_.add(text::toUtf8(each->getName())).first);
    }
    for (Index i = 0; i < all.elements.size(); ++i) {
        const ElementPlace& place = all.places[i];
        if (place.parent == none) continue;
        byFeature_.push_back({place.parent, names[place.feature], place.ordinal, i});
    }
    std::sort(byFeature_.begin(), byFeature_.end());
}

const ContentIndex::Names& ContentIndex::names(const Elements& all) const {
    std::call_once(namesOnce_, [&] { names_.emplace(all); });
    return *names_;
}

ContentIndex::Names::Names(const Elements& all)
    : ofElements(all.elements.size(), TextTable::none) {
    PropertyOfClasses names(u"name");
    PropertyOfClasses sources(u"source");
    for (Index i = 0; i < all.elements.size(); ++i) {
        const Index parent = all.places[i].parent;
        const auto source = sources.textOf(all.elements[i]);
        if (source && parent != none) {
            bySource.push_back({parent, texts.add(*source).first, i, i});
        }
        const auto name = names.textOf(all.elements[i]);
        if (!name) continue;
        ofElements[i] = texts.add(*name).first;
        if (parent != none) byName.push_back({parent, ofElements[i], i, i});
        const memory::ClassObject* const type = all.elements[i]->getClass().get();
        const bool isNamed = std::binary_search(all.namedClasses.begin(), all.namedClasses.end(),
                                                type, std::less<>());
        if (!isNamed) continue;
        byClass.push_back({texts.add(text::toUtf8(type->getName())).first, ofElements[i],
                           parent == none ? TextTable::none : ofElements[parent], i});
    }
    std::sort(byName.begin(), byName.end());
    std::sort(bySource.begin(), bySource.end());
    std::sort(byClass.begin(), byClass.end());
}

ContentIndex::Entries::const_iterator ContentIndex::firstOf(const Entries& sorted, Index parent,
                                                            TextTable::Number text) {
    return std::lower_bound(sorted.begin(), sorted.end(), Entry{parent, text, 0, 0});
}

ContentIndex::Index ContentIndex::child(Index parent, std::string_view feature,
                                        std::size_t ordinal) const {
    const TextTable::Number text = featureNames_.find(feature);
    if (text == TextTable::none || ordinal >= none) return none;
    const auto order = static_cast<std::uint32_t>(ordinal);
    const Entry wanted{parent, text, order, 0};
    const auto found = std::lower_bound(byFeature_.begin(), byFeature_.end(), wanted);
    return found != byFeature_.end() && found->key() == wanted.key() ? found->element : none;
}

ContentIndex::Index ContentIndex::nth(const Entries& sorted, Index parent, TextTable::Number text,
                                      std::size_t number) {
    if (text == TextTable::none) return none;
    const auto begin = firstOf(sorted, parent, text);
    if (number >= static_cast<std::size_t>(sorted.end() - begin)) return none;
    const Entry& found = begin[static_cast<std::ptrdiff_t>(number)];
    return found.parent == parent && found.text == text ? found.element : none;
}

ContentIndex::Index ContentIndex::named(const Elements& all, Index parent, std::string_view name,
                                        std::size_t number) const {
    const Names& index = names(all);
    return nth(index.byName, parent, index.texts.find(name), number);
}

ContentIndex::Index ContentIndex::withSource(const Elements& all, Index parent,
                                             std::string_view source, std::size_t number) const {
    const Names& index = names(all);
    return nth(index.bySource, parent, index.texts.find(source), number);
}

ContentIndex::Index ContentIndex::withKeys(const Elements& all, Index parent,
                                           const FragmentStep& step) const {
    std::string joined;
    for (const FragmentStep::Key& each : step.keys) append(joined, each.second);
    const std::lock_guard lock(keysMutex_);
    const Entries* const entries = keyed(all, step);
    if (entries == nullptr) return none;
    const TextTable::Number values = values_.find(joined);
    if (values == TextTable::none) return none;
    const auto found = firstOf(*entries, parent, values);
    const bool isThere = found != entries->end() && found->parent == parent && found->text == values;
    return isThere ? found->element : none;
}

const ContentIndex::Entries* ContentIndex::keyed(const Elements& all,
                                                 const FragmentStep& step) const {
    std::string kind;
    append(kind, step.text);
    for (const FragmentStep::Key& each : step.keys) append(kind, each.first);
    const auto known = byKeys_.find(kind);
    if (known != byKeys_.end()) return &known->second;
    if (byKeys_.size() == mostKeys) return nullptr;

    std::vector<PropertyOfClasses> keys;
    for (const FragmentStep::Key& each : step.keys) {
        keys.emplace_back(text::toUtf16(each.first));
    }
    const TextTable::Number feature = featureNames_.find(step.text);
    Entries entries;
    for (const Entry& each : byFeature_) {
        if (each.text != feature) continue;
        std::string joined;
        const bool hasAll = std::all_of(keys.begin(), keys.end(), [&](PropertyOfClasses& key) {
            const auto value = key.textOf(all.elements[each.element]);
            if (value) append(joined, *value);
            return value.has_value();
        });
        if (!hasAll) continue;
        entries.push_back({each.parent, values_.add(joined).first, each.order, each.element});
    }
    std::sort(entries.begin(), entries.end());
    return &byKeys_.emplace(std::move(kind), std::move(entries)).first->second;
}

ContentIndex::Found ContentIndex::byNameAndClass(const Elements& all,
                                                 std::string_view fragment) const {
    const auto parsed = parseNamedFragment(fragment);
    if (!parsed) return {};
    const Names& index = names(all);
    const std::vector<std::string>& way = parsed->names;
    const bool hasContainer = way.size() > 1;
    const TextTable::Number type = index.texts.find(parsed->type);
    const TextTable::Number name = index.texts.find(way.back());
    const TextTable::Number container =
        hasContainer ? index.texts.find(way[way.size() - 2]) : TextTable::none;
    const bool isKnown = type != TextTable::none && name != TextTable::none &&
                         (!hasContainer || container != TextTable::none);
    if (!isKnown) return {};

    const auto fits = [&](const Named& each) {
        return each.type == type && each.name == name &&
               (!hasContainer || each.container == container);
    };
    auto each = std::lower_bound(index.byClass.begin(), index.byClass.end(),
                                 Named{type, name, hasContainer ? container : 0, 0});
    Found found;
    for (std::size_t tries = 0; each != index.byClass.end() && fits(*each); ++each, ++tries) {
        if (!index.hasContainers(all, each->element, way)) continue;
        if (found.element != none || tries == mostNamesakes) return {none, true};
        found.element = each->element;
    }
    return found;
}

bool ContentIndex::Names::hasContainers(const Elements& all, Index element,
                                        const std::vector<std::string>& names) const {
    Index up = element;
    for (std::size_t left = names.size() - 1; left > 0; --left) {
        up = all.places[up].parent;
        const bool isNamed = up != none && ofElements[up] != TextTable::none;
        if (!isNamed || texts[ofElements[up]] != names[left - 1]) return false;
    }
    return true;
}

}  // namespace nuv::zero::xmi
