#include "xmi/MetamodelSet.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <utility>

#include "xmi/BuiltInEcore.h"
#include "xmi/ByteSource.h"
#include "xmi/EcoreBuilder.h"
#include "xmi/EcoreDataTypes.h"
#include "xmi/EcoreSources.h"
#include "xmi/NamespaceIndex.h"

namespace nuv::zero::xmi {
namespace {

/// So many aliases may lead to each other; they may well do so in a circle.
constexpr int longestChain = 10;

ReadOptions leavingOut(ReadOptions options) {
    options.crossFile = CrossFile::LeaveOut;
    return options;
}

}  // namespace

/// Reads files, and what they refer to, and knows them.
class MetamodelSet::Loader {
  public:
    Loader(const FileRoots& roots, const ReadOptions& options, NamespaceAliases aliases)
        : roots_(roots),
          options_(leavingOut(options)),
          aliases_(std::move(aliases)),
          index_(roots),
          sources_(options_.limits),
          builder_(sources_, options_) {}

    void give(const std::vector<std::string>& paths);
    bool provide(std::string_view nsUri, std::string_view location, const FilePlace& from,
                 int chain);
    const LoadedMetamodel& loaded() const noexcept { return builder_.loaded(); }
    std::optional<Definition> placeOf(std::string_view nsUri) const;
    std::vector<Finding> takeFindings() { return std::exchange(findings_, {}); }

  private:
    static constexpr std::size_t noFile = EcoreSources::noFile;

    /// A file of the sources.
    struct Known {
        /// Nothing for a file outside of the roots.
        std::optional<FilePlace> place;
        bool isGiven = false;
        /// Of its bytes: equal ones are taken for the same file.
        std::size_t size = 0;
        std::size_t hash = 0;
    };

    bool loadAt(const FilePlace& place, std::string_view nsUri, std::unique_ptr<ByteSource> bytes,
                bool mustBe);
    bool loadLocated(std::string_view nsUri, std::string_view location, const FilePlace& from);
    bool loadIndexed(std::string_view nsUri, const FilePlace& from);
    bool loadBuiltIn();
    void setAlias(std::string_view nsUri, std::string_view meant);

    /// Reads files, what they refer to, and builds them all; takes everything back when it throws.
    template <class Read>
    void grow(const Read& read);
    /// Builds what was read; files that cannot be are left out, but for those that were given.
    void build(std::size_t first);

    /// The number of the file, or of the one that says the same; `noFile` when it cannot be read.
    /// A file that only seems to be one may also be no metamodel.
    std::size_t read(const FilePlace& place, ByteSource& bytes, std::string_view wanted,
                     bool mustBe);
    std::size_t add(Known known, const std::string& bytes, const std::string& shown,
                    std::string_view wanted, bool mustBe = true);
    void reportTwice(const std::string& shown, const std::string& nsUri, std::size_t other);
    std::size_t addBuiltIn();
    /// Reads the files that a file refers to.
    void follow(std::size_t source);
    std::size_t followOne(std::size_t source, const std::string& path);
    /// Reads a file of the roots that declares the namespace.
    std::size_t readWith(std::string_view nsUri, const FilePlace& from);
    void reportUnreadable(const ReadError& error);
    void reportMissing(std::size_t source, const std::string& path);
    std::optional<FilePlace> placeInRoots(const std::string& path) const;

