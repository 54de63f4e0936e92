// Draws one small walk in mid-way, in each order: draw_walks <folder> writes walk-pre-order.svg,
// walk-post-order.svg and walk-breadth-first.svg there. The pages show these drawings.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <fstream>
#include <iostream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/readme/SmallModel.h"
#include "tests/readme/WalkSnapshot.h"
#include "traversal/Traversal.h"

namespace nuv::zero::readme {
namespace {

constexpr const char* ink = "#1f2933";
constexpr const char* faint = "#6b7780";
constexpr const char* paper = "#ffffff";
constexpr const char* cellFill = "#eef2f5";
constexpr const char* enteredFill = "#cfe3f5";
constexpr const char* enteredInk = "#24608f";
constexpr const char* currentInk = "#b3451b";
constexpr const char* currentFill = "#fbe3d6";

constexpr int width = 760;
constexpr int height = 372;

struct Point {
    int x;
    int y;
};

/// The small model with B -> C and D -> E besides.
struct DrawnModel : SmallModel {
    ModelElement e = model.create(node, u"E");
    DrawnModel() {
        model.set(b, p, {c, d});
        model.add(d, p, e);
    }
    std::vector<ModelElement> elements() const { return {a, b, c, d, e}; }
};

const std::vector<SnapshotLink> edges{{"", "A"},  {"A", "B"}, {"A", "C"},
                                      {"B", "C"}, {"B", "D"}, {"D", "E"}};
const std::map<std::string, Point> places{{"", {136, 54}},   {"A", {136, 104}}, {"B", {76, 182}},
                                          {"C", {196, 182}}, {"D", {76, 254}},  {"E", {196, 254}}};

std::string textOf(const SnapshotLink& link) {
    return link.source + "\u2192" + link.target;
}

/// The parts of a drawing, as SVG.
class Drawing {
  public:
    void text(Point at, const std::string& text, const char* anchor, const char* colour, int size,
              bool isBold = false) {
        out_ << "<text x='" << at.x << "' y='" << at.y << "' text-anchor='" << anchor << "' fill='"
             << colour << "' font-size='" << size << "'" << (isBold ? " font-weight='bold'" : "")
             << ">" << text << "</text>\n";
    }
    /// A box with a text in its middle.
    void cell(Point at, int cellWidth, const std::string& content, const char* fill,
              const char* stroke, bool isDashed) {
        out_ << "<rect x='" << at.x << "' y='" << at.y << "' width='" << cellWidth
             << "' height='24' rx='4' fill='" << fill << "' stroke='" << stroke << "'"
             << (isDashed ? dashes : "") << "/>\n";
        text({at.x + cellWidth / 2, at.y + 17}, content, "middle", stroke == faint ? faint : ink,
             14);
    }
    void node(Point at, const std::string& name, bool isEntered, bool hasCursor) {
        const char* stroke = isEntered ? enteredInk : faint;
        if (hasCursor) circle(at, 19, "none", stroke, false);
        circle(at, 15, isEntered ? enteredFill : paper, stroke, !isEntered);
        text({at.x, at.y + 5}, name, "middle", isEntered ? ink : faint, 15, true);
    }
    /// An arrow between two nodes, or into one from where there is none.
    void arrow(Point from, Point to, int margin, const char* colour, bool isDashed, int stroke) {
        const double length = std::hypot(to.x - from.x, to.y - from.y);
        const auto onTheWay = [&](double way) {
            return Point{static_cast<int>(std::lround(from.x + (to.x - from.x) * way / length)),
                         static_cast<int>(std::lround(from.y + (to.y - from.y) * way / length))};
        };
        const Point start = onTheWay(margin);
        const Point end = onTheWay(length - 24);
        out_ << "<line x1='" << start.x << "' y1='" << start.y << "' x2='" << end.x << "' y2='"
             << end.y << "' stroke='" << colour << "' stroke-width='" << stroke
             << "' marker-end='url(#" << (colour == currentInk ? "current" : "plain") << ")'"
             << (isDashed ? dashes : "") << "/>\n";
    }
    /// The whole, on paper of its own, so that it can be read on any page.
    std::string svg(const std::string& title) const {
        std::ostringstream all;
        all << "<svg xmlns='http://www.w3.org/2000/svg' width='" << width << "' height='" << height
            << "' viewBox='0 0 " << width << ' ' << height
            << "' font-family='Helvetica, Arial, sans-serif'>\n<title>" << title << "</title>\n"
            << "<defs>" << head("plain", ink) << head("current", currentInk) << "</defs>\n"
            << "<rect x='1' y='1' width='" << width - 2 << "' height='" << height - 2
            << "' rx='10' fill='" << paper << "' stroke='#b8c2ca'/>\n"
            << out_.str() << "</svg>\n";
        return all.str();
    }

