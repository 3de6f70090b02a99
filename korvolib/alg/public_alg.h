// The small public face of an algorithm that presets and undo work with: its parameters by name, and its whole
// state taken and put back in one piece. They see this instead of cALGORITHM, so that neither can turn a single
// knob, link parameters or reach automation by the way.
//
//   sALGORITHM_STATE state;
//   CPublicAlg(&algorithm).CaptureState(state);   // later, whatever has happened meanwhile:
//   CPublicAlg(&algorithm).RestoreState(state);   // the same parameters, setups and titles, bit for bit
//
// A CPublicAlg is a plain value as large as a pointer; the algorithm outlives it. Thread: [main]; CaptureState and
// RestoreState take the algorithm's lock themselves, once for the whole set.
#pragma once

#include <cstddef>
#include <cstdint>

#include <korvolib/alg/algorithm.h>
#include <korvolib/export.h>
#include <korvolib/utilities/strings/fixed_string.h>

namespace kvKorvoV12_9_0_320 {

// One sPARAM_VALUES per parameter, in a block of its own that moves and is never copied unseen.
class KORVO_API KCParamValues {
  public:
    KCParamValues() noexcept = default;
    ~KCParamValues();
    KCParamValues(KCParamValues&& other) noexcept;
    KCParamValues& operator=(KCParamValues&& other) noexcept;

    // Room for `count` parameters, whose values are not written yet; what was held is gone. kErr_AllocationFailed
    // leaves this empty.
    [[nodiscard]] int32_t Allocate(size_t count) noexcept;

    size_t size() const noexcept { return m_count; }
    sPARAM_VALUES* data() noexcept { return m_values; }
    const sPARAM_VALUES* data() const noexcept { return m_values; }

    // Bit for bit: −0 and 0 are two values, a not-a-number is the same as itself.
    friend KORVO_API bool operator==(const KCParamValues& a, const KCParamValues& b) noexcept;

  private:
    sPARAM_VALUES* m_values = nullptr;
    size_t m_count = 0;
};

// What one moment of an algorithm consists of, as undo sees it.
struct sALGORITHM_STATE {
    KCParamValues values; // entry i is parameter i; all not-a-number: not saved, and left alone by RestoreState
    EPluginSetup activeSetup = kPluginSetup_A;
    KCFixedString<127> setupTitles[2];
};

class KORVO_API CPublicAlg {
  public:
    CPublicAlg() = default; // of no algorithm
    explicit CPublicAlg(cALGORITHM* algorithm) : m_algorithm(algorithm) {}
    bool IsValid() const { return m_algorithm != nullptr; }
    bool operator==(const CPublicAlg&) const = default; // the same algorithm

    // Without an algorithm: 0, empty text, kNoParam, false.
    size_t GetNumParams() const;
    const KCFixedString<127>& GetParamName(size_t index) const;
    size_t GetParamIDFromName(const KCFixedStringBase& name) const;
    bool IsParamSavedToUndo(size_t index) const; // see cALGORITHM::IsParamSavableToUndo

    // The values of all parameters: one lock, and one block of memory, which is kept when `out` has the right size
    // already. kErr_NullArgument without an algorithm and kErr_AllocationFailed, both with `out` empty.
    int32_t CaptureValues(KCParamValues& out) const;
    // The values of all that undo saves, which setup is active, and the titles. Errors as above.
    int32_t CaptureState(sALGORITHM_STATE& out) const;

    // Puts a state back through cALGORITHM::RestoreParams, sets the titles and has the chain executed: the plug-in,
    // the window and the host hear of what differs; nothing links. kErr_NullArgument without an algorithm.
    int32_t RestoreState(const sALGORITHM_STATE& state) const;
    // The same, and the listeners are told PresetLoaded.
    int32_t RestorePreset(const sALGORITHM_STATE& state) const;

  private:
    int32_t Restore(const sALGORITHM_STATE& state, bool isPreset) const;

    cALGORITHM* m_algorithm = nullptr;
};

} // namespace kvKorvoV12_9_0_320
