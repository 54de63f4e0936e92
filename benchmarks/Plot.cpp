#include "benchmarks/Plot.h"

#include <algorithm>
#include <ostream>
#include <string>
#include <string_view>

#include "benchmarks/Format.h"

namespace nuv::zero::benchmarks {
namespace {

constexpr double margin = 16;
constexpr double labelWidth = 196;
constexpr double barWidth = 220;
constexpr double numberWidth = 74;
constexpr double halfWidth = barWidth + numberWidth;
constexpr double width = 2 * margin + labelWidth + 2 * halfWidth;
constexpr double head = 66;
constexpr double rowHeight = 38;
constexpr double foot = 40;
constexpr double barHeight = 11;

/// Colours by class, so that one rule turns them all for dark pages.
constexpr std::string_view style =
    "<style>\n"
    "text{font:12px sans-serif;fill:#24292f}.small{font-size:11px;fill:#57606a}"
    ".head{font-weight:bold}.page{fill:#ffffff;stroke:#d0d7de}.grid{stroke:#d8dee4}"
    ".walk{fill:#2f6fb3}.loop{fill:#a8b1bb}.target{stroke:#c4321f;stroke-width:2.5}"
    ".missed{fill:#c4321f;font-weight:bold}\n"
    "@media(prefers-color-scheme:dark){text{fill:#e6edf3}.small{fill:#9aa4af}"
    ".page{fill:#0d1117;stroke:#30363d}.grid{stroke:#262c34}"
    ".walk{fill:#58a6ff}.loop{fill:#6e7781}.target{stroke:#ff8272}.missed{fill:#ff8272}}\n"
    "</style>\n";

class Picture {
  public:
    explicit Picture(std::ostream& out) : out_(out) {}

    void rect(std::string_view kind, double x, double y, double w, double h, double round = 0) {
        out_ << "<rect class='" << kind << "' x='" << fixed(x, 1) << "' y='" << fixed(y, 1)
             << "' width='" << fixed(w, 1) << "' height='" << fixed(h, 1) << "' rx='"
             << fixed(round, 0) << "'/>\n";
    }
    void upright(std::string_view kind, double x, double y1, double y2) {
        out_ << "<line class='" << kind << "' x1='" << fixed(x, 1) << "' y1='" << fixed(y1, 1)
             << "' x2='" << fixed(x, 1) << "' y2='" << fixed(y2, 1) << "'/>\n";
    }
    void text(std::string_view kind, double x, double y, std::string_view anchor,
              const std::string& text) {
        out_ << "<text class='" << kind << "' x='" << fixed(x, 1) << "' y='" << fixed(y, 1)
             << "' text-anchor='" << anchor << "'>" << text << "</text>\n";
    }

  private:
    std::ostream& out_;
};

/// One half of the picture, from `left` on.
class Half {
  public:
    Half(Picture& picture, double left, double greatest)
        : picture_(picture), left_(left), scale_(barWidth / greatest) {}

    /// Lines at round numbers, about four of them.
    void drawGrid(const std::string& title, double greatest, double bottom) {
        picture_.text("head", left_, head - 12, "start", title);
        double step = 10;
        while (greatest / step > 5) step *= step == 20 || step == 200 ? 2.5 : 2;
        for (double at = 0; at <= greatest; at += step) {
            picture_.upright("grid", x(at), head, bottom);
            picture_.text("small", x(at), bottom + 14, "middle", fixed(at, 0));
        }
    }

    void drawRow(const WalkRow* row, double top) {
        if (row == nullptr) return;
        const double library = row->walkPerLink.median;
        const double loop = row->flatPerLink.median;
        const double limit = targetsOf(*row).ratio;
        picture_.rect("walk", left_, top, library * scale_, barHeight, 1);
        picture_.rect("loop", left_, top + barHeight + 2, loop * scale_, barHeight, 1);
        picture_.upright("target", x(limit * loop), top - 3, top + barHeight + 3);
        const double end = std::max({library, loop, limit * loop});
        picture_.text(row->ratio.median <= limit ? "head" : "missed", x(end) + 8, top + 16, "start",
                      fixed(row->ratio.median, 2));
    }

  private:
    double x(double nanoseconds) const { return left_ + nanoseconds * scale_; }

    Picture& picture_;
    double left_;
    double scale_;
};

double greatestOf(const WalkRow* row) {
    if (row == nullptr) return 0;
    return std::max(row->walkPerLink.median,
                    row->flatPerLink.median * std::max(1.0, targetsOf(*row).ratio));
}

void drawKey(Picture& picture) {
    const double y = 26;
    double x = margin + labelWidth;
    const auto entry = [&](std::string_view kind, const std::string& name, double room) {
        if (kind == "target") {
            picture.upright(kind, x + 5, y - 10, y + 2);
        } else {
            picture.rect(kind, x, y - 9, 10, 10, 1);
        }
        picture.text("", x + 16, y, "start", name);
        x += room;
    };
    entry("walk", "library", 84);
    entry("loop", "hand-written loop with a flat set", 216);
    entry("target", "at most", 78);
    picture.text("head", x, y, "start", "0.00");
    picture.text("", x + 34, y, "start", "library over loop");
}

}  // namespace

void drawPlot(std::ostream& out, const std::vector<GroupSummary>& groups) {
    double greatest = 1;
    for (const GroupSummary& group : groups) {
        greatest = std::max({greatest, greatestOf(group.preOrder), greatestOf(group.breadthFirst)});
    }
    const double bottom = head + rowHeight * static_cast<double>(groups.size());
    const double height = bottom + foot;
    out << "<svg xmlns='http://www.w3.org/2000/svg' width='" << fixed(width, 0) << "' height='"
        << fixed(height, 0) << "' viewBox='0 0 " << fixed(width, 0) << ' ' << fixed(height, 0)
        << "'>\n"
        << style;
    Picture picture(out);
    picture.rect("page", 0.5, 0.5, width - 1, height - 1, 6);
    drawKey(picture);
    Half preOrder(picture, margin + labelWidth, greatest);
    Half breadthFirst(picture, margin + labelWidth + halfWidth, greatest);
    preOrder.drawGrid("pre-order", greatest, bottom);
    breadthFirst.drawGrid("breadth-first", greatest, bottom);
    double top = head + 8;
    for (const GroupSummary& group : groups) {
        picture.text("", margin + labelWidth - 10, top + 16, "end", group.group);
        preOrder.drawRow(group.preOrder, top);
        breadthFirst.drawRow(group.breadthFirst, top);
        top += rowHeight;
    }
    picture.text("small", margin + labelWidth + halfWidth, bottom + 31, "middle",
                 "nanoseconds per link");
    out << "</svg>\n";
}

}  // namespace nuv::zero::benchmarks
