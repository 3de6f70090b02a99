// The smallest plug-in that does something for each change, for benchmarks: one line of its own, no blocks.
#pragma once

#include <korvolib/alg/algorithm.h>

namespace kvTest {

class BenchAlgorithm : public kvKorvo::cALGORITHM {
  public:
    /// "Parameter 0", "Parameter 1", …: -60 … 12 in steps of 0.01, beginning at `initialState`.
    explicit BenchAlgorithm(size_t numParams, double initialState = 0.0) {
        using namespace kvKorvo;
        for (size_t i = 0; i < numParams; ++i) {
            KCFixedString<127> name("Parameter ");
            name << static_cast<uint64_t>(i);
            sCONTROL_PARAM param(name);
            param.SetScaleLin(-60.0, 12.0, 0.01);
            param.SetInitialState(initialState);
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

} // namespace kvTest
