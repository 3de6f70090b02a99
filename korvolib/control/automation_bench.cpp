#include <korvolib/control/automation_manager.h>

#include <array>
#include <unordered_map>

#include <benchmark/benchmark.h>

#include <korvolib/control/midi_value.h>

#include <tests/support/bench_algorithm.h>
#include <tests/support/second_thread.h>

namespace {

using namespace kvKorvo;

const kvTest::SecondThread g_secondThread;

class ManyControls : public kvTest::BenchAlgorithm {
  public:
    explicit ManyControls(size_t numParams, size_t numControls = 0) : kvTest::BenchAlgorithm(numParams, 500.0) {
        for (size_t i = 0; i < numControls; ++i)
            Add({i % numParams});
    }
    KCAutomationControl& Add(std::initializer_list<size_t> params) {
        auto control = std::make_unique<KCAutomationControl>();
        for (const size_t param : params)
            control->Register(this, param, KCRegisterInfo(kRegister_Controller));
        KCAutomationControl& added = *control;
        GetAutomationManager()->AddNewAutomationControl(std::move(control));
        return added;
    }
};

// ---- Matching: the next of a run of events, hits (attached) or misses
// ------------------------------------------------

constexpr size_t kNumAttached = 128;
using Events = std::array<kvMIDI::KorvoMidiEvent, 1024>;

// Controllers are attached as control changes 0 … 127; misses are notes.
Events SomeEvents(bool isHit) {
    Events events;
    for (size_t i = 0; i < events.size(); ++i)
        events[i] = {static_cast<uint8_t>(isHit ? 0xB0 : 0x90), static_cast<uint8_t>(i * 37 % 128), 64};
    return events;
}

void Match_KorvoLib(benchmark::State& state, size_t numControls, bool isHit) {
    ManyControls algorithm(128, numControls);
    KCAutomationManager& manager = *algorithm.GetAutomationManager();
    for (size_t i = 0; i < kNumAttached; ++i)
        manager.AttachMIDIToLearnMode(4, static_cast<int32_t>(i), i * (numControls / kNumAttached));
    const Events events = SomeEvents(isHit);
    for (auto _ : state)
        for (const kvMIDI::KorvoMidiEvent& event : events)
            benchmark::DoNotOptimize(manager.FirstMIDIEventControl(event));
}
BENCHMARK_CAPTURE(Match_KorvoLib, Hit, 128, true)->Name("MidiMatch128Hit/KorvoLib");
BENCHMARK_CAPTURE(Match_KorvoLib, Miss, 128, false)->Name("MidiMatch128Miss/KorvoLib");
BENCHMARK_CAPTURE(Match_KorvoLib, Few, 128, true)->Name("MidiMatchAmong10000/Attached only");
BENCHMARK_CAPTURE(Match_KorvoLib, Among, 10000, true)->Name("MidiMatchAmong10000/KorvoLib");

void Match_Map(benchmark::State& state, bool isHit) {
    std::unordered_map<uint32_t, size_t> controls;
    const auto key = [](const kvMIDI::KorvoMidiEvent& event) {
        return static_cast<uint32_t>(event.GetEventType()) << 8 |
               static_cast<uint32_t>(kvMIDI::ControllerNumber(event));
    };
    for (const kvMIDI::KorvoMidiEvent& event : SomeEvents(true))
        controls.try_emplace(key(event), controls.size());
    const Events events = SomeEvents(isHit);
    for (auto _ : state)
        for (const kvMIDI::KorvoMidiEvent& event : events)
            benchmark::DoNotOptimize(controls.find(key(event)));
}
BENCHMARK_CAPTURE(Match_Map, Hit, true)->Name("MidiMatch128Hit/unordered_map");
BENCHMARK_CAPTURE(Match_Map, Miss, false)->Name("MidiMatch128Miss/unordered_map");

// ---- Values: a lead and three followers, beside the same four updates one by one
// -----------------------------------------

void SetControllerValue_KorvoLib(benchmark::State& state) {
    ManyControls algorithm(4);
    KCAutomationControl& control = algorithm.Add({0, 1, 2, 3});
    double value = 500.0;
    const KCAlgorithmLock lock(algorithm);
    for (auto _ : state) {
        value = value == 500.0 ? 510.0 : 500.0;
        benchmark::DoNotOptimize(control.SetControllerValue(value));
    }
}
BENCHMARK(SetControllerValue_KorvoLib)->Name("SetControllerValue3Followers/KorvoLib");

// Of the same parameters, on the algorithm with that control, which hears of each update; and where nobody hears.
void SetControllerValue_Updates(benchmark::State& state, bool isHeard) {
    ManyControls algorithm(4);
    if (isHeard)
        algorithm.Add({0, 1, 2, 3});
    double value = 500.0;
    const KCAlgorithmLock lock(algorithm);
    for (auto _ : state) {
        value = value == 500.0 ? 510.0 : 500.0;
        for (size_t index = 0; index < 4; ++index)
            benchmark::DoNotOptimize(algorithm.UpdateParamState(index, value, false));
    }
}
BENCHMARK_CAPTURE(SetControllerValue_Updates, Heard, true)->Name("SetControllerValue3Followers/four updates");
BENCHMARK(SetControllerValue_KorvoLib)->Name("SetControllerValueUnheard/KorvoLib");
BENCHMARK_CAPTURE(SetControllerValue_Updates, Plain, false)->Name("SetControllerValueUnheard/four updates");

// ---- Gestures
// -----------------------------------------------------------------------------------------------------------

void LeadLookUp_KorvoLib(benchmark::State& state) {
    ManyControls algorithm(128, 128);
    size_t index = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(algorithm.GetAutomationControlByLeadParamID(index));
        index = (index + 37) % 128;
    }
}
BENCHMARK(LeadLookUp_KorvoLib)->Name("LeadLookUp/KorvoLib");

void LeadLookUp_Update(benchmark::State& state) {
    ManyControls algorithm(128);
    double value = 500.0;
    size_t index = 0;
    for (auto _ : state) {
        value = value == 500.0 ? 510.0 : 500.0;
        benchmark::DoNotOptimize(algorithm.UpdateParamState(index, value, false));
        index = (index + 37) % 128;
    }
}
BENCHMARK(LeadLookUp_Update)->Name("LeadLookUp/update");

} // namespace
