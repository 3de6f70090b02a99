#include "level_plot.h"

#include <algorithm>
#include <cmath>

#include "plot_labels.h"
#include "text.h"

namespace kvKorvoV12_9_0_320::kvHost {
namespace {

constexpr double kWidth = 1100.0;
constexpr double kLeft = 64.0;
constexpr double kRight = kWidth - 24.0;
constexpr double kTitleHeight = 58.0; // title and legend
constexpr double kRowHeight = 16.0;   // one row of event labels
constexpr double kPlotHeight = 300.0;
constexpr double kFooterHeight = 52.0;
constexpr double kBottomLevel = -72.0; // dB
constexpr double kHighestLevel = 48.0; // dB
constexpr double kLevelStep = 12.0;    // dB between the lines of the grid

constexpr const char* kBeforeColor = "#9aa5b1";
constexpr const char* kAfterColor = "#c2410c";
constexpr const char* kEventColor = "#1d4ed8";

std::string Escaped(const std::string& text) {
    std::string escaped;
    for (const char c : text) {
        switch (c) {
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '&':
            escaped += "&amp;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        default:
            escaped += static_cast<unsigned char>(c) < 0x20 ? ' ' : c;
        }
    }
    return escaped;
}

std::string Px(double pixels) { return FixedText(pixels, 1); }

std::string Line(double x1, double y1, double x2, double y2, const std::string& look) {
    return "<line x1=\"" + Px(x1) + "\" y1=\"" + Px(y1) + "\" x2=\"" + Px(x2) + "\" y2=\"" + Px(y2) + "\" " + look +
           "/>\n";
}

std::string Text(double x, double y, const std::string& text, const std::string& look) {
    return "<text x=\"" + Px(x) + "\" y=\"" + Px(y) + "\" " + look + ">" + Escaped(text) + "</text>\n";
}

std::string Shortened(const std::string& text) {
    constexpr size_t kLongestLabel = 44;
    if (text.size() <= kLongestLabel)
        return text;
    size_t end = kLongestLabel;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) // not within a character
        --end;
    return text.substr(0, end) + "…";
}

// 1, 2 or 5 times a power of ten: the first that makes at most twelve parts of the length.
double TickStep(double length) {
    for (double power = 0.001;; power *= 10.0)
        for (const double factor : {1.0, 2.0, 5.0})
            if (length <= 12.0 * power * factor)
                return power * factor;
}

class KCLevelPlotDrawing {
  public:
    explicit KCLevelPlotDrawing(const sLEVEL_PLOT& plot)
        : m_plot(plot), m_numLevels(std::max(plot.before.size(), plot.after.size())),
          m_topLevel(TopLevel(plot.before, plot.after)),
          m_seconds(std::max(plot.windowSeconds * static_cast<double>(m_numLevels), plot.windowSeconds)) {
        for (const sPLOT_EVENT& event : plot.events)
            m_labels.push_back({X(event.atSeconds), Shortened(event.label)});
        const size_t numRows = PlaceLabels(m_labels);
        m_top = kTitleHeight + kRowHeight * static_cast<double>(numRows) + 6.0;
        m_bottom = m_top + kPlotHeight;
        for (const sPLOT_LABEL& label : m_labels)
            m_width = std::max(m_width, label.isShown ? LabelEnd(label) + 8.0 : 0.0);
    }

    std::string Draw() const {
        return Head() + Grid() + Curve(m_plot.before, kBeforeColor, 1.6) + Curve(m_plot.after, kAfterColor, 1.8) +
               Events() + "</svg>\n";
    }

  private:
    double X(double seconds) const { return kLeft + (kRight - kLeft) * std::clamp(seconds / m_seconds, 0.0, 1.0); }
    double Y(double level) const {
        const double down = m_topLevel - std::clamp(level, kBottomLevel, m_topLevel);
        return m_top + kPlotHeight * down / (m_topLevel - kBottomLevel);
    }

    // 0 dB, or the line of the grid above the loudest level.
    static double TopLevel(const std::vector<double>& before, const std::vector<double>& after) {
        double loudest = 0.0;
        for (const std::vector<double>& levels : {before, after})
            for (const double level : levels)
                loudest = std::max(loudest, level);
        return std::min(std::ceil(loudest / kLevelStep) * kLevelStep, kHighestLevel);
    }

    std::string Head() const {
        const std::string width = Px(m_width);
        const std::string height = Px(m_bottom + kFooterHeight);
        return "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + width + "\" height=\"" + height +
               "\" viewBox=\"0 0 " + width + " " + height +
               "\" font-family=\"DejaVu Sans, Helvetica, Arial, sans-serif\" font-size=\"11\" fill=\"#334155\">\n"
               "<rect width=\"100%\" height=\"100%\" fill=\"#ffffff\"/>\n" +
               Text(kLeft, 26.0, m_plot.title, "font-size=\"15\" font-weight=\"bold\" fill=\"#0f172a\"") + Legend();
    }

