// What a window adds to the work itself: one update of a parameter, and the records of its picture written by hand.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <numbers>
#include <string>
#include <string_view>

#include <korvolib/graphicstream/binary_writer.h>
#include <korvolib/graphicstream/struct_writers.h>
#include <korvolib/gui/x_cstandardgui.h>
#include <tests/support/second_thread.h>

namespace {

using namespace kvKorvo;
using namespace kvKorvo::kvGS;
using PluginViewManager::KCEventData;
using Writer = KCGraphicStreamBinaryWriter;

const kvTest::SecondThread g_secondThread;

constexpr int kColumns = 25, kKnobWidth = 60, kKnobHeight = 80;
constexpr float kWidth = 1500, kHeight = 4000;

// The first knob's parameter, and one for all others.
class BenchAlgorithm : public cALGORITHM {
  public:
    BenchAlgorithm() {
        for (const char* name : {"Gain", "Other"}) {
            sCONTROL_PARAM param;
            param.SetName(KCFixedString<127>(name));
            param.SetScaleLin(-24.0, 24.0, 0.01);
            AddParam(param);
        }
        FinishCreate();
    }
    double gain = 0.0;

  protected:
    BUFFER_HEADER* ApplyParamSelf(size_t index) override {
        gain = GetParamRealWorld(index);
        return nullptr;
    }
    BUFFER_HEADER* ApplyAlgSelf() override { return nullptr; }
    BUFFER_HEADER* InitAlgSelf() override { return nullptr; }
};

std::string WindowOfKnobs(int numKnobs) {
    std::string xml = "<GUI Width=\"1500\" Height=\"4000\"><Drawables><Drawable Rect=\"4 4 1492 3992\" "
                      "Color=\"#22252C\" FrameColor=\"#404550\"/></Drawables><Controls>";
    char knob[256];
    for (int i = 0; i < numKnobs; ++i) {
        std::snprintf(knob, sizeof knob,
                      "<Control Class=\"Knob\" Name=\"K%d\" Rect=\"%d %d %d %d\"><ParameterList>"
                      "<Parameter Name=\"%s\"/></ParameterList></Control>",
                      i, i % kColumns * kKnobWidth, i / kColumns * kKnobHeight, kKnobWidth, kKnobHeight,
                      i == 0 ? "Gain" : "Other");
        xml += knob;
    }
    return xml + "</Controls></GUI>";
}

// ---- The same records by hand
// --------------------------------------------------------------------------------------

constexpr SGSRGBAColor kGround{24, 26, 31, 255}, kPanel{34, 37, 44, 255}, kPanelFrame{64, 69, 80, 255},
    kTrack{19, 20, 24, 255}, kAccent{255, 170, 64, 255}, kBody{58, 63, 74, 255}, kBodyLight{84, 91, 106, 255},
    kText{222, 226, 234, 255}, kTextDim{140, 147, 161, 255}, kSelection{102, 178, 255, 255};

KURect<int> Frame(int x, int y, int width, int height) { return KURect<int>::FromOrigin({x, y}, {width, height}); }

void Clip(Writer& writer, const SGSRect& rect) { writer.SetAntialias(false).ClipRect(rect).SetAntialias(true); }

SGSStream Picture(uint64_t sequence, SGSRGBAColor ground) {
    SGSStream stream;
    std::memcpy(stream.name, "window", sizeof "window");
    stream.sequence = sequence;
    stream.logicalSize = {kWidth, kHeight};
    stream.color = ground;
    return stream;
}

SGSRect Square(float x, float y, float radius) { return {x - radius, y - radius, 2 * radius, 2 * radius}; }

void Panel(Writer& writer) {
    const KCStGSFrameStructWriter frame(writer, Frame(2, 2, 1496, 3996));
    Clip(writer, {2, 2, 1496, 3996});
    writer.DrawSolidRect(kPanel, KURect<float>::FromEdges(4, 4, 1496, 3996));
    writer.SetDrawColor(kPanelFrame).SetStrokeWidth(1);
    writer.DrawWireRect(kPanelFrame, KURect<float>::FromEdges(4, 4, 1496, 3996));
}

void Knob(Writer& writer, const cALGORITHM& algorithm, size_t index, int x, int y, bool isSelected) {
    const auto left = static_cast<float>(x), top = static_cast<float>(y);
    const double fraction = algorithm.GetParamState(index) / 1000.0;
    const double angle = 135.0 + 270.0 * fraction;
    const double middleX = x + 30.0, middleY = y + 40.0;
    const float cx = left + 30, cy = top + 40;
    const auto onCircle = [&](double radius) {
        const double radians = angle * std::numbers::pi / 180.0;
        return SGSLocation{static_cast<float>(middleX + radius * std::cos(radians)),
                           static_cast<float>(middleY + radius * std::sin(radians))};
    };
    KCFixedString<127> value;
    algorithm.GetParamValueString(index, value);
    const KCStGSFrameStructWriter frame(writer, Frame(x, y, kKnobWidth, kKnobHeight));
    writer.SetDrawColor(kTrack).SetStrokeWidth(3).DrawArcLine(Square(cx, cy, 24.5F), 135, 270);
    if (fraction != 0.5)
        writer.SetDrawColor(kAccent).DrawArcLine(Square(cx, cy, 24.5F), 270,
                                                 static_cast<float>(270.0 * (fraction - 0.5)));
    writer.SetDrawColor(kTrack).DrawOval(Square(cx, cy, 21));
    writer.SetDrawColor(kBody).DrawOval(Square(cx, cy, 20));
    writer.SetDrawColor(kBodyLight).SetStrokeWidth(1).DrawArcLine(Square(cx, cy, 19.5F), 200, 140);
    writer.SetDrawColor(kText).SetStrokeWidth(2.5F).DrawLine(onCircle(20 * 0.35), onCircle(20 - 1.5));
    writer.Font("DejaVu Sans", 10, kPlain).SetDrawColor(kTextDim);
    writer.DrawTheText(algorithm.GetParamName(index), {left, top, 60, 14}, kHCenter);
    writer.SetDrawColor(kText).DrawTheText(value, {left, top + 66, 60, 14}, kHCenter);
    if (isSelected)
        writer.SetStrokeWidth(1).DrawWireRect(kSelection, KURect<float>::FromEdges(left, top, left + 60, top + 80));
}

void FirstKnobAlone(Writer& writer, const cALGORITHM& algorithm, uint64_t sequence) {
    const KCStGSStreamStructWriter stream(writer, Picture(sequence, {0, 0, 0, 0}));
    const KCStGSFrameStructWriter frame(writer, Frame(0, 0, kKnobWidth, kKnobHeight));
    Clip(writer, {0, 0, kKnobWidth, kKnobHeight});
    writer.DrawSolidRect(kGround, KURect<float>::FromEdges(-1, -1, 61, 81));
    Panel(writer);
    Knob(writer, algorithm, 0, 0, 0, true);
}

void AllKnobs(Writer& writer, const cALGORITHM& algorithm, int numKnobs, uint64_t sequence) {
    const KCStGSStreamStructWriter stream(writer, Picture(sequence, kGround));
    Panel(writer);
    for (int i = 0; i < numKnobs; ++i) {
        const int x = i % kColumns * kKnobWidth, y = i / kColumns * kKnobHeight;
        const KCStGSFrameStructWriter frame(writer, Frame(x, y, kKnobWidth, kKnobHeight));
        Clip(writer, {static_cast<float>(x), static_cast<float>(y), kKnobWidth, kKnobHeight});
        Knob(writer, algorithm, i == 0 ? 0 : 1, x, y, false);
    }
}

// Settings that the first records would take over from what was written before.
void Prepare(Writer& writer) {
    writer.ClearStream();
    writer.SetStrokeWidth(1);
}

void RequireEqual(const Writer& window, const Writer& byHand) {
    if (window.GetStreamMemObj() == byHand.GetStreamMemObj())
        return;
    std::fputs("the peer does not record the window's picture\n", stderr);
    std::abort();
}

// ---- A drag
// --------------------------------------------------------------------------------------------------------

KCEventData At(double x, double y) {
    KCEventData event;
    event.position = {x, y};
    return event;
}

class Dragging {
  public:
    explicit Dragging(int numKnobs) {
        if (m_window.Create(m_algorithm, WindowOfKnobs(numKnobs).c_str()) != 0)
            std::abort();
        m_window.MouseDown(At(30, 40));
        m_window.MouseDrag(At(30, 20));
        Prepare(m_writer);
        m_window.Draw(m_writer);
    }
    ~Dragging() { m_window.Close(); }
    Dragging(const Dragging&) = delete;
    Dragging& operator=(const Dragging&) = delete;

