#include "benchmarks/Plot.h"

#include <algorithm>
#include <ostream>

#include "benchmarks/Format.h"

namespace nuv::zero::benchmarks {
namespace {

constexpr double labelWidth = 230;
constexpr double plotWidth = 520;
constexpr double rowHeight = 18;
constexpr double head = 56;
constexpr double foot = 34;

constexpr const char* barColour = "#4878a8";
constexpr const char* targetColour = "#c03028";
constexpr const char* nodeColour = "#888888";
constexpr const char* markColour = "#3a8a4a";

class Picture {
  public:
    Picture(std::ostream& out, double height, double greatest)
        : out_(out), height_(height), scale_(plotWidth / greatest), greatest_(greatest) {}

    double x(double ratio) const { return labelWidth + std::min(ratio, greatest_) * scale_; }
    double height() const { return height_; }

    void line(double x1, double y1, double x2, double y2, const char* colour, double width) {
        out_ << "<line x1='" << fixed(x1, 1) << "' y1='" << fixed(y1, 1) << "' x2='" << fixed(x2, 1)
             << "' y2='" << fixed(y2, 1) << "' stroke='" << colour << "' stroke-width='"
             << fixed(width, 1) << "'/>\n";
    }
    void bar(double x1, double y, double x2, const char* colour) {
        out_ << "<rect x='" << fixed(x1, 1) << "' y='" << fixed(y - 5, 1) << "' width='"
             << fixed(x2 - x1, 1) << "' height='10' fill='" << colour << "'/>\n";
    }
    void dot(double x, double y, const char* colour) {
        out_ << "<circle cx='" << fixed(x, 1) << "' cy='" << fixed(y, 1) << "' r='3' fill='"
             << colour << "'/>\n";
    }
    void text(double x, double y, const char* anchor, const std::string& text) {
        out_ << "<text x='" << fixed(x, 1) << "' y='" << fixed(y, 1) << "' text-anchor='" << anchor
             << "'>" << text << "</text>\n";
    }

  private:
    std::ostream& out_;
    double height_;
    double scale_;
    double greatest_;
};

void drawAxis(Picture& picture, double greatest) {
    const double bottom = picture.height() - foot;
    const auto halves = static_cast<int>(greatest * 2);
    for (int half = 0; half <= halves; ++half) {
        const double ratio = half / 2.0;
        const bool isBase = half == 2;
        picture.line(picture.x(ratio), head - 6, picture.x(ratio), bottom,
                     isBase ? "#000000" : "#dddddd", isBase ? 1.5 : 1);
        picture.text(picture.x(ratio), bottom + 14, "middle", fixed(ratio, 1));
    }
    picture.text(picture.x(greatest / 2), bottom + 29, "middle",
                 "time over the hand-written loop with a flat visited set (1.0)");
}

void drawKey(Picture& picture) {
    double x = labelWidth;
    const double y = 30;
    const auto entry = [&](const char* colour, const std::string& name, double width) {
        picture.dot(x, y - 4, colour);
        picture.text(x + 8, y, "start", name);
        x += width;
    };
    entry(barColour, "library, with range", 140);
    entry(targetColour, "its limit", 80);
    entry(nodeColour, "loop, std::unordered_set", 165);
    entry(markColour, "loop, mark in the element", 100);
}

void drawRow(Picture& picture, const WalkRow& row, double y) {
    picture.text(
        labelWidth - 8, y + 4, "end",
        row.shape + ", " + std::string(nameOf(row.kind)) + ", " + std::string(nameOf(row.order)));
    picture.bar(picture.x(0), y, picture.x(row.ratio.median), barColour);
    picture.line(picture.x(row.ratio.least), y, picture.x(row.ratio.greatest), y, "#182838", 1.5);
    const double limit = targetsOf(row).ratio;
    picture.line(picture.x(limit), y - 7, picture.x(limit), y + 7, targetColour, 2);
    picture.dot(picture.x(row.nodeRatio.median), y, nodeColour);
    picture.dot(picture.x(row.markRatio.median), y, markColour);
}

}  // namespace

void drawPlot(std::ostream& out, const std::vector<WalkRow>& rows) {
    double greatest = 4;
    for (const WalkRow& row : rows) greatest = std::max(greatest, row.ratio.greatest);
    greatest = std::min(greatest, 8.0);
    const double height = head + rowHeight * static_cast<double>(rows.size()) + foot;
    const double width = labelWidth + plotWidth + 30;
    out << "<svg xmlns='http://www.w3.org/2000/svg' width='" << fixed(width, 0) << "' height='"
        << fixed(height, 0) << "' viewBox='0 0 " << fixed(width, 0) << ' ' << fixed(height, 0)
        << "' font-family='sans-serif' font-size='11'>\n"
        << "<rect width='100%' height='100%' fill='#ffffff'/>\n";
    Picture picture(out, height, greatest);
    drawAxis(picture, greatest);
    drawKey(picture);
    double y = head + rowHeight / 2;
    for (const WalkRow& row : rows) {
        drawRow(picture, row, y);
        y += rowHeight;
    }
    out << "</svg>\n";
}

}  // namespace nuv::zero::benchmarks
