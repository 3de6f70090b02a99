#include "level_plot.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include <korvolib/graphicstream/struct_writers.h>

#include "plot_labels.h"
#include "text.h"

namespace kvKorvoV12_9_0_320::kvHost {
namespace {

using kvGS::KCGraphicStreamBinaryWriter;
using kvGS::SGSRGBAColor;

// In drawing units: pixels of a picture at its own scale.
constexpr double kWidth = 1100.0;
constexpr double kPlotLeft = 64.0;
constexpr double kPlotRight = kWidth - 24.0;
constexpr double kTitleHeight = 58.0; // title and legend
constexpr double kRowHeight = 16.0;   // one row of event labels
constexpr double kPlotHeight = 300.0;
constexpr double kFooterHeight = 52.0;
constexpr double kTitleSize = 15.0;
constexpr double kTextSize = 11.0;

constexpr double kBottomLevel = -72.0; // dB
constexpr double kHighestLevel = 48.0; // dB
constexpr double kLevelStep = 12.0;    // dB between the lines of the grid

constexpr const char* kFontFamily = "DejaVu Sans";
constexpr SGSRGBAColor kGroundColor{255, 255, 255, 255};
constexpr SGSRGBAColor kTitleColor{15, 23, 42, 255};
constexpr SGSRGBAColor kTextColor{51, 65, 85, 255};
constexpr SGSRGBAColor kAxisColor{100, 116, 139, 255};
constexpr SGSRGBAColor kGridColor{226, 232, 240, 255};
constexpr SGSRGBAColor kBeforeColor{154, 165, 177, 255};
constexpr SGSRGBAColor kAfterColor{194, 65, 12, 255};
constexpr SGSRGBAColor kEventColor{29, 78, 216, 255};
constexpr SGSRGBAColor kEventLineColor{29, 78, 216, 179};
constexpr uint16_t kWholeLine = 0xFFFF;
constexpr uint16_t kDashes = 0xF0F0;

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

// A thin straight line is sharp where it covers whole pixels.
double Sharp(double coordinate) { return std::floor(coordinate) + 0.5; }

class KCLevelPlotDrawing {
  public:
    KCLevelPlotDrawing(const sLEVEL_PLOT& plot, KCGraphicStreamBinaryWriter& writer)
        : m_plot(plot), m_writer(writer), m_numLevels(std::max(plot.before.size(), plot.after.size())),
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

    void Record() const {
        kvGS::SGSStream description;
        std::snprintf(description.name, sizeof description.name, "level plot");
        description.color = kGroundColor;
        description.logicalSize = {static_cast<float>(std::ceil(m_width)),
                                   static_cast<float>(std::ceil(m_bottom + kFooterHeight))};
        const kvGS::KCStGSStreamStructWriter stream(m_writer, description);
        m_writer.ActivateRemarks();
        Head();
        Axes();
        Curve("before", m_plot.before, kBeforeColor, 1.6);
        Curve("after", m_plot.after, kAfterColor, 1.8);
        Events();
    }

  private:
    double X(double seconds) const {
        return kPlotLeft + (kPlotRight - kPlotLeft) * std::clamp(seconds / m_seconds, 0.0, 1.0);
    }
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

    // Part of the picture with a name in the stream, and with the font of its texts.
    kvGS::KCStGSFrameStructWriter Part(const char* name, double left, double top, double right,
                                       double bottom) const {
        kvGS::SGSFrame rect;
        rect.x = static_cast<int32_t>(left);
        rect.y = static_cast<int32_t>(top);
        rect.width = static_cast<int32_t>(std::ceil(right - left));
        rect.height = static_cast<int32_t>(std::ceil(bottom - top));
        kvGS::KCStGSFrameStructWriter frame(m_writer, rect);
        m_writer.Remark(name).Font(kFontFamily, static_cast<float>(kTextSize));
        return frame;
    }

    void Line(double x1, double y1, double x2, double y2, SGSRGBAColor color, double width,
              uint16_t pattern = kWholeLine) const {
        m_writer.SetDrawColor(color).SetStrokeWidth(static_cast<float>(width)).SetStrokePattern(pattern);
        m_writer.DrawLine({static_cast<float>(x1), static_cast<float>(y1)},
                          {static_cast<float>(x2), static_cast<float>(y2)});
    }

    // `x` is where the text begins, has its middle or ends; the letters stand on `baseline`.
    void Text(double x, double baseline, const std::string& text, SGSRGBAColor color,
              uint32_t alignment = kvGS::kLeft, double height = kTextSize) const {
        const double width = 0.61 * height * static_cast<double>(TextWidth(text));
        const double share = alignment == kvGS::kLeft ? 0.0 : alignment == kvGS::kRight ? 1.0 : 0.5;
        m_writer.SetDrawColor(color).DrawTheText(text,
                                                 {static_cast<float>(x - share * width),
                                                  static_cast<float>(baseline - 0.93 * height),
                                                  static_cast<float>(width), static_cast<float>(1.17 * height)},
                                                 alignment, kvGS::kTop);
    }

