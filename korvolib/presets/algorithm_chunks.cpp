// The members of cALGORITHM that make and read host chunks.
//
// The library's own 'XPst' chunk is XML, so that a person can read what a session holds:
//
//   <KorvoState Version="1" Active="SETUP_A">
//     <Setup Name="SETUP_A" Title="Warm">
//       <Param Name="Gain" State="500" RealWorld="0" Word="0"/>
//     </Setup>
//     …
//   </KorvoState>
//
// Parameters are found again by name: a plug-in may add, drop and reorder them between versions.

#include <korvolib/alg/algorithm_internal.h>
#include <korvolib/presets/presets_manager.h>
#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/four_cc.h>
#include <korvolib/utilities/mem_obj.h>
#include <korvolib/utilities/xml/xml_element.h>
#include <korvolib/utilities/xml/xml_text_internal.h>

namespace kvKorvoV12_9_0_320 {

namespace {

constexpr int32_t kChunk_Preset = static_cast<int32_t>(KCFourCC("XPst").Value());
constexpr int32_t kChunk_CurrentSetup = static_cast<int32_t>(KCFourCC("curS").Value());
constexpr int32_t kChunk_Preferences = static_cast<int32_t>(KCFourCC("pref").Value());

constexpr int32_t kStateVersion = 1;
constexpr EPluginSetup kBothSetups[] = {kPluginSetup_A, kPluginSetup_B};

KCFixedString<15> SetupText(EPluginSetup setup) {
    KCFixedString<15> text;
    cALGORITHM::SetupToSetupString(setup, text);
    return text;
}

bool WriteParam(KCXMLElement& parent, const sCONTROL_PARAM& param, EPluginSetup setup) {
    KCXMLElement* const element = parent.AddChild("Param");
    return element != nullptr && element->SetAttribute("Name", XMLTextOf(param.GetName()).c_str()) == kErr_NoErr &&
           element->SetAttribute("State", param.GetState(setup)) == kErr_NoErr &&
           element->SetAttribute("RealWorld", param.GetRealWorld(setup)) == kErr_NoErr &&
           element->SetAttribute("Word", param.GetSetupWord(setup)) == kErr_NoErr;
}

// The parameter in the same place if it has that name, so that equal names stay apart; else the first of that name.
size_t IndexOfEntry(const KCXMLElement& entry, size_t place, const cALGORITHM& algorithm) {
    const char* const name = entry.GetAttribute("Name");
    const sCONTROL_PARAM* const param = algorithm.GetParam(place);
    const bool isSamePlace = name != nullptr && param != nullptr && XMLTextOf(param->GetName()) == name;
    return isSamePlace ? place : algorithm.GetParamIDFromName(name);
}

// What a chunk says of one setup: the values of the parameters it names, and the setup's title.
void ReadSetup(const KCXMLElement& element, EPluginSetup setup, const cALGORITHM& algorithm,
               std::vector<sPARAM_VALUES>& values, std::vector<int32_t>& words) {
    size_t place = 0;
    for (const KCXMLElement& entry : element.Children("Param")) {
        const size_t index = IndexOfEntry(entry, place++, algorithm);
        double state = 0.0;
        double realWorld = 0.0;
        if (index >= values.size() || entry.ReadAttribute("State", state) != KEXMLValue::Found ||
            entry.ReadAttribute("RealWorld", realWorld) != KEXMLValue::Found)
            continue;
        values[index].state[setup] = state;
        values[index].realWorld[setup] = realWorld;
        if (entry.ReadAttribute("Word", words[index]) != KEXMLValue::Found)
            words[index] = 0;
    }
}

} // namespace

Preset::CPresetsManager* cALGORITHM::GetPresetsManager() { return nullptr; }

int32_t cALGORITHM::GetIndexedChunkID(int32_t index, int32_t& id) const {
    if (index != 0)
        return kErr_NoSuchChunkIndex;
    id = kChunk_Preset;
    return kErr_NoErr;
}

int32_t cALGORITHM::GetChunk(int32_t id, KCStMemObj& out, int32_t flag) {
    const KCAlgorithmLock lock(*this);
    if (id == kChunk_Preset) {
        out.Clear();
        const int32_t result = PreparePresetChunk(out, flag, 0);
        return out.IsEmpty() ? kErr_EmptyChunk : result;
    }
    if (id == kChunk_CurrentSetup) {
        Preset::CPresetsManager* const presets = GetPresetsManager();
        return presets != nullptr ? presets->GetCurrentSetupPresetChunk(out) : kErr_NoErr;
    }
    return id == kChunk_Preferences ? kErr_NoErr : kErr_Generic;
}

int32_t cALGORITHM::PreparePresetChunk(KCStMemObj& out, int32_t, int32_t) {
    KCXMLElement root;
    bool isWritten = root.SetName("KorvoState") == kErr_NoErr &&
                     root.SetAttribute("Version", kStateVersion) == kErr_NoErr &&
                     root.SetAttribute("Active", SetupText(m_activeSetup).c_str()) == kErr_NoErr;
    for (const EPluginSetup setup : kBothSetups) {
        KCXMLElement* const element = root.AddChild("Setup");
        isWritten = isWritten && element != nullptr &&
                    element->SetAttribute("Name", SetupText(setup).c_str()) == kErr_NoErr &&
                    element->SetAttribute("Title", XMLTextOf(GetSetupTitle(setup)).c_str()) == kErr_NoErr;
        for (size_t index = 0; isWritten && index < m_params.size(); ++index)
            isWritten = WriteParam(*element, m_params[index], setup);
    }
    return isWritten ? root.Write(out) : kErr_AllocationFailed;
}

int32_t cALGORITHM::SetChunk(int32_t id, const void* bytes, size_t size) {
    if (id != kChunk_Preset)
        return kErr_Generic;
    if (bytes == nullptr)
        return kErr_NullArgument;
    if (size == 0)
        return kErr_EmptyChunk;
    KCXMLElement root;
    if (const int32_t result = root.Parse(bytes, size); result != kErr_NoErr)
        return result;
    int32_t version = 0;
    if (!root.HasName("KorvoState") || root.ReadAttribute("Version", version) != KEXMLValue::Found)
        return kErr_BadDescription;
    if (version != kStateVersion)
        return kErr_WrongRecordVersion;
    try {
        RestoreState(root);
    } catch (const std::bad_alloc&) {
        return kErr_AllocationFailed;
    }
    return kErr_NoErr;
}

// A parameter that the chunk does not name, or not readably, stays as it is.
void cALGORITHM::RestoreState(const KCXMLElement& root) {
    const KCAlgorithmLock lock(*this);
    std::vector<sPARAM_VALUES> values(m_params.size());
    CaptureParams(0, values.data(), values.size());
    EPluginSetup active = m_activeSetup;
    SetupStringToSetup(KCFixedString<15>(root.GetAttribute("Active", "")), active);
    for (const KCXMLElement& element : root.Children("Setup")) {
        EPluginSetup setup = kPluginSetup_A;
        if (SetupStringToSetup(KCFixedString<15>(element.GetAttribute("Name", "")), setup) != kErr_NoErr)
            continue;
        std::vector<int32_t> words(m_params.size());
        for (size_t index = 0; index < words.size(); ++index)
            words[index] = m_params[index].GetSetupWord(setup);
        ReadSetup(element, setup, *this, values, words);
        for (size_t index = 0; index < words.size(); ++index)
            m_params[index].SetSetupWord(setup, words[index]);
        SetSetupTitle(setup, KCFixedString<127>(element.GetAttribute("Title", "")));
    }
    const sRestored restored = WriteRestored(nullptr, values.data(), values.size(), active);
    LimitLoadedRealWorlds();
    sChain chain(*this, AnnounceRestored(restored));
    Broadcaster()->PresetLoaded(m_activeSetup);
    BUFFER_HEADER* blocks = chain.Release();
    ExecuteAndDisposeBuffer(blocks);
}

} // namespace kvKorvoV12_9_0_320
