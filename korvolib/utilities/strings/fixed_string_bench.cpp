// Each row beside its peer: "Row/KorvoLib" is ours.
#include <korvolib/utilities/strings/fixed_string.h>

#include <algorithm>
#include <charconv>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <boost/static_string.hpp>

namespace kvKorvoV12_9_0_320 {
namespace {

using String = KCFixedString<127>;
using Static = boost::static_string<127>;
using benchmark::DoNotOptimize;

// Texts and numbers come out of memory, so that no compiler can prepare the result.

const char* Hidden(const char* text) {
    DoNotOptimize(text);
    return text;
}

const std::vector<int>& Ints() {
    static const std::vector<int> s_ints = [] {
        std::mt19937 random(1);
        std::vector<int> ints(1024);
        for (int& value : ints)
            value = static_cast<int>(random()) >> (random() % 31);
        return ints;
    }();
    return s_ints;
}

const std::vector<double>& Doubles() {
    static const std::vector<double> s_doubles = [] {
        std::mt19937 random(2);
        std::uniform_real_distribution<double> uniform(-20000.0, 20000.0);
        std::vector<double> doubles(1024);
        for (double& value : doubles)
            value = uniform(random);
        return doubles;
    }();
    return s_doubles;
}

/// Runs `body` on one value after the other.
template <class Value, class Body>
void ForEachValue(benchmark::State& state, const std::vector<Value>& values, Body body) {
    size_t i = 0;
    for (auto _ : state)
        body(values[i++ % 1024]);
}

// ---- Append of 12 characters eight times

template <class Text>
void AppendEightTimes(benchmark::State& state) {
    const char* twelve = Hidden("twelve chars");
    Text text;
    for (auto _ : state) {
        text.clear();
        for (int i = 0; i < 8; ++i)
            text.append(twelve);
        DoNotOptimize(text.data());
        benchmark::ClobberMemory();
    }
}
BENCHMARK(AppendEightTimes<String>)->Name("StringAppend/KorvoLib");
BENCHMARK(AppendEightTimes<Static>)->Name("StringAppend/static_string");

template <class Text>
void AppendLiteralEightTimes(benchmark::State& state) {
    Text text;
    for (auto _ : state) {
        text.clear();
        for (int i = 0; i < 8; ++i)
            text.append("twelve chars");
        DoNotOptimize(text.data());
        benchmark::ClobberMemory();
    }
}
BENCHMARK(AppendLiteralEightTimes<String>)->Name("StringAppendLiteral/KorvoLib");
BENCHMARK(AppendLiteralEightTimes<Static>)->Name("StringAppendLiteral/static_string");

// ---- Append of numbers

void AppendInt(benchmark::State& state) {
    String text;
    ForEachValue(state, Ints(), [&](int value) {
        text.clear();
        text << value;
        DoNotOptimize(text.data());
        benchmark::ClobberMemory();
    });
}
BENCHMARK(AppendInt)->Name("StringAppendInt/KorvoLib");

void AppendIntPeer(benchmark::State& state) {
    Static text;
    ForEachValue(state, Ints(), [&](int value) {
        text.clear();
        char digits[16];
        const auto result = std::to_chars(digits, std::end(digits), value);
        text.append(digits, static_cast<size_t>(result.ptr - digits));
        DoNotOptimize(text.data());
        benchmark::ClobberMemory();
    });
}
BENCHMARK(AppendIntPeer)->Name("StringAppendInt/static_string+to_chars");

void AppendDouble(benchmark::State& state) {
    String text;
    ForEachValue(state, Doubles(), [&](double value) {
        text.clear();
        text << value;
        DoNotOptimize(text.data());
        benchmark::ClobberMemory();
    });
}
BENCHMARK(AppendDouble)->Name("StringAppendDouble/KorvoLib");

void AppendDoublePeer(benchmark::State& state) {
    char text[128];
    ForEachValue(state, Doubles(), [&](double value) {
        *std::to_chars(text, std::end(text), value, std::chars_format::fixed, 10).ptr = '\0';
        DoNotOptimize(static_cast<char*>(text));
        benchmark::ClobberMemory();
    });
}
BENCHMARK(AppendDoublePeer)->Name("StringAppendDouble/to_chars");

// ---- Find

constexpr const char* kSentence = "Compressor threshold in decibels below full scale, measured at the detector";

void Find(benchmark::State& state) {
    const String text(Hidden(kSentence));
    const char* wanted = Hidden("measured");
    for ([[maybe_unused]] auto _ : state) {
        benchmark::ClobberMemory();
        DoNotOptimize(text.find(wanted, 0));
    }
}
BENCHMARK(Find)->Name("StringFind/KorvoLib");

void FindPeer(benchmark::State& state) {
    const String text(Hidden(kSentence));
    const char* wanted = Hidden("measured");
    for ([[maybe_unused]] auto _ : state) {
        benchmark::ClobberMemory();
        DoNotOptimize(std::strstr(text.c_str(), wanted));
    }
}
BENCHMARK(FindPeer)->Name("StringFind/strstr");

// ---- Compare

std::vector<std::string> Names(size_t count) {
    static const char* const kWords[] = {"Input",     "Output", "Gain",    "Frequency", "Low",  "High",
                                         "Threshold", "Attack", "Release", "Mix",       "Left", "Right"};
    std::mt19937 random(3);
    std::vector<std::string> names(count);
    for (std::string& name : names)
        name = std::string(kWords[random() % 12]) + ' ' + kWords[random() % 12] + ' ' +
               std::to_string(random() % 1000);
    return names;
}

template <class Text>
std::vector<Text> NamesAs(size_t count) {
    std::vector<Text> names;
    names.reserve(count);
    for (const std::string& name : Names(count))
        names.emplace_back(name.c_str());
    return names;
}

/// Neighbours of a sorted list: they share what they begin with, as in a look-up.
template <class Text>
void Compare(benchmark::State& state) {
    std::vector<Text> names = NamesAs<Text>(128);
    std::sort(names.begin(), names.end());
    size_t i = 0;
    for (auto _ : state) {
        DoNotOptimize(names[i % 64].compare(names[i % 64 + 1]));
        ++i;
    }
}
BENCHMARK(Compare<String>)->Name("StringCompare/KorvoLib");
BENCHMARK(Compare<std::string>)->Name("StringCompare/string");

// ---- Copy of 60 characters

template <class Text>
void Copy(benchmark::State& state) {
    const Text source(std::string(60, 'x').c_str());
    for (auto _ : state) {
        benchmark::ClobberMemory();
        Text copy(source);
        DoNotOptimize(copy.data());
        benchmark::ClobberMemory();
    }
}
BENCHMARK(Copy<String>)->Name("StringCopy/KorvoLib");
BENCHMARK(Copy<std::string>)->Name("StringCopy/string");

// ---- Sorting of 10,000 names

template <class Text>
void Sort(benchmark::State& state) {
    const std::vector<Text> shuffled = NamesAs<Text>(10000);
    std::vector<Text> names(shuffled);
    for (auto _ : state) {
        state.PauseTiming();
        names = shuffled;
        state.ResumeTiming();
        std::sort(names.begin(), names.end());
        DoNotOptimize(names.data());
    }
}
BENCHMARK(Sort<String>)->Name("StringSort/KorvoLib")->Unit(benchmark::kMicrosecond);
BENCHMARK(Sort<std::string>)->Name("StringSort/string")->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace kvKorvoV12_9_0_320
