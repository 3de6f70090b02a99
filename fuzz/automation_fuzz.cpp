// Whatever a description says of automation controls: it is read without harm, what came of it can be played, and
// what a control writes of itself reads back to the same text.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include <korvolib/control/automation_manager.h>
#include <korvolib/utilities/xml/xml_element.h>

using namespace kvKorvo;

namespace {

class FuzzedAlgorithm : public cALGORITHM {
  public:
    FuzzedAlgorithm() {
        for (const char* name : {"Gain 1", "Gain 2", "Gain 3"}) {
            sCONTROL_PARAM param{KCFixedString<127>(name)};
            param.SetScaleLin(0.0, 10.0, 0.01);
            AddParam(param);
        }
        sCONTROL_PARAM mode{KCFixedString<127>("Mode")};
        mode.SetScaleToggle(3);
        AddParam(mode);
        FinishCreate();
    }

  protected:
    BUFFER_HEADER* ApplyParamSelf(size_t) override { return nullptr; }
    BUFFER_HEADER* ApplyAlgSelf() override { return nullptr; }
    BUFFER_HEADER* InitAlgSelf() override { return nullptr; }
};

void Require(bool holds) {
    if (!holds)
        std::abort();
}

void RequireSameAfterWriting(const KCAutomationControl& control, cALGORITHM& algorithm) {
    KCXMLElement first, second;
    KCAutomationManager::Problems problems;
    KCAutomationControl again;
    if (first.SetName("cCONTROLLER") != 0 || second.SetName("cCONTROLLER") != 0 ||
        control.WriteToXMLWithAlg(first, algorithm) != 0)
        return;
    Require(again.ReadFromXMLWithAlg(first, algorithm, problems) == 0);
    Require(again.WriteToXMLWithAlg(second, algorithm) == 0);
    Require(first == second);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
    KCXMLElement root;
    if (root.Parse(bytes, size) != 0)
        return 0;
    FuzzedAlgorithm algorithm;
    KCAutomationManager& manager = *algorithm.GetAutomationManager();
    KCAutomationManager::Problems problems;
    static_cast<void>(manager.ReadFromXML(root, problems));
    static_cast<void>(manager.LoadControlsFromPreset(root, problems));
    for (size_t i = 0; i < manager.GetNumAutomationControllers() && i < 64; ++i) {
        auto* chain = manager.SetControllerValue(i, 700.0);
        manager.ExecuteAndDisposeBuffer(chain);
        sCONTROL_AUTOMATION_INFO info;
        static_cast<void>(manager.GetControlAutomationInfo(i, info));
        RequireSameAfterWriting(*manager.GetAutomationControl(i), algorithm);
    }
    for (uint8_t number = 0; number < 128; ++number)
        manager.MidiProcessControlChange({0xB0, number, number});
    for (size_t i = 0; i < algorithm.GetNumParams(); ++i)
        Require(algorithm.GetParamState(i) >= 0.0 && algorithm.GetParamState(i) <= 1000.0);
    std::string order;
    manager.PrintAutomationControlOrder(order);
    KCXMLElement written;
    if (written.SetName("GUI") == 0) {
        static_cast<void>(manager.WriteDefaultPageTablesToXML(written));
        static_cast<void>(manager.SaveControlsToPreset(written));
    }
    return 0;
}
