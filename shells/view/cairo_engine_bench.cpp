#include <shells/view/cairo_engine.h>

#include <cmath>
#include <memory>
#include <numbers>
#include <string>

#include <benchmark/benchmark.h>
#include <cairo-svg.h>

#include <korvolib/graphicstream/binary_writer.h>
#include <korvolib/graphicstream/to_svg.h>
#include <shells/view/pixels_test_internal.h>

namespace {

using namespace kvKorvo::kvGS;
using namespace kvViewTest;
using kvKorvo::KURect;

constexpr int kControls = 40;

// A window of knobs: ground, arc, pointer and label each. The same picture by the stream and by Cairo itself.

void RecordWindow(KCGraphicStreamBinaryWriter& writer) {
    writer.Font("DejaVu Sans", 10);
    for (int i = 0; i < kControls; ++i) {
        const auto x = static_cast<float>(10 + i % 10 * 60);
        const auto y = static_cast<float>(10 + i / 10 * 80);
        writer.DrawSolidRect({40, 44, 52, 255}, KURect<float>::FromEdges(x, y, x + 50, y + 70));
        writer.SetDrawColor({255, 160, 0, 255}).SetStrokeWidth(4).DrawArcLine({x + 5, y + 5, 40, 40}, 135, 200);
        writer.SetDrawColor({220, 220, 220, 200}).SetStrokeWidth(2).DrawLine({x + 25, y + 25}, {x + 25, y + 8});
        writer.DrawTheText("Gain", {x, y + 52, 50, 14}, kHCenter, kVCenter);
    }
}

void DrawWindow(cairo_t* cr) {
    cairo_select_font_face(cr, "DejaVu Sans", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(cr, 10);
    cairo_font_options_t* const options = cairo_font_options_create();
    cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
    cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
    cairo_set_font_options(cr, options);
    cairo_font_options_destroy(options);
    cairo_set_miter_limit(cr, 10);
    for (int i = 0; i < kControls; ++i) {
        const double x = 10 + i % 10 * 60;
        const double y = 10 + i / 10 * 80;
        cairo_set_source_rgba(cr, 40 / 255.0, 44 / 255.0, 52 / 255.0, 1);
        cairo_move_to(cr, x, y);
        cairo_line_to(cr, x + 50, y);
        cairo_line_to(cr, x + 50, y + 70);
        cairo_line_to(cr, x, y + 70);
        cairo_close_path(cr);
        cairo_fill(cr);
        cairo_set_source_rgba(cr, 1, 160 / 255.0, 0, 1);
        cairo_set_line_width(cr, 4);
        cairo_matrix_t matrix;
        cairo_get_matrix(cr, &matrix);
        cairo_translate(cr, x + 25, y + 25);
        cairo_scale(cr, 20, 20);
        cairo_new_sub_path(cr);
        cairo_arc(cr, 0, 0, 1, 135 * std::numbers::pi / 180, 335 * std::numbers::pi / 180);
        cairo_set_matrix(cr, &matrix);
        cairo_stroke(cr);
        cairo_set_source_rgba(cr, 220 / 255.0, 220 / 255.0, 220 / 255.0, 200 / 255.0);
        cairo_set_line_width(cr, 2);
        cairo_move_to(cr, x + 25, y + 25);
        cairo_line_to(cr, x + 25, y + 8);
        cairo_stroke(cr);
        cairo_text_extents_t extents;
        cairo_text_extents(cr, "Gain", &extents);
        cairo_move_to(cr, x + 25 - extents.x_advance / 2, y + 59 + 3.6);
        cairo_show_text(cr, "Gain");
        cairo_new_path(cr);
    }
}

void DrawKorvo(benchmark::State& state) {
    KCGraphicStreamBinaryWriter writer;
    RecordWindow(writer);
    const Surface surface = MakeSurface(620, 340);
    const Context context(cairo_create(surface.get()));
    KCCairoEngine engine;
    engine.SetTarget(context.get());
    for (auto _ : state)
        benchmark::DoNotOptimize(engine.ExecStream(writer));
}

void DrawCairo(benchmark::State& state) {
    const Surface surface = MakeSurface(620, 340);
    const Context context(cairo_create(surface.get()));
    for (auto _ : state) {
        cairo_save(context.get());
        DrawWindow(context.get());
        cairo_restore(context.get());
    }
}

void SvgKorvo(benchmark::State& state) {
    KCGraphicStreamBinaryWriter writer;
    RecordWindow(writer);
    KCGraphicStreamToSVG svg;
    for (auto _ : state)
        benchmark::DoNotOptimize(svg.ExecStream(writer));
}

cairo_status_t AppendText(void* text, const unsigned char* bytes, unsigned int count) {
    static_cast<std::string*>(text)->append(reinterpret_cast<const char*>(bytes), count);
    return CAIRO_STATUS_SUCCESS;
}

void SvgCairo(benchmark::State& state) {
    for (auto _ : state) {
        std::string text;
        {
            const Surface surface(cairo_svg_surface_create_for_stream(AppendText, &text, 620, 340));
            const Context context(cairo_create(surface.get()));
            DrawWindow(context.get());
        }
        benchmark::DoNotOptimize(text.data());
    }
}

constexpr int kCount = 1000;

template <class Draw>
void RecordByCairo(benchmark::State& state, Draw draw) {
    for (auto _ : state) {
        const Surface surface(cairo_recording_surface_create(CAIRO_CONTENT_COLOR_ALPHA, nullptr));
        const Context context(cairo_create(surface.get()));
        for (int i = 0; i < kCount; ++i)
            draw(context.get(), i);
    }
}

template <class Record>
void RecordByKorvo(benchmark::State& state, Record record) {
    KCGraphicStreamBinaryWriter writer;
    for (auto _ : state) {
        writer.ClearStream();
        for (int i = 0; i < kCount; ++i)
            record(writer, i);
        benchmark::ClobberMemory();
    }
}

void RectsKorvo(benchmark::State& state) {
    RecordByKorvo(state, [](KCGraphicStreamBinaryWriter& writer, int i) {
        writer.DrawSolidRect({1, 2, 3, 255}, KURect<short>::FromEdges(static_cast<short>(i), 2, 1030, 40));
    });
}
void RectsCairo(benchmark::State& state) {
    RecordByCairo(state, [](cairo_t* cr, int i) {
        cairo_set_source_rgba(cr, 1 / 255.0, 2 / 255.0, 3 / 255.0, 1);
        cairo_rectangle(cr, i, 2, 1030 - i, 38);
        cairo_fill(cr);
    });
}
void LinesKorvo(benchmark::State& state) {
    RecordByKorvo(state, [](KCGraphicStreamBinaryWriter& writer, int i) {
        writer.DrawLine({static_cast<float>(i), 1}, {2, 3});
    });
}
void LinesCairo(benchmark::State& state) {
    RecordByCairo(state, [](cairo_t* cr, int i) {
        cairo_move_to(cr, i, 1);
        cairo_line_to(cr, 2, 3);
        cairo_stroke(cr);
    });
}
void TextsKorvo(benchmark::State& state) {
    RecordByKorvo(state, [](KCGraphicStreamBinaryWriter& writer, int i) {
        writer.DrawTheText("Gain -12.5 dB", {static_cast<float>(i), 0, 100, 20});
    });
}
void TextsCairo(benchmark::State& state) {
    RecordByCairo(state, [](cairo_t* cr, int i) {
        cairo_move_to(cr, i, 12);
        cairo_show_text(cr, "Gain -12.5 dB");
    });
}

BENCHMARK(DrawKorvo)->Name("DrawStream/KorvoLib");
BENCHMARK(DrawCairo)->Name("DrawStream/Cairo");
BENCHMARK(SvgKorvo)->Name("StreamSVG/KorvoLib");
BENCHMARK(SvgCairo)->Name("StreamSVG/cairo-svg");
BENCHMARK(RectsKorvo)->Name("RecordRectsBesideCairo/KorvoLib");
BENCHMARK(RectsCairo)->Name("RecordRectsBesideCairo/recording surface");
BENCHMARK(LinesKorvo)->Name("RecordLinesBesideCairo/KorvoLib");
BENCHMARK(LinesCairo)->Name("RecordLinesBesideCairo/recording surface");
BENCHMARK(TextsKorvo)->Name("RecordTextsBesideCairo/KorvoLib");
BENCHMARK(TextsCairo)->Name("RecordTextsBesideCairo/recording surface");

} // namespace
