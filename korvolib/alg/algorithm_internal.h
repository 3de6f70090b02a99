// What cALGORITHM keeps beside its hot members.
#pragma once

#include <korvolib/alg/algorithm.h>
#include <korvolib/alg/meters.h>
#include <korvolib/alg/runtime_reporter.h>

#include <cmath>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace kvKorvoV12_9_0_320 {

struct cALGORITHM::sRest {
    bool isCreated = false; // FinishCreate has been called
    bool isDisposed = false;
    bool isPrepared = false; // the parameters are complete: no more can be added
    int32_t createResult = 0;
    KCRuntimeReporter* reporter = nullptr;
    std::map<KCFixedString<63>, std::string> descriptions;
    std::vector<sDESCRIPTION_PROBLEM> problems;
    std::map<KCFixedString<1023>, KCAlgorithmPart*> parts;
    std::unordered_map<std::string_view, size_t> indexByName; // views of the records' names
    std::vector<size_t> notSavedToUndo;
    std::vector<uint8_t> due; // per parameter: what RestoreParams and its like still owe
    KCFixedString<127> setupTitles[2];
};

// The chain that an operation gathers: it grows at its end, in constant time for each block. When an exception ends
// the operation first, its blocks go back, and a whole update makes good what nobody will execute now.
struct cALGORITHM::sChain {
    explicit sChain(cALGORITHM& owner, BUFFER_HEADER* blocks = nullptr) : algorithm(owner), first(blocks) {}
    ~sChain() {
        if (first == nullptr)
            return;
        KPAPI_PROCESS_MEMORY::GiveBackChain(first);
        algorithm.SetUpdateAlgRequired();
    }
    sChain(const sChain&) = delete;
    sChain& operator=(const sChain&) = delete;

    void Append(BUFFER_HEADER* blocks) {
        while (*end != nullptr)
            end = &(*end)->next;
        *end = blocks;
    }
    BUFFER_HEADER* Release() { return std::exchange(first, nullptr); } // the last call

    cALGORITHM& algorithm;
    BUFFER_HEADER* first;
    BUFFER_HEADER** end = &first;
};

// What there is to tell of values that have been replaced.
struct cALGORITHM::sRestored {
    bool isSwitch = false;
    bool isModified = false;
};

inline constexpr uint32_t kParamFlags_AlwaysUpdate = kParamFlag_AlwaysUpdateSilently | kParamFlag_AlwaysUpdate;
inline constexpr uint32_t kParamFlags_NeverModifiesPreset =
    kParamFlag_AlwaysUpdateSilently | kParamFlag_NeverModifiesPreset;

// A real-world value that moves by less has not changed. What is not a number has always changed, so that the
// plug-in hears of it.
inline constexpr double kSmallestChange = 1e-10;
inline bool HasVisiblyChanged(double oldRealWorld, double newRealWorld) {
    return !(std::fabs(oldRealWorld - newRealWorld) < kSmallestChange);
}

inline bool cALGORITHM::IsUpdateParamAlwayesRequired(size_t index) const {
    return m_params[index].HasFlag(kParamFlags_AlwaysUpdate);
}

inline void cALGORITHM::ReportPresetModified(const sCONTROL_PARAM& param, bool hasChanged) {
    if (hasChanged && !param.HasFlag(kParamFlags_NeverModifiesPreset))
        Broadcaster()->PresetModified(m_activeSetup);
}

} // namespace kvKorvoV12_9_0_320