    void Step() {
        m_isUp = !m_isUp;
        Prepare(m_writer);
        m_window.MouseDrag(At(30, m_isUp ? 15 : 20));
        m_window.DrawDirty(m_writer);
    }
    const Writer& GetWriter() const { return m_writer; }
    const cALGORITHM& GetAlgorithm() const { return m_algorithm; }

  private:
    BenchAlgorithm m_algorithm;
    CStandardGUI_X m_window;
    Writer m_writer;
    bool m_isUp = false;
};

void WindowDrag_KorvoLib(benchmark::State& state) {
    Dragging dragging(10);
    dragging.Step();
    Writer byHand;
    Prepare(byHand);
    FirstKnobAlone(byHand, dragging.GetAlgorithm(), 1);
    RequireEqual(dragging.GetWriter(), byHand);
    for (auto _ : state)
        dragging.Step();
}
BENCHMARK(WindowDrag_KorvoLib)->Name("WindowDrag/KorvoLib");

void WindowDrag_ByHand(benchmark::State& state) {
    double states[2]; // that the drag gives
    {
        Dragging dragging(10);
        for (double& each : states) {
            dragging.Step();
            each = dragging.GetAlgorithm().GetParamState(0);
        }
    }
    BenchAlgorithm algorithm;
    Writer writer;
    bool isUp = false;
    uint64_t sequence = 0;
    for (auto _ : state) {
        isUp = !isUp;
        cALGORITHM::BUFFER_HEADER* chain = algorithm.UpdateParamRequestState(0, states[isUp ? 0 : 1]);
        algorithm.ExecuteAndDisposeBuffer(chain);
        Prepare(writer);
        FirstKnobAlone(writer, algorithm, ++sequence);
        benchmark::DoNotOptimize(writer.GetStreamMemObj().GetData());
    }
}
BENCHMARK(WindowDrag_ByHand)->Name("WindowDrag/update and records");

void WindowDragAmong_1000(benchmark::State& state) {
    Dragging dragging(1000);
    for (auto _ : state)
        dragging.Step();
}
BENCHMARK(WindowDragAmong_1000)->Name("WindowDragAmong1000/KorvoLib");
void WindowDragAmong_10(benchmark::State& state) {
    Dragging dragging(10);
    for (auto _ : state)
        dragging.Step();
}
BENCHMARK(WindowDragAmong_10)->Name("WindowDragAmong1000/ten");

// ---- A whole window
// ------------------------------------------------------------------------------------------------

constexpr int kKnobsOfWhole = 40;

void WindowDraw_KorvoLib(benchmark::State& state) {
    BenchAlgorithm algorithm;
    CStandardGUI_X window;
    window.Create(algorithm, WindowOfKnobs(kKnobsOfWhole).c_str());
    Writer writer, byHand;
    Prepare(writer);
    window.Draw(writer);
    Prepare(byHand);
    AllKnobs(byHand, algorithm, kKnobsOfWhole, 0);
    RequireEqual(writer, byHand);
    for (auto _ : state) {
        Prepare(writer);
        window.Draw(writer);
    }
}
BENCHMARK(WindowDraw_KorvoLib)->Name("WindowDraw/KorvoLib");

void WindowDraw_ByHand(benchmark::State& state) {
    const BenchAlgorithm algorithm;
    Writer writer;
    uint64_t sequence = 0;
    for (auto _ : state) {
        Prepare(writer);
        AllKnobs(writer, algorithm, kKnobsOfWhole, ++sequence);
        benchmark::DoNotOptimize(writer.GetStreamMemObj().GetData());
    }
}
BENCHMARK(WindowDraw_ByHand)->Name("WindowDraw/records");

} // namespace
