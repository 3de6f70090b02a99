#include <korvolib/graphicstream/binary_writer.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string_view>

#include <benchmark/benchmark.h>

namespace {

using namespace kvKorvo::kvGS;
using kvKorvo::KURect;

constexpr int kCount = 1000;

// Writes the same bytes with nothing around them: no block that grows, no settings, all compiled in.
class BumpWriter {
  public:
    BumpWriter() : m_block(new uint8_t[kCount * 256]), m_at(m_block.get()) {}

    void Clear() { m_at = m_block.get(); }
    std::string_view Bytes() const {
        return {reinterpret_cast<const char*>(m_block.get()), static_cast<size_t>(m_at - m_block.get())};
    }
    template <class... Fields>
    void Put(const Fields&... fields) {
        ((std::memcpy(m_at, &fields, sizeof fields), m_at += sizeof fields), ...);
    }
    void PutBytes(const void* bytes, size_t size) {
        std::memcpy(m_at, bytes, size);
        m_at += size;
    }

  private:
    std::unique_ptr<uint8_t[]> m_block;
    uint8_t* m_at;
};

void Rects(KCGraphicStreamBinaryWriter& writer) {
    for (short i = 0; i < kCount; ++i)
        writer.DrawSolidRect({1, 2, 3, 255}, KURect<short>::FromEdges(i, 2, 30, 40));
}
void Rects(BumpWriter& writer) {
    for (short i = 0; i < kCount; ++i) {
        writer.Put(uint32_t{kDataHere}, uint32_t{36}, uint32_t{kPoint2D}, uint32_t{kInt16}, uint32_t{8}, i,
                   short{2}, short{30}, short{2}, short{30}, short{40}, i, short{40}, uint32_t{kDrawVertices},
                   uint32_t{32}, uint32_t{kAntialias}, SGSRGBAColor{1, 2, 3, 255}, 1.0F, uint16_t{0xFFFF}, kSolid,
                   uint32_t{kPolygon}, uint32_t{4});
    }
}

void Lines(KCGraphicStreamBinaryWriter& writer) {
    for (int i = 0; i < kCount; ++i)
        writer.DrawLine({static_cast<float>(i), 1}, {2, 3});
}
void Lines(BumpWriter& writer) {
    for (int i = 0; i < kCount; ++i) {
        writer.Put(uint32_t{kDataHere}, uint32_t{36}, uint32_t{kPoint2D}, uint32_t{kFloat}, uint32_t{4},
                   static_cast<float>(i), 1.0F, 2.0F, 3.0F, uint32_t{kDrawVertices}, uint32_t{32},
                   uint32_t{kAntialias}, SGSRGBAColor{0, 0, 0, 255}, 1.0F, uint16_t{0xFFFF}, kWire,
                   uint32_t{kStraightLines}, uint32_t{2});
    }
}

constexpr std::string_view kLabel = "Gain -12.5 dB";

void Texts(KCGraphicStreamBinaryWriter& writer) {
    for (int i = 0; i < kCount; ++i)
        writer.DrawTheText(kLabel, {static_cast<float>(i), 0, 100, 20});
}
void Texts(BumpWriter& writer) {
    for (int i = 0; i < kCount; ++i) {
        std::string_view label = kLabel;
        benchmark::DoNotOptimize(label); // its length is not known beforehand
        const auto size = static_cast<uint32_t>(label.size());
        writer.Put(uint32_t{kDataHere}, 20 + size, uint32_t{kText}, uint32_t{kChar}, size);
        writer.PutBytes(label.data(), size);
        writer.Put(uint32_t{kDrawText}, uint32_t{60}, uint32_t{kAntialias}, SGSRGBAColor{0, 0, 0, 255},
                   uint32_t{kLeft}, uint32_t{kVCenter}, SGSRect{static_cast<float>(i), 0, 100, 20}, SGSRect(),
                   0.0F);
    }
}

// A peer that writes other bytes would prove nothing.
template <class Record>
void RequireSameBytes(Record record) {
    KCGraphicStreamBinaryWriter writer;
    BumpWriter bump;
    record(writer);
    record(bump);
    if (writer.GetStreamMemObj().GetText() != bump.Bytes()) {
        std::fputs("the peer writes other bytes\n", stderr);
        std::abort();
    }
}

template <class Writer, class Record>
void Measure(benchmark::State& state, Record record) {
    RequireSameBytes(record);
    Writer writer;
    record(writer);
    for (auto _ : state) {
        if constexpr (std::is_same_v<Writer, BumpWriter>)
            writer.Clear();
        else
            writer.ClearStream();
        record(writer);
        benchmark::ClobberMemory();
    }
}

constexpr auto kRects = [](auto& writer) { Rects(writer); };
constexpr auto kLines = [](auto& writer) { Lines(writer); };
constexpr auto kTexts = [](auto& writer) { Texts(writer); };

void RectsKorvo(benchmark::State& state) { Measure<KCGraphicStreamBinaryWriter>(state, kRects); }
void RectsBump(benchmark::State& state) { Measure<BumpWriter>(state, kRects); }
void LinesKorvo(benchmark::State& state) { Measure<KCGraphicStreamBinaryWriter>(state, kLines); }
void LinesBump(benchmark::State& state) { Measure<BumpWriter>(state, kLines); }
void TextsKorvo(benchmark::State& state) { Measure<KCGraphicStreamBinaryWriter>(state, kTexts); }
void TextsBump(benchmark::State& state) { Measure<BumpWriter>(state, kTexts); }

BENCHMARK(RectsKorvo)->Name("RecordRects/KorvoLib");
BENCHMARK(RectsBump)->Name("RecordRects/bump pointer");
BENCHMARK(LinesKorvo)->Name("RecordLines/KorvoLib");
BENCHMARK(LinesBump)->Name("RecordLines/bump pointer");
BENCHMARK(TextsKorvo)->Name("RecordTexts/KorvoLib");
BENCHMARK(TextsBump)->Name("RecordTexts/bump pointer");

} // namespace