    const FileRoots& roots_;
    ReadOptions options_;
    NamespaceAliases aliases_;
    NamespaceIndex index_;
    EcoreSources sources_;
    EcoreBuilder builder_;
    /// By the number of the file.
    std::vector<Known> known_;
    std::vector<Finding> findings_;
    /// What was looked for in vain, with the location.
    std::set<std::pair<std::string, std::string>> missing_;
    /// The files that cannot be read, and are not to be told of twice.
    std::set<FilePlace> unreadable_;
    /// The files of which was told that another one counts.
    std::set<std::string> twice_;
    std::size_t builtIn_ = noFile;
};

template <class Read>
void MetamodelSet::Loader::grow(const Read& read) {
    const std::size_t first = sources_.size();
    const std::size_t firstFinding = findings_.size();
    const std::size_t builtIn = builtIn_;
    try {
        read();
        // Following a file adds others at the end.
        for (std::size_t each = first; each < sources_.size(); ++each) follow(each);
        build(first);
    } catch (...) {
        sources_.keepFirst(first);
        known_.resize(first);
        findings_.resize(firstFinding);
        builtIn_ = builtIn;
        throw;
    }
}

void MetamodelSet::Loader::build(std::size_t first) {
    // Each round leaves out one file at least. A hostile set of files is not worth many.
    for (int round = 0;; ++round) {
        try {
            builder_.extend();
            return;
        } catch (const ReadError& error) {
            std::size_t bad = first;
            while (bad < sources_.size() && sources_.document(bad).file() != error.file()) ++bad;
            if (bad == sources_.size() || known_[bad].isGiven) throw;
            reportUnreadable(error);
            sources_.exclude(bad);
            if (round < 10) continue;
            for (std::size_t each = first; each < sources_.size(); ++each) sources_.exclude(each);
        }
    }
}

void MetamodelSet::Loader::give(const std::vector<std::string>& paths) {
    grow([&] {
        for (const std::string& path : paths) {
            FileSource file(path, options_.limits.fileBytes);
            add({placeInRoots(path), true}, allBytes(file), path, {});
        }
    });
}

bool MetamodelSet::Loader::provide(std::string_view nsUri, std::string_view location,
                                   const FilePlace& from, int chain) {
    if (loaded().hasNamespace(nsUri)) return true;
    if (nsUri.empty() || chain == longestChain) return false;
    std::pair<std::string, std::string> asked(nsUri, location);
    if (!location.empty()) asked.second += '\n' + roots_.textOf(from);
    if (missing_.contains(asked)) return false;
    const auto isProvidedAs = [&](std::string_view meant, std::string_view at) {
        if (meant.empty() || meant == nsUri || !provide(meant, at, from, chain + 1)) return false;
        setAlias(nsUri, meant);
        return true;
    };
    const bool isFound =
        isProvidedAs(aliases_.meaning(nsUri), location) || loadLocated(nsUri, location, from) ||
        loadIndexed(nsUri, from) || (nsUri == ecoreNamespace && loadBuiltIn()) ||
        isProvidedAs(NamespaceAliases::builtInMeaning(nsUri), {}) ||
        (hasScheme(location) && isProvidedAs(location.substr(0, location.find('#')), {}));
    if (!isFound) missing_.insert(std::move(asked));
    return isFound;
}

void MetamodelSet::Loader::setAlias(std::string_view nsUri, std::string_view meant) {
    builder_.addAlias(std::string(nsUri), std::string(meant));
    sources_.addAlias(std::string(nsUri), std::string(meant));
}

bool MetamodelSet::Loader::loadLocated(std::string_view nsUri, std::string_view location,
                                       const FilePlace& from) {
    // A fragment alone is a place in the file that asks.
    if (location.empty()) return false;
    FileRoots::Lookup found = location.starts_with('#')
                                  ? roots_.find(from.root, from.path, options_.limits.fileBytes)
                                  : roots_.find(from, location, options_.limits.fileBytes);
    if (found.outcome != FileRoots::Outcome::Found) return false;
    return loadAt(found.places.front(), nsUri, std::move(found.bytes), false);
}

bool MetamodelSet::Loader::loadIndexed(std::string_view nsUri, const FilePlace& from) {
    bool isLoaded = false;
    for (const FilePlace& each : index_.filesWith(nsUri, from)) {
        FileRoots::Lookup found = roots_.find(each.root, each.path, options_.limits.fileBytes);
        if (found.outcome != FileRoots::Outcome::Found) continue;
        // Those behind the first are read all the same, to tell of one that says otherwise.
        isLoaded = loadAt(found.places.front(), nsUri, std::move(found.bytes), false) || isLoaded;
    }
    return isLoaded;
}

bool MetamodelSet::Loader::loadBuiltIn() {
    grow([&] { addBuiltIn(); });
    return loaded().hasNamespace(ecoreNamespace);
}

bool MetamodelSet::Loader::loadAt(const FilePlace& place, std::string_view nsUri,
                                  std::unique_ptr<ByteSource> bytes, bool mustBe) {
    grow([&] { read(place, *bytes, nsUri, mustBe); });
    return loaded().hasNamespace(nsUri);
}

std::size_t MetamodelSet::Loader::read(const FilePlace& place, ByteSource& bytes,
                                       std::string_view wanted, bool mustBe) {
    for (std::size_t each = 0; each < known_.size(); ++each) {
        const bool isIt = known_[each].place == place;
        if (isIt && (wanted.empty() || sources_.declares(each, wanted))) return each;
    }
    if (unreadable_.contains(place)) return noFile;
    try {
        return add({place}, allBytes(bytes), roots_.textOf(place), wanted, mustBe);
    } catch (const ReadError& error) {
        unreadable_.insert(place);
        reportUnreadable(error);
        return noFile;
    }
}

std::size_t MetamodelSet::Loader::add(Known known, const std::string& bytes,
                                      const std::string& shown, std::string_view wanted,
                                      bool mustBe) {
    TextSource text(bytes);
    XmlDocument document = XmlDocument::parse(shown, text, options_.limits);
    known.size = bytes.size();
    known.hash = std::hash<std::string>()(bytes);
    const std::vector<std::string> namespaces = EcoreSources::namespacesOf(document, wanted);
    if (namespaces.empty() && !mustBe) return noFile;
    for (const std::string& nsUri : namespaces) {
        const std::size_t other = sources_.fileWith(nsUri);
        if (other == noFile) continue;
        const Known& there = known_[other];
        const bool isSame = there.size == known.size && there.hash == known.hash;
        if (!isSame && there.place != known.place && other != builtIn_) {
            reportTwice(shown, nsUri, other);
        }
        return other;
    }
    known_.reserve(known_.size() + 1);
    const std::size_t source = sources_.add(std::move(document), known.isGiven, wanted);
    known_.push_back(std::move(known));
    return source;
}

void MetamodelSet::Loader::reportTwice(const std::string& shown, const std::string& nsUri,
                                       std::size_t other) {
    if (!twice_.insert(shown).second) return;
    Finding twice;
    twice.reason = Finding::Reason::MetamodelTwice;
    twice.weight = Finding::Weight::Warning;
    twice.file = shown;
    twice.other = sources_.document(other).file();
    twice.message = "defines the namespace " + inQuotes(nsUri) + " otherwise than " + twice.other +
                    ", which counts";
    findings_.push_back(std::move(twice));
}

std::size_t MetamodelSet::Loader::addBuiltIn() {
    const std::size_t there = sources_.fileWith(ecoreNamespace);
    if (there != noFile) return there;
    known_.reserve(known_.size() + 1);
    builtIn_ = sources_.add(builtInEcore(), false);
    known_.push_back({FilePlace{roots_.rootNamed(builtInRoot), std::string(builtInEcoreFile)}});
    return builtIn_;
}

void MetamodelSet::Loader::follow(std::size_t source) {
    if (sources_.needsEcore(source) && sources_.fileWith(ecoreNamespace) == noFile) {
        const FilePlace from = known_[source].place.value_or(FilePlace{});
        if (readWith(ecoreNamespace, from) == noFile) addBuiltIn();
    }
    for (const std::string& path : sources_.filesReferredTo(source)) {
        if (meansEcore(path) || meansXmlTypes(path)) continue;
        try {
            if (sources_.fileMeant(source, path) != noFile) continue;
        } catch (const ReadError&) {
            // Several given files may be meant; the roots may know which one.
        }
        const std::size_t found = followOne(source, path);
        sources_.link(source, path, found);
        if (found == noFile) reportMissing(source, path);
    }
}

std::size_t MetamodelSet::Loader::followOne(std::size_t source, const std::string& path) {
    const FilePlace from = known_[source].place.value_or(FilePlace{});
    if (known_[source].place || hasScheme(path)) {
        const FileRoots::Lookup found = roots_.find(from, path, options_.limits.fileBytes);
        if (found.outcome == FileRoots::Outcome::Found) {
            const std::size_t there = read(found.places.front(), *found.bytes, {}, true);
            if (there != noFile) return there;
        }
    }
    const std::size_t there = readWith(path, from);
    if (there != noFile) return there;
    std::string_view meant = aliases_.meaning(path);
    if (meant.empty()) meant = NamespaceAliases::builtInMeaning(path);
    if (meant.empty() || readWith(meant, from) == noFile) return noFile;
    sources_.addAlias(path, std::string(meant));
    return sources_.fileWith(meant);
}

std::size_t MetamodelSet::Loader::readWith(std::string_view nsUri, const FilePlace& from) {
    for (const FilePlace& each : index_.filesWith(nsUri, from)) {
        const FileRoots::Lookup found =
            roots_.find(each.root, each.path, options_.limits.fileBytes);
        if (found.outcome != FileRoots::Outcome::Found) continue;
        read(found.places.front(), *found.bytes, nsUri, false);
        if (sources_.fileWith(nsUri) != noFile) break;
    }
    return sources_.fileWith(nsUri);
}

void MetamodelSet::Loader::reportUnreadable(const ReadError& error) {
    Finding unreadable;
    unreadable.reason = Finding::Reason::UnreadableFile;
    unreadable.weight = Finding::Weight::Warning;
    unreadable.file = error.file();
    unreadable.position = error.position();
    unreadable.message = "cannot be read as a metamodel: " + error.reason();
    findings_.push_back(std::move(unreadable));
}

void MetamodelSet::Loader::reportMissing(std::size_t source, const std::string& path) {
    Finding missing;
    missing.reason = Finding::Reason::NoMetamodelFile;
    missing.weight = Finding::Weight::Warning;
    missing.file = sources_.document(source).file();
    missing.reference = path;
    missing.message = "refers to the metamodel " + inQuotes(path) +
                      ", which is not found; its types are taken for any element";
    findings_.push_back(std::move(missing));
}

std::optional<FilePlace> MetamodelSet::Loader::placeInRoots(const std::string& path) const {
    std::error_code failure;
    const std::string whole = std::filesystem::canonical(path, failure).string();
    if (failure) return std::nullopt;
    for (std::size_t root = 0; root < roots_.size(); ++root) {
        const std::string folder(roots_.tree(root).systemPath());
        if (!folder.empty() && whole.starts_with(folder + "/")) {
            return FilePlace{root, whole.substr(folder.size() + 1)};
        }
    }
    return std::nullopt;
}

std::optional<MetamodelSet::Definition> MetamodelSet::Loader::placeOf(
    std::string_view nsUri) const {
    const EcoreSources::Package* const package = sources_.packageNamed(nsUri);
    if (package == nullptr || !known_[package->place.source].place) return std::nullopt;
    return Definition{*known_[package->place.source].place, sources_.pathOf(*package)};
}

MetamodelSet::MetamodelSet(const FileRoots& roots, ReadOptions options, NamespaceAliases aliases)
    : loader_(std::make_unique<Loader>(roots, options, std::move(aliases))) {}

MetamodelSet::~MetamodelSet() = default;

void MetamodelSet::give(const std::vector<std::string>& paths) {
    loader_->give(paths);
}

bool MetamodelSet::provide(std::string_view nsUri, std::string_view location,
                           const FilePlace& from) {
    return loader_->provide(nsUri, location, from, 0);
}

const LoadedMetamodel& MetamodelSet::loaded() const noexcept {
    return loader_->loaded();
}

std::optional<MetamodelSet::Definition> MetamodelSet::placeOf(std::string_view nsUri) const {
    return loader_->placeOf(nsUri);
}

std::vector<Finding> MetamodelSet::takeFindings() {
    return loader_->takeFindings();
}

}  // namespace nuv::zero::xmi
