#include "traversal/WalkPicture.h"

#include "traversal/internal/Dumps.h"
#include "traversal/internal/Names.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER {

namespace {

/// A text in quotes, as DOT has it. Its readers take `&lt;` and the like for the character that is
/// meant.
std::string dotText(const std::string& text) {
    std::string result = "\"";
    for (const char each : text) {
        if (each == '"' || each == '\\') {
            result += '\\';
            result += each;
        } else if (each == '\n') {
            result += "\\n";
        } else if (each == '&') {
            result += "&amp;";
        } else if (static_cast<unsigned char>(each) < 0x20 || each == 0x7F) {
            // Readers of the text stop at some of these.
            result += ' ';
        } else {
            result += each;
        }
    }
    return result + '"';
}

std::string nodeName(std::size_t place) {
    return "n" + std::to_string(place);
}

/// Makes sure that the next `push_back` allocates nothing.
template <class T>
void makeRoom(std::vector<T>& list) {
    if (list.size() == list.capacity()) list.reserve(2 * list.size() + 8);
}

constexpr const char* notReportedColor = "gray60";

/// Each line between two nodes that are there for it alone.
constexpr const char* legend =
    "  subgraph cluster_legend {\n"
    "    label=\"legend\"; fontsize=10;\n"
    "    node [shape=point]; edge [fontsize=9];\n"
    "    l0 [shape=box, style=bold, label=\"input\"];\n"
    "    l13 [shape=box, style=dotted, label=\"not entered\"];\n"
    "    l1 -> l2 [label=\"first link\"];\n"
    "    l3 -> l4 [label=\"entered before\", style=dashed];\n"
    "    l5 -> l6 [label=\"closes a cycle\", style=dashed, color=red];\n"
    "    l7 -> l8 [label=\"not reported\", color=gray60, fontcolor=gray60];\n"
    "    l9 -> l10 [label=\"not descended into\", style=dotted, arrowhead=tee];\n"
    "    l11 [shape=plaintext, label=\"cut\"]; l12 -> l11 [label=\"pruned\", style=dotted, "
    "arrowhead=none];\n"
    "  }\n";

}  // namespace

WalkPicture::WalkPicture(std::size_t mostNodes) : mostNodes_(mostNodes) {}
WalkPicture::WalkPicture(const WalkPicture& other) = default;
WalkPicture& WalkPicture::operator=(const WalkPicture& other) {
    // Copied first, so that a failure changes nothing: places say where nodes are.
    WalkPicture copy(other);
    nodes_.swap(copy.nodes_);
    edges_.swap(copy.edges_);
    cuts_.swap(copy.cuts_);
    places_.swap(copy.places_);
    mostNodes_ = copy.mostNodes_;
    walk_ = copy.walk_;
    isDepthFirst_ = copy.isDepthFirst_;
    linksLeftOut_ = copy.linksLeftOut_;
    prunesLeftOut_ = copy.prunesLeftOut_;
    return *this;
}
WalkPicture::~WalkPicture() = default;

bool WalkPicture::isDrawn(const WalkView& walk) noexcept {
    const auto& result = walk.result();
    if (walk_.number == 0) {
        walk_ = {result, walk.number()};
        isDepthFirst_ = walk.order() != Algo::BreadthFirst;
    }
    return walk_.number == walk.number() && !walk_.result.owner_before(result) &&
           !result.owner_before(walk_.result);
}

/// Where the node of an element is: a new one as long as the limit allows it.
std::size_t WalkPicture::placeOf(const ModelElement& element) {
    const auto known = places_.find(element);
    if (known != places_.end()) return known->second;
    const bool fits = nodes_.size() < mostNodes_;
    // Room first: then what fails changes nothing.
    if (fits) makeRoom(nodes_);
    const std::size_t place = fits ? nodes_.size() : notDrawn;
    places_.emplace(element, place);
    if (fits) nodes_.push_back({element});
    return place;
}