    void Head() const {
        const auto part = Part("title and legend", kPlotLeft, 0.0, kPlotRight, kTitleHeight);
        m_writer.Font(kFontFamily, static_cast<float>(kTitleSize), kvGS::kBold);
        Text(kPlotLeft, 26.0, m_plot.title, kTitleColor, kvGS::kLeft, kTitleSize);
        m_writer.Font(kFontFamily, static_cast<float>(kTextSize));
        Key(0.0, "before", kBeforeColor, 3.0, kWholeLine);
        Key(92.0, "after", kAfterColor, 3.0, kWholeLine);
        if (!m_plot.events.empty())
            Key(174.0, "event of the session", kEventLineColor, 1.0, kDashes);
    }

    void Key(double offset, const char* text, SGSRGBAColor color, double width, uint16_t pattern) const {
        const double y = 45.5;
        Line(kPlotLeft + offset, y, kPlotLeft + offset + 24.0, y, color, width, pattern);
        Text(kPlotLeft + offset + 30.0, y + 4.0, text, kTextColor);
    }

    void Axes() const {
        const auto part = Part("axes", 0.0, m_top, m_width, m_bottom + kFooterHeight);
        const int numLines = static_cast<int>((m_topLevel - kBottomLevel) / kLevelStep) + 1;
        for (int line = 0; line < numLines; ++line) {
            const double level = m_topLevel - kLevelStep * line;
            Line(kPlotLeft, Sharp(Y(level)), kPlotRight, Sharp(Y(level)), kGridColor, 1.0);
            Text(kPlotLeft - 8.0, Y(level) + 4.0, NumberText(level), kTextColor, kvGS::kRight);
        }
        const double step = TickStep(m_seconds);
        for (int tick = 0; tick * step <= m_seconds * 1.000001; ++tick) {
            const double x = X(tick * step);
            Line(Sharp(x), m_bottom, Sharp(x), m_bottom + 5.0, kAxisColor, 1.0);
            Text(x, m_bottom + 19.0, TickText(tick * step, step), kTextColor, kvGS::kHCenter);
        }
        Line(kPlotLeft, Sharp(m_bottom), kPlotRight, Sharp(m_bottom), kAxisColor, 1.0);
        Text((kPlotLeft + kPlotRight) / 2.0, m_bottom + 40.0, "time in seconds", kTextColor, kvGS::kHCenter);
        m_writer.SetDrawColor(kTextColor);
        m_writer.SpecialText("level in dB of full scale (RMS)",
                             {-84.0f, static_cast<float>((m_top + m_bottom) / 2.0 - 8.0), 200.0f, 16.0f}, -90.0f);
    }

    static std::string TickText(double seconds, double step) {
        return FixedText(seconds, step >= 1.0 ? 0 : static_cast<int>(std::ceil(-std::log10(step))));
    }

    // Each level stands in the middle of the window that it was measured over.
    void Curve(const char* name, const std::vector<double>& levels, SGSRGBAColor color, double width) const {
        if (levels.empty())
            return;
        const auto part = Part(name, kPlotLeft, m_top, kPlotRight, m_bottom);
        kvGS::KCGSArrays& arrays = m_writer.GetGSArrays();
        arrays.ClearArrays();
        for (size_t i = 0; i < levels.size(); ++i)
            arrays.AddPoint_2Df(static_cast<float>(X((static_cast<double>(i) + 0.5) * m_plot.windowSeconds)),
                                static_cast<float>(Y(levels[i])));
        m_writer.SetDrawColor(color).SetStrokeWidth(static_cast<float>(width)).SetStrokePattern(kWholeLine);
        m_writer.DrawVertices(kvGS::kLineStrip, kvGS::kWire);
    }

    void Events() const {
        if (m_labels.empty())
            return;
        const auto part = Part("events of the session", kPlotLeft, kTitleHeight, m_width, m_bottom);
        double drawnX = -1.0; // events of one time share a line: the first, which begins highest
        for (const sPLOT_LABEL& label : m_labels) {
            const double y = kTitleHeight + kRowHeight * static_cast<double>(label.row) + 12.0;
            if (label.x != drawnX)
                Line(Sharp(label.x), label.isShown ? y - 10.0 : m_top, Sharp(label.x), m_bottom, kEventLineColor,
                     1.0, kDashes);
            drawnX = label.x;
            if (label.isShown)
                Text(label.x + 4.0, y, label.text, kEventColor);
        }
    }

    const sLEVEL_PLOT& m_plot;
    KCGraphicStreamBinaryWriter& m_writer;
    size_t m_numLevels;
    double m_topLevel;
    double m_seconds;
    std::vector<sPLOT_LABEL> m_labels;
    double m_width = kWidth;
    double m_top = 0.0;
    double m_bottom = 0.0;
};

} // namespace

void RecordLevelPlot(const sLEVEL_PLOT& plot, KCGraphicStreamBinaryWriter& writer) {
    KCLevelPlotDrawing(plot, writer).Record();
}

} // namespace kvKorvoV12_9_0_320::kvHost
