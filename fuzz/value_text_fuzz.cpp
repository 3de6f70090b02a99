// A typed text against a parameter: whatever is typed, what the parameter then shows reads back to the same text.
// The first six bytes choose the scale, the rest is the text.
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <iterator>

#include <korvolib/alg/param_base.h>
#include <korvolib/alg/param_text.h>

using namespace kvKorvo;

namespace {

constexpr double kResolutions[] = {0.001, 0.01, 0.05, 0.1, 0.25, 0.5, 1.0, 2.0, 5.0, 10.0, 0.0, 0.3};
constexpr const char* kUnits[] = {"", "dB", "Hz", "kHz", "ms", "k", "M", "%"};

// Ends are multiples of the resolution: others round outward, to values that no state has.
KCParam_Base Chosen(const uint8_t* bytes) {
    const double resolution = kResolutions[bytes[1] % std::size(kResolutions)];
    const double unit = resolution == 0.0 ? 1.0 : resolution;
    const double min = (bytes[2] - 128.0) * unit, max = (bytes[3] - 128.0) * 16.0 * unit;
    KCParam_Base param;
    if (bytes[0] % 3 == 0)
        param.SetScaleLin(min, max, resolution);
    else if (bytes[0] % 3 == 1)
        param.SetScaleLog(std::fabs(min) + unit, std::fabs(max) + unit, resolution);
    else
        param.SetScaleToggle(bytes[2]);
    param.SetFlags(bytes[4] % 4 == 0 ? kParamFlag_NegativeTextOnly : 0);
    param.SetUnitsString(KCFixedString<7>(kUnits[bytes[5] % std::size(kUnits)]));
    return param;
}

void Require(bool holds) {
    if (!holds)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
    constexpr size_t kChoice = 6;
    if (size < kChoice)
        return 0;
    KCParam_Base param = Chosen(bytes);
    const KCFixedString<127> typed(static_cast<const char*>(static_cast<const void*>(bytes + kChoice)),
                                   size - kChoice);
    double value = 12345.0;
    if (param.TranslateValueString(typed, value) != kTranslateText_Accepted) {
        Require(value == 12345.0 || !std::isfinite(value));
        return 0;
    }
    Require(std::isfinite(value));
    param.SetFlags(0); // a shown value may be above 0, and would be turned by the flag
    KCFixedString<127> shown, shownAgain;
    FormatValueText(param, value, shown);
    Require(param.TranslateValueString(shown, value) == kTranslateText_Accepted);
    FormatValueText(param, value, shownAgain);
    Require(shown == shownAgain);
    return 0;
}
