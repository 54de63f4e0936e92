#include "xmi/EcoreSources.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <utility>

#include "xmi/EcoreDataTypes.h"
#include "xmi/LoadedMetamodel.h"

namespace nuv::zero::xmi {
namespace {

bool isEcore(const XmlName& name) {
    return name.uri == ecoreNamespace;
}

/// The steps of a path from its last one, without those that lead nowhere.
std::vector<std::string> stepsFromTheEnd(const std::string& path) {
    std::vector<std::string> steps;
    for (const auto& each : std::filesystem::path(path)) {
        const std::string step = each.string();
        if (!step.empty() && step != "." && step != ".." && step != "/") steps.push_back(step);
    }
    std::reverse(steps.begin(), steps.end());
    return steps;
}

/// The features by which metamodels refer to what others declare.
bool refersToDeclarations(std::string_view feature) {
    return feature == "eType" || feature == "eSuperTypes" || feature == "eClassifier" ||
           feature == "eOpposite";
}

/// Calls `visit` with every reference of a package to a declaration in another file.
template <class Visit>
void forEachOutgoing(const XmlDocument& document, Node package, const Visit& visit) {
    for (Node node = package; node < document[package].end; ++node) {
        for (const XmlAttribute& each : document.attributes(node)) {
            const XmlName& name = document.name(each.name);
            const bool isHref =
                name.isPlain("href") && refersToDeclarations(document.nameOf(node).local);
            if (!isHref && !(name.uri.empty() && refersToDeclarations(name.local))) continue;
            if (each.value.find('#') == std::string_view::npos) continue;
            for (const ListedReference& one : splitReferences(each.value)) {
                const std::size_t hash = one.text.find('#');
                if (hash == std::string_view::npos || hash == 0) continue;
                visit(one.text.substr(0, hash), one.text.substr(hash + 1));
            }
        }
    }
}

}  // namespace

std::string_view EcoreTarget::name() const {
    const std::string_view all = fragment;
    return all.substr(all.rfind('/') + 1);
}

EcoreSources::File::File(XmlDocument parsed, bool given)
    : document(std::move(parsed)),
      fragments(document),
      roots(document.modelRoots()),
      isGiven(given) {
    for (Node node = 0; node < document.size(); ++node) {
        for (const XmlAttribute& each : document.attributes(node)) {
            const XmlName& name = document.name(each.name);
            if (name.isXmi && name.local == "id") ids.emplace(each.value, node);
        }
    }
}

std::size_t EcoreSources::add(XmlDocument document, bool isGiven, std::string_view wanted) {
    const std::size_t source = files_.size();
    const std::size_t qualifiedNames = qualifiedNames_;
    files_.emplace_back(std::move(document), isGiven);
    try {
        collect(source, wanted);
    } catch (...) {
        // Whoever goes on without this file must not find half of it.
        keepFirst(source);
        qualifiedNames_ = qualifiedNames;
        throw;
    }
    return source;
}

void EcoreSources::keepFirst(std::size_t files) {
    const auto isGone = [&](const SourceNode& place) { return place.source >= files; };
    std::erase_if(byNsUri_, [&](const auto& each) { return isGone(each.second); });
    std::erase_if(classifiers_, [&](const Classifier& each) { return isGone(each.place); });
    std::erase_if(packages_, [&](const Package& each) { return isGone(each.place); });
    std::erase_if(links_, [&](const auto& each) {
        return each.first.first >= files || (each.second != noFile && each.second >= files);
    });
    while (files_.size() > files) files_.pop_back();
}

void EcoreSources::link(std::size_t from, const std::string& path, std::size_t to) {
    links_[{from, path}] = to;
}

void EcoreSources::collect(std::size_t source, std::string_view wanted) {
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
    for (const Node node : packagesWithin(document, wanted)) addPackage(node, {});
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

std::vector<Node> EcoreSources::packagesWithin(const XmlDocument& document,
                                               std::string_view wanted) {
    std::vector<Node> first;
    std::vector<Node> asked;
    Node end = 0;
    Node lastParent = noNode;
    for (Node node = 0; node < document.size(); ++node) {
        const NameId type = document[node].type;
        if (node < end || type == noName) continue;
        if (!isEcore(document.name(type)) || document.name(type).local != "EPackage") continue;
        if (document[node].parent == noNode || document.nameOf(node).local == "eSubpackages") {
            continue;
        }
        const std::string_view* const nsUri = document.attribute(node, "nsURI");
        if (nsUri != nullptr && !wanted.empty() && *nsUri == wanted) asked.push_back(node);
        if (document[node].parent != lastParent) first.push_back(node);
        lastParent = document[node].parent;
        end = document[node].end;
    }
    return asked.empty() ? first : std::vector<Node>{asked.front()};
}

std::vector<std::string> EcoreSources::namespacesOf(const XmlDocument& document,
                                                    std::string_view wanted) {
    std::vector<Node> packages = packagesWithin(document, wanted);
    for (const Node root : document.modelRoots()) {
        const XmlName& name = document.nameOf(root);
        if (isEcore(name) && name.local == "EPackage") packages.push_back(root);
    }
    std::vector<std::string> namespaces;
    for (const Node each : packages) {
        const std::string_view* const nsUri = document.attribute(each, "nsURI");
        if (nsUri != nullptr && !nsUri->empty()) namespaces.emplace_back(*nsUri);
    }
    return namespaces;
}

void EcoreSources::exclude(std::size_t source) {
    files_[source].isExcluded = true;
    for (Package& each : packages_) each.isExcluded |= each.place.source == source;
    std::erase_if(byNsUri_, [&](const auto& each) { return each.second.source == source; });
    std::erase_if(classifiers_,
                  [&](const Classifier& each) { return each.place.source == source; });
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
        const SourceNode* const package = packageWith(target.file);
        if (package != nullptr) {
            source = package->source;
            packageRoot.push_back(package->node);
        } else {
            source = fileMeant(from.source, target.file);
            if (source == noFile || files_[source].isExcluded) return target;
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

const SourceNode* EcoreSources::packageWith(std::string_view nsUri) const {
    const auto alias = aliases_.find(nsUri);
    const auto found = byNsUri_.find(alias == aliases_.end() ? nsUri : alias->second);
    return found == byNsUri_.end() ? nullptr : &found->second;
}

std::size_t EcoreSources::fileWith(std::string_view nsUri) const {
    const SourceNode* const package = packageWith(nsUri);
    return package == nullptr ? noFile : package->source;
}

bool EcoreSources::declares(std::size_t source, std::string_view nsUri) const {
    return std::any_of(packages_.begin(), packages_.end(), [&](const Package& each) {
        return each.place.source == source && each.nsUri == nsUri;
    });
}

const EcoreSources::Package* EcoreSources::packageNamed(std::string_view nsUri) const {
    const SourceNode* const place = packageWith(nsUri);
    if (place == nullptr) return nullptr;
    const auto found = std::find_if(packages_.begin(), packages_.end(),
                                    [&](const Package& each) { return each.place == *place; });
    return found == packages_.end() ? nullptr : &*found;
}

std::string EcoreSources::pathOf(const Package& package) const {
    const File& file = files_[package.place.source];
    const XmlDocument& document = file.document;
    std::string path;
    Node node = package.place.node;
    while (std::find(file.roots.begin(), file.roots.end(), node) == file.roots.end()) {
        std::size_t ordinal = 0;
        const Node parent = document[node].parent;
        for (Node each = document.firstChild(parent); each != node;
             each = document.nextSibling(each)) {
            if (document.nameOf(each).local == document.nameOf(node).local) ++ordinal;
        }
        path =
            "/@" + std::string(document.nameOf(node).local) + "." + std::to_string(ordinal) + path;
        node = parent;
    }
    const auto root = std::find(file.roots.begin(), file.roots.end(), node) - file.roots.begin();
    return (file.roots.size() > 1 ? "/" + std::to_string(root) : "/") + path;
}

std::vector<Node> EcoreSources::outermostPackages(std::size_t source) const {
    std::vector<Node> packages;
    Node end = 0;
    for (const Package& each : packages_) {
        if (each.place.source != source || (each.place.node < end && !packages.empty())) continue;
        packages.push_back(each.place.node);
        end = document(source)[each.place.node].end;
    }
    return packages;
}

std::vector<std::string> EcoreSources::filesReferredTo(std::size_t source) const {
    std::vector<std::string> files;
    std::set<std::string, std::less<>> known;
    const auto take = [&](std::string_view file, std::string_view /*fragment*/) {
        if (!known.contains(file)) files.push_back(*known.emplace(file).first);
    };
    for (const Node each : outermostPackages(source)) forEachOutgoing(document(source), each, take);
    return files;
}

bool EcoreSources::needsEcore(std::size_t source) const {
    bool isNeeded = false;
    const auto take = [&](std::string_view file, std::string_view fragment) {
        const std::string_view name = fragment.substr(fragment.rfind('/') + 1);
        if (name != "EObject" && meansEcore(file) && isEcoreClass(name)) isNeeded = true;
    };
    for (const Node each : outermostPackages(source)) forEachOutgoing(document(source), each, take);
    return isNeeded;
}

std::size_t EcoreSources::fileMeant(std::size_t from, std::string_view path) const {
    const std::size_t withNamespace = fileWith(path);
    if (withNamespace != noFile) return withNamespace;
    const auto linked = links_.find({from, std::string(path)});
    if (linked != links_.end()) return linked->second;
    const std::size_t given = givenFileNamed(from, path);
    // Ecore itself is always at hand, wherever another machine had it.
    return given == noFile && meansEcore(path) ? fileWith(ecoreNamespace) : given;
}

std::size_t EcoreSources::givenFileNamed(std::size_t from, std::string_view path) const {
    namespace fs = std::filesystem;
    const std::string decoded = percentDecoded(path);
    const fs::path here = fs::path(document(from).file()).parent_path();
    const fs::path exact = (here / decoded).lexically_normal();
    for (std::size_t i = 0; i < files_.size(); ++i) {
        if (!files_[i].isGiven) continue;
        if (fs::path(files_[i].document.file()).lexically_normal() == exact) return i;
    }
    // `platform:/plugin/...` and the like say where a file was on another machine. What can be
    // compared is how the paths end.
    const std::vector<std::string> wanted = stepsFromTheEnd(decoded);
    std::size_t longest = 0;
    std::vector<std::size_t> found;
    for (std::size_t i = 0; i < files_.size(); ++i) {
        if (!files_[i].isGiven) continue;
        const std::vector<std::string> steps = stepsFromTheEnd(files_[i].document.file());
        const auto end =
            std::mismatch(wanted.begin(), wanted.end(), steps.begin(), steps.end()).first;
        const auto length = static_cast<std::size_t>(end - wanted.begin());
        if (length == 0 || length < longest) continue;
        if (length > longest) found.clear();
        longest = length;
        found.push_back(i);
    }
    if (found.size() > 1) {
        fail({from, 0}, "the file " + inQuotes(path) + " may be " + document(found.front()).file() +
                            " or " + document(found.back()).file());
    }
    return found.empty() ? noFile : found.front();
}

const std::string_view* EcoreSources::annotation(SourceNode place, std::string_view source,
                                                 std::string_view key) const {
    const XmlDocument& document = this->document(place.source);
    const auto is = [&](Node node, std::string_view attribute, std::string_view value) {
        const std::string_view* found = document.attribute(node, attribute);
        return found != nullptr && *found == value;
    };
    for (Node node = document.firstChild(place.node); node != noNode;
         node = document.nextSibling(node)) {
        if (document.nameOf(node).local != "eAnnotations" || !is(node, "source", source)) continue;
        for (Node detail = node + 1; detail < document[node].end; ++detail) {
            if (!is(detail, "key", key)) continue;
            const std::string_view* const value = document.attribute(detail, "value");
            static constexpr std::string_view nothing;
            return value == nullptr ? &nothing : value;
        }
    }
    return nullptr;
}

void EcoreSources::fail(SourceNode place, std::string_view reason) const {
    document(place.source).fail(place.node, reason);
}

}  // namespace nuv::zero::xmi
