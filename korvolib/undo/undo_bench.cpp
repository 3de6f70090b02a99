#include <korvolib/undo/undo_api.h>

#include <cstring>
#include <vector>

#include <benchmark/benchmark.h>

#include <korvolib/undo/undo_commands.h>
#include <korvolib/undo/undo_manager.h>
#include <tests/support/bench_algorithm.h>

namespace {

using namespace kvKorvo;

using kvTest::BenchAlgorithm;

// ---- A gesture's step, taken back and brought again, against the updates a drag consists of --------------------
// The round begins with an update, since an unchanged state makes no step: it counts on the side of undo.

double NextState(double state) { return state == 250.0 ? 750.0 : 250.0; }

void UndoRound_KorvoLib(benchmark::State& state) {
    BenchAlgorithm algorithm(16);
    Undo::KTUndoManagerType* manager = nullptr;
    Undo::API::CreateDefaultUndoManager(manager);
    Undo::API::StartHistory(manager, &algorithm);
    double value = 0.0;
    for (auto _ : state) {
        value = NextState(value);
        benchmark::DoNotOptimize(algorithm.UpdateParamRequestState(3, value));
        Undo::API::InsertGestureStep(manager, &algorithm, 3);
        Undo::API::ExecuteUndo(manager);
        Undo::API::ExecuteRedo(manager);
    }
    Undo::API::DisposeUndoManager(manager);
}
BENCHMARK(UndoRound_KorvoLib)->Name("UndoRound/KorvoLib");

void UndoRound_Updates(benchmark::State& state) {
    BenchAlgorithm algorithm(16);
    double value = 0.0;
    for (auto _ : state) {
        for (int i = 0; i < 3; ++i) {
            value = NextState(value);
            const KCAlgorithmLock lock(algorithm);
            benchmark::DoNotOptimize(algorithm.UpdateParamRequestState(3, value));
        }
    }
}
BENCHMARK(UndoRound_Updates)->Name("UndoRound/three updates");

// ---- A snapshot of 1,000 parameters against copying its bytes
// ----------------------------------------------------

constexpr size_t kManyParams = 1000;

void Snapshot_KorvoLib(benchmark::State& state) {
    BenchAlgorithm algorithm(kManyParams);
    sALGORITHM_STATE snapshot;
    for (auto _ : state) {
        benchmark::DoNotOptimize(CPublicAlg(&algorithm).CaptureState(snapshot));
        benchmark::ClobberMemory();
    }
}
BENCHMARK(Snapshot_KorvoLib)->Name("Snapshot/KorvoLib");

// The same as a command of its own, with its memory and its name.
void Snapshot_Command(benchmark::State& state) {
    BenchAlgorithm algorithm(kManyParams);
    for (auto _ : state) {
        Undo::KCUndoCommandParameters command(&algorithm, 3);
        benchmark::DoNotOptimize(&command);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(Snapshot_Command)->Name("SnapshotCommand/KorvoLib");

void CopyBytes(benchmark::State& state) {
    std::vector<sPARAM_VALUES> from(kManyParams), to(kManyParams);
    for (auto _ : state) {
        std::memcpy(to.data(), from.data(), kManyParams * sizeof(sPARAM_VALUES));
        benchmark::DoNotOptimize(to.data());
        benchmark::ClobberMemory();
    }
}
BENCHMARK(CopyBytes)->Name("Snapshot/memcpy");
BENCHMARK(CopyBytes)->Name("SnapshotCommand/memcpy");

} // namespace
