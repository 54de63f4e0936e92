#include "xmi/EcoreSources.h"

#include <filesystem>
#include <optional>
#include <utility>

#include "xmi/LoadedMetamodel.h"

namespace nuv::zero::xmi {
namespace {

bool isEcore(const XmlName& name) {
    return name.uri == ecoreNamespace;
}

std::filesystem::path fileName(std::string_view path) {
    return std::filesystem::path(percentDecoded(path)).filename();
}

}  // namespace

std::string_view EcoreTarget::name() const {
    const std::string_view all = fragment;
    return all.substr(all.rfind('/') + 1);
}

EcoreSources::File::File(XmlDocument parsed)
    : document(std::move(parsed)),
      fragments(document),
      roots(document.modelRoots()) {
    for (Node node = 0; node < document.size(); ++node) {
        for (const XmlAttribute& each : document.attributes(node)) {
            const XmlName& name = document.name(each.name);
            if (name.isXmi && name.local == "id") ids.emplace(each.value, node);
        }
    }
}

void EcoreSources::add(XmlDocument document) {
    const std::size_t source = files_.size();
    const auto packages = static_cast<std::ptrdiff_t>(packages_.size());
    const auto classifiers = static_cast<std::ptrdiff_t>(classifiers_.size());
    const std::size_t qualifiedNames = qualifiedNames_;
    files_.emplace_back(std::move(document));
    try {
        collect(source);
    } catch (...) {
        // Whoever goes on without this file must not find half of it.
        std::erase_if(byNsUri_, [&](const auto& each) { return each.second.source == source; });
        classifiers_.erase(classifiers_.begin() + classifiers, classifiers_.end());
        packages_.erase(packages_.begin() + packages, packages_.end());
        files_.pop_back();
        qualifiedNames_ = qualifiedNames;
        throw;
    }
}

void EcoreSources::collect(std::size_t source) {
    const File& file = files_[source];
    const XmlDocument& document = file.document;
    constexpr std::size_t noPackage = static_cast<std::size_t>(-1);
    // Parents come before their children, so one pass sees every package before its contents.
    std::vector<std::size_t> packageOf(document.size(), noPackage);
    const auto addPackage = [&](Node node, const std::string& prefix) {
        const SourceNode place{source, node};
        const std::string name(attribute(place, "name"));
        if (name.empty()) fail(place, "the package has no name");
        countQualifiedName(place, prefix, name);
        packageOf[node] = packages_.size();
        packages_.push_back({place, prefix + name, std::string(attribute(place, "nsURI"))});
        const std::string& nsUri = packages_.back().nsUri;
        if (nsUri.empty()) return;
        const auto [known, isNew] = byNsUri_.emplace(nsUri, place);
        if (isNew) return;
        fail(place, "the namespace " + inQuotes(nsUri) + " is given twice; it is also that of " +
                        this->document(known->second.source).file());
    };

    const std::size_t before = packages_.size();
    for (const Node root : file.roots) {
        const XmlName& name = document.nameOf(root);
        if (isEcore(name) && name.local == "EPackage") addPackage(root, {});
    }
    if (packages_.size() == before) {
        fail({source, 0}, "is not an Ecore metamodel: the root " +
                              inQuotes(document.nameOf(0).local) + " is no package of Ecore");
    }
    for (Node node = 0; node < document.size(); ++node) {
        const Node parent = document[node].parent;
        if (parent == noNode || packageOf[parent] == noPackage) continue;
        const std::size_t package = packageOf[parent];
        const std::string_view tag = document.nameOf(node).local;
        if (tag == "eSubpackages") {
            addPackage(node, packages_[package].qualifiedName + "::");
        } else if (tag == "eClassifiers") {
            const SourceNode place{source, node};
            const std::string name(attribute(place, "name"));
            if (name.empty()) fail(place, "the classifier has no name");
            countQualifiedName(place, packages_[package].qualifiedName, name);
            classifiers_.push_back({place, package, name});
        }
    }
}

void EcoreSources::countQualifiedName(SourceNode place, std::string_view package,
                                      std::string_view name) {
    qualifiedNames_ += package.size() + name.size();
    if (qualifiedNames_ <= limits_.qualifiedNames) return;
    fail(place, "the qualified names of the metamodel have more than " +
                    std::to_string(limits_.qualifiedNames) + " bytes in total");
}

std::string_view EcoreSources::attribute(SourceNode place, std::string_view name) const {
    const std::string_view* value = document(place.source).attribute(place.node, name);
    return value == nullptr ? std::string_view() : *value;
}

std::string_view EcoreSources::typeOf(SourceNode place) const {
    const XmlDocument& document = this->document(place.source);
    const NameId type = document[place.node].type;
    if (type == noName) fail(place, "the type is missing (xsi:type)");
    const XmlName& name = document.name(type);
    if (!isEcore(name)) fail(place, "the type " + inQuotes(name.local) + " is not one of Ecore");
    return name.local;
}

std::vector<EcoreTarget> EcoreSources::references(SourceNode from, std::string_view feature) const {
    std::vector<EcoreTarget> targets;
    for (const ListedReference& each : splitReferences(attribute(from, feature))) {
        targets.push_back(resolve(from, each.text));
        targets.back().declaredType = each.declaredType;
    }

    const XmlDocument& document = this->document(from.source);
    for (Node child = document.firstChild(from.node); child != noNode;
         child = document.nextSibling(child)) {
        if (document.nameOf(child).local != feature) continue;
        const std::string_view* href = document.attribute(child, "href");
        if (href == nullptr) continue;
        targets.push_back(resolve({from.source, child}, *href));
        const NameId type = document[child].type;
        if (type != noName) {
            targets.back().declaredType.assign("ecore:").append(document.name(type).local);
        }
    }
    return targets;
}

EcoreTarget EcoreSources::resolve(SourceNode from, std::string_view reference) const {
    const std::size_t hash = reference.find('#');
    EcoreTarget target;
    if (hash == std::string_view::npos) {
        target.fragment = reference;
    } else {
        target.file = reference.substr(0, hash);
        target.fragment = reference.substr(hash + 1);
    }

    std::size_t source = from.source;
    std::vector<Node> packageRoot;
    if (!target.file.empty()) {
        const auto package = byNsUri_.find(target.file);
        if (package != byNsUri_.end()) {
            source = package->second.source;
            packageRoot.push_back(package->second.node);
        } else {
            source = fileNamed(from.source, target.file);
            if (source == noFile) return target;
        }
    }

    const File& file = files_[source];
    const auto path = parseFragmentPath(target.fragment);
    if (path) {
        const auto& roots = packageRoot.empty() ? file.roots : packageRoot;
        target.place = {source, file.fragments.resolve(*path, roots)};
    } else if (const auto found = file.ids.find(target.fragment); found != file.ids.end()) {
        target.place = {source, found->second};
    }
    if (target.isHere()) return target;
    fail(from, "the reference " + inQuotes(reference) + " leads to nothing in " +
                   (source == from.source ? "this file" : file.document.file()));
}

std::size_t EcoreSources::fileNamed(std::size_t from, std::string_view path) const {
    namespace fs = std::filesystem;
    const fs::path here = fs::path(document(from).file()).parent_path();
    const fs::path exact = (here / percentDecoded(path)).lexically_normal();
    const fs::path name = fileName(path);
    std::size_t sameName = noFile;
    for (std::size_t i = 0; i < files_.size(); ++i) {
        const fs::path file = fs::path(files_[i].document.file());
        if (file.lexically_normal() == exact) return i;
        if (sameName == noFile && file.filename() == name) sameName = i;
    }
    // `platform:/plugin/...` and the like say where a file was on another machine; its name is what
    // can be compared.
    return sameName;
}

std::string_view EcoreSources::writtenName(SourceNode place) const {
    const XmlDocument& document = this->document(place.source);
    const auto is = [&](Node node, std::string_view attribute, std::string_view value) {
        const std::string_view* found = document.attribute(node, attribute);
        return found != nullptr && *found == value;
    };
    for (Node node = document.firstChild(place.node); node != noNode;
         node = document.nextSibling(node)) {
        const bool isForXml =
            document.nameOf(node).local == "eAnnotations" &&
            is(node, "source", "http:///org/eclipse/emf/ecore/util/ExtendedMetaData");
        if (!isForXml) continue;
        for (Node detail = node + 1; detail < document[node].end; ++detail) {
            if (is(detail, "key", "name")) return attribute({place.source, detail}, "value");
        }
    }
    return {};
}

void EcoreSources::fail(SourceNode place, std::string_view reason) const {
    document(place.source).fail(place.node, reason);
}

}  // namespace nuv::zero::xmi
