#include "benchmarks/HostTable.h"

#include <ostream>
#include <stdexcept>
#include <unordered_map>

#include "benchmarks/Format.h"
#include "benchmarks/HostProcess.h"
#include "benchmarks/RawRead.h"

namespace nuv::zero::benchmarks {
namespace {

constexpr double most = 1.2;

/// A shape in numbers: elements, classes and properties in the order in which they are met.
class Numbering {
  public:
    explicit Numbering(const Shape& shape) : shape_(shape) {
        for (const ModelElement& element : shape.elements) {
            elements_.emplace(element.get(), static_cast<std::uint32_t>(elements_.size()));
            classNumber(access::classOf(element));
        }
        // Grows meanwhile: the classes that own properties, and the properties of those.
        for (std::size_t i = 0; i < classes_.size(); ++i) addProperties(i);
        for (std::size_t i = 0; i < classes_.size(); ++i) addSuperclasses(i);
        for (const ModelElement& element : shape.elements) addElement(element);
        for (const ModelElement& root : shape.roots) {
            graph_.roots.push_back(elements_.at(root.get()));
        }
        for (const meta::Property& property : shape.followed) {
            graph_.followed.push_back(propertyNumber(property));
        }
        graph_.walks = static_cast<std::uint32_t>(shape.walks);
    }

    const PlainGraph& graph() const noexcept { return graph_; }

    /// What the host has to sum up to.
    Checksum expectedOf(const Walk& walk) const {
        Checksum checksum;
        for (std::size_t i = 0; i < shape_.walks; ++i) {
            for (const traversal::Link& link : traversal::links(makeResult(walk))) {
                checksum.add(
                    elementPlusOne(link.getSource()),
                    // In the host, the properties of a schema are numbered behind its classes.
                    link.getProperty() ? properties_.at(link.getProperty()) + classes_.size() + 1
                                       : 0,
                    elementPlusOne(link.getTarget()), link.shouldCascade());
            }
        }
        return checksum;
    }

  private:
    std::uint32_t classNumber(const meta::Class& type) {
        const auto [place, isNew] =
            numbers_.emplace(type, static_cast<std::uint32_t>(classes_.size()));
        if (isNew) {
            classes_.push_back(type);
            graph_.classes.emplace_back().name = access::qualifiedNameOf(type);
        }
        return place->second;
    }
    std::uint32_t propertyNumber(const meta::Property& property) {
        const auto [place, isNew] =
            properties_.emplace(property, static_cast<std::uint32_t>(properties_.size()));
        if (isNew) {
            const std::uint32_t owner = classNumber(access::owningClass(property));
            graph_.properties.push_back({access::nameOf(property), owner,
                                         access::isComposite(property),
                                         access::isSingleValued(property)});
        }
        return place->second;
    }
    void addProperties(std::size_t number) {
        const meta::Class type = classes_[number];
        std::vector<std::uint32_t> numbers;
        for (const meta::Property& property : access::allProperties(type)) {
            if (!access::isAssociation(property) || access::isDerived(property)) continue;
            numbers.push_back(propertyNumber(property));
            followed_[type].push_back(property.get());
        }
        graph_.classes[number].properties = std::move(numbers);
    }
    void addSuperclasses(std::size_t number) {
        for (std::size_t other = 0; other < classes_.size(); ++other) {
            if (access::conformsTo(classes_[number], classes_[other])) {
                graph_.classes[number].conformsTo.push_back(static_cast<std::uint32_t>(other));
            }
        }
    }
    void addElement(const ModelElement& element) {
        std::vector<std::uint32_t>& words = graph_.words;
        const meta::Class& type = access::classOf(element);
        graph_.where.push_back(static_cast<std::uint32_t>(words.size()));
        words.push_back(numbers_.at(type));
        std::vector<std::uint32_t> targets;
        for (const memory::PropertyObject* property : followed_[type]) {
            const RawValues values = readRaw(*element.get(), *property);
            for (std::size_t i = 0; i < values.size(); ++i) {
                targets.push_back(elements_.at(values[i]));
            }
            words.push_back(static_cast<std::uint32_t>(targets.size()));
        }
        words.insert(words.end(), targets.begin(), targets.end());
    }
    std::uint64_t elementPlusOne(const ModelElement& element) const {
        return element ? std::uint64_t{elements_.at(element.get())} + 1 : 0;
    }

    const Shape& shape_;
    PlainGraph graph_;
    std::unordered_map<const memory::Object*, std::uint32_t> elements_;
    std::vector<meta::Class> classes_;
    std::unordered_map<meta::Class, std::uint32_t> numbers_;
    std::unordered_map<meta::Property, std::uint32_t> properties_;
    std::unordered_map<meta::Class, std::vector<const memory::PropertyObject*>> followed_;
};

}  // namespace

HostRow measureHost(const Shape& shape, std::size_t rounds) {
    const Numbering numbering(shape);
    HostProcess host(numbering.graph());
    HostRow row = {shape.name, {}};
    for (const traversal::Algo order : allOrders) {
        Walk walk;
        walk.shape = &shape;
        walk.kind = Kind::Subtractive;
        walk.order = order;
        const Checksum expected = numbering.expectedOf(walk);
        std::vector<double> ratios;
        for (std::size_t round = 0; round < rounds; ++round) {
            settleHeap();
            const double builtIn = nanosecondsOf([&] { walkLibrary(walk); });
            const HostProcess::Answer answer = host.walk(static_cast<std::uint32_t>(walk.kind),
                                                         static_cast<std::uint32_t>(walk.order));
            if (answer.links != expected.links() || answer.sum != expected.sum()) {
                throw std::runtime_error("the host's walk of " + shape.name + ", " +
                                         std::string(nameOf(order)) + ", meets other links");
            }
            ratios.push_back(answer.nanoseconds / builtIn);
        }
        row.ratios.push_back(spreadOf(ratios));
    }
    return row;
}

void writeTable(std::ostream& out, const std::vector<HostRow>& rows) {
    out << "| shape |";
    for (const traversal::Algo order : allOrders) out << ' ' << nameOf(order) << " | min to max |";
    out << " at most |\n|---|--:|---|--:|---|--:|---|--:|\n";
    for (const HostRow& row : rows) {
        out << "| " << row.shape << " |";
        for (const Spread& ratio : row.ratios) {
            out << ' ' << judged(ratio.median, most, 2) << " | " << rangeOf(ratio, 2) << " |";
        }
        out << ' ' << fixed(most, 1) << " |\n";
    }
}

}  // namespace nuv::zero::benchmarks
