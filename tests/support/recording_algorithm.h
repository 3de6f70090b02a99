// A plug-in for tests: its parameters are what the test adds, and it writes down everything that happens to it, in
// order, one short line each: "apply 0", "modified A", "notify 0".
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <korvolib/alg/algorithm.h>

namespace kvTest {

using namespace kvKorvo;

// A linear parameter from `min` to `max`; resolution 0.01 unless told.
inline sCONTROL_PARAM LinearParam(const char* name, double min = 0.0, double max = 10.0, double quantize = 0.01) {
    sCONTROL_PARAM param;
    param.SetName(KCFixedString<127>(name));
    param.SetScaleLin(min, max, quantize);
    return param;
}

inline sCONTROL_PARAM ToggleParam(const char* name, int numStates) {
    sCONTROL_PARAM param;
    param.SetName(KCFixedString<127>(name));
    param.SetScaleToggle(numStates);
    return param;
}

inline char SetupLetter(EPluginSetup setup) { return setup == kPluginSetup_A ? 'A' : 'B'; }

class RecordingAlgorithm : public cALGORITHM {
  public:
    std::vector<std::string> log;
    std::function<void(size_t)> onApply; // runs inside the hook
    bool givesBlocks = false;            // the hooks return a block with the parameter's value

    explicit RecordingAlgorithm(const std::vector<sCONTROL_PARAM>& params = {}) {
        for (const sCONTROL_PARAM& param : params)
            AddParam(param);
    }

    std::vector<std::string> TakeLog() { return std::exchange(log, {}); }

    void NotifyParamValue(size_t index) override { log.push_back("notify " + std::to_string(index)); }
    void Touch(size_t index) override { log.push_back("touch " + std::to_string(index)); }
    void Release(size_t index) override { log.push_back("release " + std::to_string(index)); }

    void PresetLoaded(EPluginSetup setup) override { log.push_back(std::string("loaded ") + SetupLetter(setup)); }
    void PresetModified(EPluginSetup setup) override {
        log.push_back(std::string("modified ") + SetupLetter(setup));
    }
    void SetupTitleChanged(EPluginSetup setup) override {
        log.push_back(std::string("title ") + SetupLetter(setup));
    }
    void ActiveSetupChanged(EPluginSetup setup) override {
        log.push_back(std::string("active ") + SetupLetter(setup));
    }
    void ActiveSideChainChanged(bool isActive) override { log.push_back(isActive ? "side on" : "side off"); }

    using cALGORITHM::ScaleAllParams;
    using cALGORITHM::SetRealWorldAndUpdateAndNotifyAutomation;

  protected:
    BUFFER_HEADER* ApplyParamSelf(size_t index) override {
        log.push_back("apply " + std::to_string(index));
        if (onApply)
            onApply(index);
        return Block(static_cast<uint32_t>(index), GetParamRealWorld(index));
    }
    BUFFER_HEADER* ApplyAlgSelf() override {
        log.push_back("apply all");
        return Block(0, 0.0);
    }
    BUFFER_HEADER* InitAlgSelf() override {
        log.push_back("init");
        return Block(0, 0.0);
    }
    sPROCESS_MEMORY_SIZE GetProcessMemorySize() const override {
        sPROCESS_MEMORY_SIZE size;
        size.numBlocks = 4 * GetNumParams() + 4;
        size.blockBytes = sizeof(double);
        size.numTargets = static_cast<uint32_t>(GetNumParams() + 1);
        return size;
    }

  private:
    BUFFER_HEADER* Block(uint32_t target, double value) {
        BUFFER_HEADER* const block = givesBlocks ? TakeBuffer(target, sizeof value) : nullptr;
        if (block != nullptr)
            *static_cast<double*>(block->Payload()) = value;
        return block;
    }
};

} // namespace kvTest
