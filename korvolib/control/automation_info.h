// What a host shell learns of one automation control: a record of the caller's, whose layout both sides share, so
// that byte offsets are part of it. The library fills it (KCAutomationControl::GetControlAutomationInfo).
//
// 305 bytes of fields; 312 with the alignment of its widest field. Bytes that no field uses are zero.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320 {

inline constexpr int32_t kAutomationInfoVersion = 11;
inline constexpr int32_t kAutomationInfoKind = 1001;

struct sCONTROL_AUTOMATION_INFO {
    int32_t version = kAutomationInfoVersion; ///< the caller's; any other is refused
    int32_t unused4 = 0;
    int32_t kind = 0; ///< kAutomationInfoKind once filled
    int32_t unused12 = 0;
    int32_t numStates = 0; ///< of a stepped lead parameter, otherwise 0
    int32_t automationType = 0;
    int64_t refCon1 = 0;
    int64_t refCon2 = 0;
    char shortName[32] = {};   ///< texts end with a 0 and are cut to fit
    char units[32] = {};       ///< of the lead parameter
    char valueString[32] = {}; ///< as the lead parameter shows it
    bool hasLead = false;      ///< the flag and a registration that it names
    bool reserved137 = false;
    bool infoFlag = false; ///< kControl_InfoFlag
    uint8_t unused139[5] = {};
    int64_t key = 0;        ///< the lead registration's own number (KCParamRegistrationData::GetSpecificData)
    double value = 0.0;     ///< the lead registration's state, 0 … 1000
    double realWorld = 0.0; ///< of the lead parameter, in its units
    uint64_t leadParamIndex = 0;
    uint8_t unused176 = 0;
    char longName[128] = {};
    uint8_t unused305[7] = {};
};

static_assert(offsetof(sCONTROL_AUTOMATION_INFO, version) == 0);
static_assert(offsetof(sCONTROL_AUTOMATION_INFO, kind) == 8);
static_assert(offsetof(sCONTROL_AUTOMATION_INFO, numStates) == 16);
static_assert(offsetof(sCONTROL_AUTOMATION_INFO, automationType) == 20);
static_assert(offsetof(sCONTROL_AUTOMATION_INFO, refCon1) == 24);
static_assert(offsetof(sCONTROL_AUTOMATION_INFO, refCon2) == 32);
static_assert(offsetof(sCONTROL_AUTOMATION_INFO, shortName) == 40);
static_assert(offsetof(sCONTROL_AUTOMATION_INFO, units) == 72);
static_assert(offsetof(sCONTROL_AUTOMATION_INFO, valueString) == 104);
static_assert(offsetof(sCONTROL_AUTOMATION_INFO, hasLead) == 136);
static_assert(offsetof(sCONTROL_AUTOMATION_INFO, reserved137) == 137);
static_assert(offsetof(sCONTROL_AUTOMATION_INFO, infoFlag) == 138);
static_assert(offsetof(sCONTROL_AUTOMATION_INFO, key) == 144);
static_assert(offsetof(sCONTROL_AUTOMATION_INFO, value) == 152);
static_assert(offsetof(sCONTROL_AUTOMATION_INFO, realWorld) == 160);
static_assert(offsetof(sCONTROL_AUTOMATION_INFO, leadParamIndex) == 168);
static_assert(offsetof(sCONTROL_AUTOMATION_INFO, longName) == 177);
static_assert(offsetof(sCONTROL_AUTOMATION_INFO, unused305) == 305);
static_assert(sizeof(sCONTROL_AUTOMATION_INFO) == 312);
static_assert(std::is_standard_layout_v<sCONTROL_AUTOMATION_INFO>);
static_assert(std::is_trivially_copyable_v<sCONTROL_AUTOMATION_INFO>);

} // namespace kvKorvoV12_9_0_320