void WalkPicture::onLink(const WalkView& walk, const internal::Link& link, Fate fate,
                         std::size_t /*filter*/) {
    if (!isDrawn(walk)) return;
    const Meeting meeting = walk.meeting();
    // Drawn when it was told that it is one.
    if (meeting == Meeting::Boundary && fate != Fate::NotDescended) return;
    const bool hasSource = !!link.getProperty();
    if (hasSource) makeRoom(edges_);
    const std::size_t from = hasSource ? placeOf(link.getSource()) : notDrawn;
    const std::size_t to = placeOf(link.getTarget());
    if (from != notDrawn) nodes_[from].isEntered = true;
    if (to != notDrawn) {
        if (meeting != Meeting::Boundary) nodes_[to].isEntered = true;
        if (!hasSource) nodes_[to].isInput = true;
    }
    if (!hasSource) return;
    if (from == notDrawn || to == notDrawn) {
        ++linksLeftOut_;
    } else {
        const bool isReported = fate == Fate::Reported || fate == Fate::NotDescended;
        edges_.push_back({from, to, link.getProperty(), meeting, isReported});
    }
}

void WalkPicture::onPrune(const WalkView& walk, const internal::Link& link, Pruning pruning,
                          const meta::Property& property, Pruned outcome) {
    if (!isDrawn(walk) || outcome != Pruned::Cut) return;
    const std::size_t node =
        placeOf(pruning == Pruning::Siblings ? link.getSource() : link.getTarget());
    if (node == notDrawn) {
        ++prunesLeftOut_;
    } else {
        nodes_[node].isEntered = true;
        cuts_.push_back({node, pruning, property});
    }
}

std::string WalkPicture::textOf(std::size_t place, const Node& node) {
    std::string text =
        "  " + nodeName(place) + " [label=" + dotText(internal::dumpElement(node.element));
    if (node.isInput) text += ", style=bold";
    // Referred to only.
    if (!node.isEntered) text += ", style=dotted";
    return text + "];\n";
}

std::string WalkPicture::textOf(const Edge& edge) const {
    std::string text = "  " + nodeName(edge.from) + " -> " + nodeName(edge.to) +
                       " [label=" + dotText(internal::plainName(edge.property));
    if (edge.meeting == Meeting::Boundary) {
        text += ", style=dotted, arrowhead=tee";
    } else if (edge.meeting != Meeting::First) {
        text += ", style=dashed";
    }
    if (edge.meeting == Meeting::Open && isDepthFirst_) {
        text += ", color=red";
    } else if (!edge.isReported) {
        text += std::string(", color=") + notReportedColor;
    }
    if (!edge.isReported) text += std::string(", fontcolor=") + notReportedColor;
    return text + "];\n";
}

std::string WalkPicture::textOf(std::size_t number, const Cut& cut) {
    std::string what = "all children";
    if (cut.property) {
        what = cut.pruning == Pruning::Siblings ? "rest of " : "";
        what += internal::plainName(cut.property);
    }
    const std::string name = "cut" + std::to_string(number);
    return "  " + name + " [shape=plaintext, label=\"cut\"]; " + nodeName(cut.node) + " -> " +
           name + " [label=" + dotText(what) + ", style=dotted, arrowhead=none];\n";
}

std::string WalkPicture::leftOutText() const {
    const std::size_t elements = places_.size() - nodes_.size();
    if (elements == 0) return "";
    std::string text = "Only the first " + std::to_string(nodes_.size()) + " of " +
                       std::to_string(places_.size()) +
                       " elements are drawn. Left out: links: " + std::to_string(linksLeftOut_);
    if (prunesLeftOut_ != 0) text += ", prunes: " + std::to_string(prunesLeftOut_);
    return "  limit [shape=note, label=" + dotText(text) + "];\n";
}

std::string WalkPicture::text() const {
    std::string text = "digraph walk {\n  node [shape=box];\n";
    for (std::size_t place = 0; place < nodes_.size(); ++place)
        text += textOf(place, nodes_[place]);
    for (const Edge& edge : edges_) text += textOf(edge);
    for (std::size_t number = 0; number < cuts_.size(); ++number) {
        text += textOf(number, cuts_[number]);
    }
    return text + leftOutText() + legend + "}\n";
}

void WalkPicture::clear() noexcept {
    walk_ = {};
    nodes_.clear();
    edges_.clear();
    cuts_.clear();
    places_.clear();
    linksLeftOut_ = 0;
    prunesLeftOut_ = 0;
}

}  // namespace nuv::zero::traversal
