#include <korvolib/alg/algorithm.h>
#include <korvolib/version.h>

#include <cstdio>

namespace {

class KCGain : public kvKorvo::cALGORITHM {
  public:
    KCGain() {
        kvKorvo::sCONTROL_PARAM gain(kvKorvo::KCFixedString<127>("Gain"));
        gain.SetScaleLin(-24.0, 24.0, 0.1);
        gain.SetUnitsString(kvKorvo::KCFixedString<63>("dB"));
        AddParam(gain);
    }

  private:
    BUFFER_HEADER* ApplyParamSelf(size_t) override { return nullptr; }
    BUFFER_HEADER* ApplyAlgSelf() override { return nullptr; }
    BUFFER_HEADER* InitAlgSelf() override { return nullptr; }
};

} // namespace

int main() {
    KCGain algorithm;
    if (algorithm.FinishCreate() != 0)
        return 1;
    auto* chain = algorithm.UpdateParamRequestRealWorld(0, -3.5);
    algorithm.ExecuteAndDisposeBuffer(chain);
    kvKorvo::KCFixedString<63> text;
    algorithm.GetParamValueString(0, text);
    kvKorvo::KCFixedString<15> units;
    algorithm.GetParamUnitsString(0, units);
    std::printf("%d.%d.%d: %s %s\n", kvKorvo::kVersionMajor, kvKorvo::kVersionMinor, kvKorvo::kVersionPatch,
                text.c_str(), units.c_str());
}