    std::string Legend() const {
        const double y = 45.0;
        std::string legend =
            Line(kLeft, y, kLeft + 24.0, y, Stroke(kBeforeColor, 3.0)) + Text(kLeft + 30.0, y + 4.0, "before", "");
        legend += Line(kLeft + 92.0, y, kLeft + 116.0, y, Stroke(kAfterColor, 3.0)) +
                  Text(kLeft + 122.0, y + 4.0, "after", "");
        if (!m_plot.events.empty())
            legend += Line(kLeft + 174.0, y, kLeft + 198.0, y, EventStroke()) +
                      Text(kLeft + 204.0, y + 4.0, "event of the session", "");
        return legend;
    }

    std::string Grid() const {
        std::string grid;
        const int numLines = static_cast<int>((m_topLevel - kBottomLevel) / kLevelStep) + 1;
        for (int line = 0; line < numLines; ++line) {
            const double level = m_topLevel - kLevelStep * line;
            grid += Line(kLeft, Y(level), kRight, Y(level), Stroke("#e2e8f0", 1.0)) +
                    Text(kLeft - 8.0, Y(level) + 4.0, NumberText(level), "text-anchor=\"end\"");
        }
        const double step = TickStep(m_seconds);
        for (int tick = 0; tick * step <= m_seconds * 1.000001; ++tick)
            grid += Line(X(tick * step), m_bottom, X(tick * step), m_bottom + 5.0, Stroke("#64748b", 1.0)) +
                    Text(X(tick * step), m_bottom + 19.0, TickText(tick * step, step), "text-anchor=\"middle\"");
        grid += Line(kLeft, m_bottom, kRight, m_bottom, Stroke("#64748b", 1.0));
        grid += Text((kLeft + kRight) / 2.0, m_bottom + 40.0, "time in seconds", "text-anchor=\"middle\"");
        const std::string y = Px((m_top + m_bottom) / 2.0);
        return grid + "<text x=\"20.0\" y=\"" + y + "\" text-anchor=\"middle\" transform=\"rotate(-90 20.0 " + y +
               ")\">level in dB of full scale (RMS)</text>\n";
    }

    static std::string TickText(double seconds, double step) {
        return FixedText(seconds, step >= 1.0 ? 0 : static_cast<int>(std::ceil(-std::log10(step))));
    }

    // Each level stands in the middle of the window that it was measured over.
    std::string Curve(const std::vector<double>& levels, const char* color, double width) const {
        if (levels.empty())
            return {};
        std::string points;
        for (size_t i = 0; i < levels.size(); ++i) {
            points += i > 0 ? " " : "";
            points += Px(X((static_cast<double>(i) + 0.5) * m_plot.windowSeconds)) + "," + Px(Y(levels[i]));
        }
        return "<polyline points=\"" + points + "\" fill=\"none\" stroke-linejoin=\"round\" " +
               Stroke(color, width) + "/>\n";
    }

    std::string Events() const {
        std::string events;
        double drawnX = -1.0; // events of one time share a line: the first, which begins highest
        for (const sPLOT_LABEL& label : m_labels) {
            const double y = kTitleHeight + kRowHeight * static_cast<double>(label.row) + 12.0;
            if (label.x != drawnX)
                events += Line(label.x, label.isShown ? y - 10.0 : m_top, label.x, m_bottom, EventStroke());
            drawnX = label.x;
            if (label.isShown)
                events += Text(label.x + 4.0, y, label.text, std::string("fill=\"") + kEventColor + "\"");
        }
        return events;
    }

    static std::string Stroke(const char* color, double width) {
        return std::string("stroke=\"") + color + "\" stroke-width=\"" + Px(width) + "\"";
    }
    static std::string EventStroke() {
        return Stroke(kEventColor, 1.0) + " stroke-dasharray=\"3 3\" stroke-opacity=\"0.7\"";
    }

    const sLEVEL_PLOT& m_plot;
    size_t m_numLevels;
    double m_topLevel;
    double m_seconds;
    std::vector<sPLOT_LABEL> m_labels;
    double m_width = kWidth;
    double m_top = 0.0;
    double m_bottom = 0.0;
};

} // namespace

std::string LevelPlotSvg(const sLEVEL_PLOT& plot) { return KCLevelPlotDrawing(plot).Draw(); }

} // namespace kvKorvoV12_9_0_320::kvHost
