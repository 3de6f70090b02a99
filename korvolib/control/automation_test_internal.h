// What the automation tests share: an algorithm whose host writes down every call it gets, one short line each:
// "execute 0,1", "dispose", "value 7 500", "touch 7 at 0", "release 7 at 0". The number behind the word is
// refcon 2.
#pragma once

#include <bit>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include <korvolib/control/automation_manager.h>
#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/number_text.h>
#include <korvolib/utilities/xml/xml_element.h>
#include <tests/support/recording_algorithm.h>

namespace kvTest {

class HostedAlgorithm : public RecordingAlgorithm {
  public:
    explicit HostedAlgorithm(const std::vector<sCONTROL_PARAM>& params = {}) : RecordingAlgorithm(params) {
        SetHostCallback(&HostedAlgorithm::Called, this);
        givesBlocks = true;
    }

    std::vector<std::string> calls;
    std::vector<std::string> TakeCalls() { return std::exchange(calls, {}); }
    KCAutomationManager& Manager() { return *GetAutomationManager(); }
    size_t NumBlocksUnderWay() const {
        return GetProcessMemoryPool().GetSize().numBlocks - GetProcessMemoryPool().GetNumFree();
    }

    // Those of the library, which RecordingAlgorithm replaces.
    void NotifyParamValue(size_t index) override { cALGORITHM::NotifyParamValue(index); }
    void Touch(size_t index) override { cALGORITHM::Touch(index); }
    void Release(size_t index) override { cALGORITHM::Release(index); }

    /// A control that the first parameter leads and the others follow, connected with refcon 2; behind the others.
    KCAutomationControl& AddControl(const char* name, std::initializer_list<size_t> params, int64_t refCon2 = 7) {
        auto control = std::make_unique<KCAutomationControl>(KCFixedString<127>(name));
        for (const size_t param : params)
            EXPECT_EQ(control->Register(this, param, KCRegisterInfo(kRegister_Controller)), kErr_NoErr);
        control->SetAutomationRefCons(1, refCon2);
        KCAutomationControl& added = *control;
        EXPECT_EQ(Manager().AddNewAutomationControl(std::move(control)), kErr_NoErr);
        return added;
    }
    /// As a host plays it.
    void Play(size_t control, double value) {
        BUFFER_HEADER* chain = Manager().SetControllerValue(control, value);
        Manager().ExecuteAndDisposeBuffer(chain);
        EXPECT_EQ(chain, nullptr);
    }
    void Midi(uint8_t status, uint8_t data1, uint8_t data2) {
        EXPECT_EQ(Manager().MidiProcessControlChange({status, data1, data2}), kErr_NoErr);
    }

  private:
    static std::string Number(double value) {
        char text[kDecimalTextSize];
        FormatDecimal(value, text, sizeof text);
        return text;
    }
    static intptr_t Called(int32_t selector, void* refcon, intptr_t a1, intptr_t a2, intptr_t a3, intptr_t a4) {
        static_cast<HostedAlgorithm*>(refcon)->OnCall(selector, a1, a2);
        EXPECT_EQ(a3, 0);
        EXPECT_EQ(a4, 0);
        return 0;
    }
    void OnCall(int32_t selector, intptr_t a1, intptr_t a2) {
        if (selector == kHostSelector_Execute)
            Log("execute", Targets(std::bit_cast<const BUFFER_HEADER*>(a1)));
        else if (selector == kHostSelector_Dispose) {
            auto* chain = std::bit_cast<BUFFER_HEADER*>(a1);
            KPAPI_PROCESS_MEMORY::GiveBackChain(chain);
            calls.emplace_back("dispose");
        } else if (selector == 16)
            Log("value ", std::to_string(a1), " ", Number(*std::bit_cast<const double*>(a2)));
        else
            Log(selector == 17 ? "touch " : "release ", std::to_string(a1), " at ", std::to_string(a2));
    }
    void Log(const char* word, const std::string& first, const char* between = "", const std::string& last = "") {
        calls.emplace_back(word).append(first).append(between).append(last);
    }
    static std::string Targets(const BUFFER_HEADER* chain) {
        std::string text;
        for (; chain != nullptr; chain = chain->next)
            text.append(text.empty() ? " " : ",").append(std::to_string(chain->target));
        return text;
    }
};

/// `count` continuous parameters "P0", "P1", … whose value is a hundredth of their state.
inline std::vector<sCONTROL_PARAM> ManyParams(size_t count) {
    std::vector<sCONTROL_PARAM> params;
    for (size_t i = 0; i < count; ++i)
        params.push_back(LinearParam(std::string("P").append(std::to_string(i)).c_str()));
    return params;
}

/// The element that the text is.
inline KCXMLElement Parsed(const std::string& text) {
    KCXMLElement element;
    EXPECT_EQ(element.Parse(text.data(), text.size()), kErr_NoErr) << text;
    return element;
}

} // namespace kvTest
