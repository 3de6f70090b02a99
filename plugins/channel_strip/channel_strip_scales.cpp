// The strip's own scale, and values in words.

#include <plugins/channel_strip/channel_strip_params.h>

#include <korvolib/alg/param_text.h>

#include <algorithm>
#include <cmath>

namespace kvStrip {

using kvKorvo::DisplayFunctionProxy;
using kvKorvo::KCFixedString;
using kvKorvo::KCFixedStringBase;
using kvKorvo::KCParam_Base;
using kvKorvo::sSCALE_INFO;

namespace {

constexpr double kTaperDb = 60.0; // 20·log10 of a cube: this much for a factor of 10 in travel

// Rounded to the resolution as a whole: a fader's values are negative for the most part.
double FaderScale(double state, sSCALE_INFO* scale) {
    if (scale == nullptr || state <= 0.0)
        return scale == nullptr ? 0.0 : scale->a;
    const double decibels = scale->b + kTaperDb * std::log10(state / kvKorvo::kFullTravel);
    const double rounded =
        scale->Quantize > 0.0 ? std::floor(decibels * scale->OverQuantize + 0.5) * scale->Quantize : decibels;
    return std::max(rounded, scale->a);
}

double InverseFaderScale(double decibels, sSCALE_INFO* scale) {
    if (scale == nullptr || decibels <= scale->a)
        return 0.0;
    return kvKorvo::kFullTravel * std::pow(10.0, (decibels - scale->b) / kTaperDb);
}

// A value that reads as a word.
struct sWORD {
    double value;
    const char* text; // null ends a list
};

constexpr sWORD kSwitchWords[] = {{0.0, "Off"}, {1.0, "On"}, {0.0, nullptr}};
constexpr sWORD kDetectorWords[] = {{0.0, "Peak"}, {10.0, "RMS 10 ms"}, {50.0, "RMS 50 ms"}, {0.0, nullptr}};
constexpr sWORD kGateWords[] = {{kGateOffDb, "Off"}, {0.0, nullptr}};
constexpr sWORD kFaderWords[] = {{kFaderOffDb, "-Inf"}, {0.0, nullptr}};

void ShowWord(const KCParam_Base& param, double realWorld, KCFixedStringBase& out, void* refcon) {
    for (auto* word = static_cast<const sWORD*>(refcon); word->text != nullptr; ++word) {
        if (word->value == realWorld) {
            out << word->text;
            return;
        }
    }
    kvKorvo::FormatRealWorld(realWorld, param.GetScale().Quantize, out);
}

bool ReadWord(const KCParam_Base&, const KCFixedStringBase& text, double& realWorld, void* refcon) {
    for (auto* word = static_cast<const sWORD*>(refcon); word->text != nullptr; ++word) {
        if (text == word->text) {
            realWorld = word->value;
            return true;
        }
    }
    return false;
}

} // namespace

void AddFaderScale(kvKorvo::cALGORITHM::ScaleFunctionsMap& map) {
    map[KCFixedString<127>("fader")] = {&FaderScale, &InverseFaderScale};
}

void UseWords(kvKorvo::cALGORITHM& algorithm) noexcept {
    const struct {
        KEParam param;
        const sWORD* words;
    } uses[] = {{kParam_Bypass, kSwitchWords},
                {kParam_LowCut, kSwitchWords},
                {kParam_CompressorDetector, kDetectorWords},
                {kParam_GateThreshold, kGateWords},
                {kParam_OutputGain, kFaderWords}};
    for (const auto& use : uses)
        if (auto* const param = algorithm.GetParam(use.param))
            param->SetDisplayFunc(DisplayFunctionProxy(&ShowWord, &ReadWord, const_cast<sWORD*>(use.words)));
}

} // namespace kvStrip
