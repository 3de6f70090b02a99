#include <korvolib/graphicstream/engine_base.h>

#include <cstring>

#include <benchmark/benchmark.h>

#include <korvolib/graphicstream/binary_writer.h>

using namespace kvKorvo::kvGS;

// The peer: a switch over the same codes with one virtual call each, and nothing checked. Outside the unnamed
// namespace, where the compiler would see that there is one class of handlers only, and leave the calls out.
namespace kvGSBench {

class Handlers {
  public:
    virtual ~Handlers() = default;
#define HANDLER(identifier, display, shortName, code, record, tail)                                                \
    virtual int32_t On##identifier(const uint8_t*) = 0;
    KV_GS_COMMANDS(HANDLER)
#undef HANDLER
};
class NullHandlers final : public Handlers {
#define NOTHING(identifier, display, shortName, code, record, tail)                                                \
    int32_t On##identifier(const uint8_t*) override { return 0; }
    KV_GS_COMMANDS(NOTHING)
#undef NOTHING
};

} // namespace kvGSBench

namespace {

using namespace kvGSBench;

void Record(KCGraphicStreamBinaryWriter& writer) {
    for (short i = 0; i < 250; ++i) {
        writer.OpenFrame(SGSFrame()).ClipRect({0, 0, 50, 50});
        writer.DrawSolidRect({1, 2, 3, 255}, kvKorvo::KURect<short>::FromEdges(i, 2, 30, 40));
        writer.DrawTheText("Gain", {0, 0, 50, 20}).DrawOval({0, 0, 40, 40}).CloseFrame();
    }
}

class NullEngine final : public KCGraphicStreamEngineBase {
#define NOTHING(identifier, display, shortName, code, record, tail)                                                \
    int32_t Exec##identifier(KCGSRecord<record>) override { return 0; }
    KV_GS_COMMANDS(NOTHING)
#undef NOTHING
    int32_t ExecUnknown(KCGSRecord<SGSHeader>) override { return 0; }
};

void WalkKorvo(benchmark::State& state) {
    KCGraphicStreamBinaryWriter writer;
    Record(writer);
    NullEngine engine;
    for (auto _ : state)
        benchmark::DoNotOptimize(engine.ExecStream(writer));
}

int32_t BareWalk(Handlers& handlers, const uint8_t* at, const uint8_t* end) {
    while (at != end) {
        SGSHeader header;
        std::memcpy(&header, at, sizeof header);
        int32_t result = 0;
        switch (header.code) {
#define CASE(identifier, display, shortName, value, record, tail)                                                  \
    case k##identifier:                                                                                            \
        result = handlers.On##identifier(at);                                                                      \
        break;
            KV_GS_COMMANDS(CASE)
#undef CASE
        default:
            break;
        }
        if (result != 0)
            return result;
        at += header.size;
    }
    return 0;
}

void WalkBare(benchmark::State& state) {
    KCGraphicStreamBinaryWriter writer;
    Record(writer);
    const auto bytes = writer.GetStreamMemObj().GetBytes();
    NullHandlers own;
    Handlers* handlers = &own;
    for (auto _ : state) {
        benchmark::DoNotOptimize(handlers); // of which class it is stays unknown
        benchmark::DoNotOptimize(BareWalk(*handlers, bytes.data(), bytes.data() + bytes.size()));
    }
}

BENCHMARK(WalkKorvo)->Name("StreamWalk/KorvoLib");
BENCHMARK(WalkBare)->Name("StreamWalk/bare switch");

} // namespace