  private:
    static constexpr const char* dashes = " stroke-dasharray='4 3'";

    static std::string head(const std::string& id, const std::string& colour) {
        return "<marker id='" + id +
               "' viewBox='0 0 8 8' refX='3' refY='4' markerUnits='userSpaceOnUse' "
               "markerWidth='9' markerHeight='9' orient='auto'><path d='M0 0 8 4 0 8z' fill='" +
               colour + "'/></marker>";
    }
    void circle(Point at, int radius, const char* fill, const char* stroke, bool isDashed) {
        out_ << "<circle cx='" << at.x << "' cy='" << at.y << "' r='" << radius << "' fill='"
             << fill << "' stroke='" << stroke << "' stroke-width='2'" << (isDashed ? dashes : "")
             << "/>\n";
    }

    std::ostringstream out_;
};

/// When a link was reported, beside the middle of its arrow.
void drawNumber(Drawing& drawing, Point from, Point to, std::ptrdiff_t number, bool isCurrent) {
    Point at{(from.x + to.x) / 2, (from.y + to.y) / 2};
    const char* anchor = "middle";
    if (from.y == to.y) {
        at.y -= 7;
    } else {
        const bool goesRight = to.x > from.x;
        at = {at.x + (goesRight ? 9 : -9), at.y + 4};
        anchor = goesRight ? "start" : "end";
    }
    drawing.text(at, std::to_string(number), anchor, isCurrent ? currentInk : ink, 13, isCurrent);
}

void drawModel(Drawing& drawing, const WalkSnapshot& walk,
               const std::vector<SnapshotLink>& reported) {
    for (const SnapshotLink& edge : edges) {
        const Point from = places.at(edge.source);
        const Point to = places.at(edge.target);
        const bool isCurrent = edge == walk.current;
        const auto place = std::find(reported.begin(), reported.end(), edge);
        const bool isReported = place != reported.end();
        drawing.arrow(from, to, edge.source.empty() ? 0 : 22, isCurrent ? currentInk : ink,
                      !isReported, isCurrent ? 3 : 1);
        if (isReported) drawNumber(drawing, from, to, place - reported.begin() + 1, isCurrent);
    }
    for (const auto& [name, at] : places) {
        if (!name.empty()) drawing.node(at, name, walk.hasEntered(name), walk.hasCursor(name));
    }
    drawing.text({24, 314}, "number: reported, in this order", "start", faint, 12);
    drawing.text({24, 332}, "dashed: not reported, or not entered", "start", faint, 12);
    drawing.text({24, 350}, "double ring: has a cursor", "start", faint, 12);
}

void drawCursor(Drawing& drawing, Point at, const SnapshotCursor& cursor, const std::string& over) {
    drawing.text({at.x, at.y + 17}, over + ".p", "start", ink, 14);
    switch (cursor.state) {
        case SnapshotCursor::State::NotStarted:
            drawing.text({at.x + 40, at.y + 17}, "not started", "start", faint, 13);
            break;
        case SnapshotCursor::State::Exhausted:
            drawing.text({at.x + 40, at.y + 17}, "exhausted", "start", faint, 13);
            break;
        case SnapshotCursor::State::UnderWay:
            for (std::size_t i = 0; i < cursor.values.size(); ++i) {
                const bool isHere = i == cursor.index;
                drawing.cell({at.x + 40 + 38 * static_cast<int>(i), at.y}, 32, cursor.values[i],
                             isHere ? currentFill : cellFill, isHere ? currentInk : enteredInk,
                             false);
            }
            break;
    }
}

void drawState(Drawing& drawing, const WalkSnapshot& walk, bool isDepthFirst) {
    constexpr int left = 300;
    constexpr int cursors = 430;
    drawing.text({left, 74}, "Frontier", "start", ink, 14, true);
    drawing.text({left, 91}, isDepthFirst ? "a stack, top first" : "a queue, front first", "start",
                 faint, 12);
    drawing.text({cursors, 74}, isDepthFirst ? "Path" : "Cursor", "start", ink, 14, true);
    drawing.text({cursors, 91},
                 isDepthFirst ? "cursors over the targets; orange: the value given last"
                              : "of the front's target; orange: the value given last",
                 "start", faint, 12);
    int y = 102;
    for (const SnapshotPlace& place : walk.frontier) {
        drawing.cell({left, y}, 84, textOf(place.link), cellFill, ink, !place.cascades);
        if (!place.cursor.empty()) {
            drawCursor(drawing, {cursors, y}, place.cursor.front(), place.link.target);
        } else {
            drawing.text({cursors, y + 17},
                         place.cascades ? "waits" : "waits, and will not cascade", "start", faint,
                         13);
        }
        y += 32;
    }

    drawing.text({left, 264}, "Entered", "start", ink, 14, true);
    drawing.text({left, 281}, "a bit for each element, by its number", "start", faint, 12);
    int x = left;
    for (const auto& [name, at] : places) {
        if (name.empty()) continue;
        const bool isEntered = walk.hasEntered(name);
        drawing.cell({x, 292}, 34, isEntered ? "1" : "0", isEntered ? enteredFill : paper,
                     isEntered ? enteredInk : faint, !isEntered);
        drawing.text({x + 17, 332}, name, "middle", isEntered ? ink : faint, 13);
        x += 38;
    }
}

std::string draw(const std::string& order, traversal::Algo algo) {
    const DrawnModel small;
    const auto result = traversal::Spec::subtractiveTraversal()->run({small.a}, algo);
    const SnapshotLink middle{"B", "D"};
    std::vector<SnapshotLink> reported;
    auto walk = result->begin();
    for (; !!walk.getCurrent(); walk.advance()) {
        reported.push_back(linkOf(walk.getCurrent()));
        if (reported.back() == middle) break;
    }
    const bool isDepthFirst = algo != traversal::Algo::BreadthFirst;
    const WalkSnapshot snapshot = snapshotOf(walk, isDepthFirst, small.elements());
    Drawing drawing;
    drawing.text({24, 32}, order + ", standing on " + textOf(snapshot.current), "start", ink, 17,
                 true);
    drawModel(drawing, snapshot, reported);
    drawState(drawing, snapshot, isDepthFirst);
    return drawing.svg("A walk in mid-way: " + order);
}

void write(const std::string& path, const std::string& content) {
    std::ofstream out(path, std::ios::binary);
    if (!(out << content).flush()) throw std::runtime_error("Cannot write " + path);
}

}  // namespace
}  // namespace nuv::zero::readme

int main(int argc, char** argv) {
    using nuv::zero::traversal::Algo;
    if (argc != 2) {
        std::cerr << "usage: draw_walks <folder>\n";
        return 2;
    }
    try {
        const std::string folder = std::string(argv[1]) + "/";
        using namespace nuv::zero::readme;
        write(folder + "walk-pre-order.svg", draw("Pre-order", Algo::DepthFirstPreOrder));
        write(folder + "walk-post-order.svg", draw("Post-order", Algo::DepthFirstPostOrder));
        write(folder + "walk-breadth-first.svg", draw("Breadth-first", Algo::BreadthFirst));
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
    return 0;
}
