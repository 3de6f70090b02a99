// Whole sessions of host, hand and MIDI: what the host hears, in order, and that any order of events holds
// together.
#include <korvolib/control/automation_manager.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <random>

#include <korvolib/control/automation_test_internal.h>
#include <korvolib/control/midi_value.h>

namespace {

using namespace kvTest;
using testing::ElementsAre;
using testing::IsEmpty;

KCParamRegistrationData Hand(HostedAlgorithm& algorithm, size_t param) {
    return {&algorithm, param, KCRegisterInfo(kRegister_DragVertical)};
}

// As a window's drag: touched where a touch is due.
void Drag(HostedAlgorithm& algorithm, KCParamRegistrationData& hand, double state) {
    if (hand.ShouldSendTouch())
        hand.Touch();
    auto* chain = hand.SetParamValue(state);
    algorithm.ExecuteAndDisposeBuffer(chain);
}

TEST(AutomationSession, HostHandAndMidiAreHeardInTheirOrder) {
    HostedAlgorithm algorithm(ManyParams(3));
    ASSERT_EQ(algorithm.FinishCreate(), kErr_NoErr);
    algorithm.AddControl("Level", {0, 1}, 10);
    algorithm.AddControl("Other", {2}, 20);
    algorithm.Manager().AttachMIDIToLearnMode(4, 7, 0);
    KCParamRegistrationData hand = Hand(algorithm, 0);
    algorithm.Play(0, 100.0);
    Drag(algorithm, hand, 200.0);
    algorithm.Midi(0xB0, 7, 127);
    Drag(algorithm, hand, 300.0);
    hand.FinishDragParam();
    algorithm.Play(1, 50.0);
    EXPECT_THAT(algorithm.TakeCalls(),
                ElementsAre("execute 0,1", "dispose",                                     // the host plays
                            "touch 10 at 0", "value 10 200", "execute 0", "dispose",      // the hand takes hold
                            "execute 0,1", "dispose", "value 10 1000", "release 10 at 0", // MIDI comes between
                            "touch 10 at 0", "value 10 300", "execute 0", "dispose",
                            "release 10 at 0", // the hand again
                            "execute 2", "dispose"));
    EXPECT_EQ(algorithm.NumBlocksUnderWay(), 0u);
}

TEST(AutomationSession, AHandTouchesOnceWhileNobodyComesBetween) {
    HostedAlgorithm algorithm(ManyParams(1));
    ASSERT_EQ(algorithm.FinishCreate(), kErr_NoErr);
    KCAutomationControl& control = algorithm.AddControl("Level", {0});
    KCParamRegistrationData hand = Hand(algorithm, 0);
    EXPECT_TRUE(hand.ShouldSendTouch());
    hand.Touch();
    EXPECT_FALSE(hand.ShouldSendTouch());
    hand.Touch();
    EXPECT_THAT(algorithm.TakeCalls(), ElementsAre("touch 7 at 0"));
    control.NotifyRelease();
    EXPECT_TRUE(hand.ShouldSendTouch());
    hand.Touch();
    hand.Release();
    hand.Release();
    EXPECT_THAT(algorithm.TakeCalls(), ElementsAre("release 7 at 0", "touch 7 at 0", "release 7 at 0"));
}

// ---- Random events against a plain model
// ------------------------------------------------------------------------------

// Eight parameters, 3 and 7 of them stepped; controls lead one parameter each and have up to two followers. The
// model knows states and stored values, and nothing of how the library keeps them.
class Model {
  public:
    struct Control {
        std::vector<size_t> params; // the lead first
        std::vector<double> values;
        int type = -1;
        int id = -1;
        bool isTouched = false;
    };
    std::vector<double> states = std::vector<double>(kNumParams, 0.0);
    std::vector<Control> controls;

    static constexpr size_t kNumParams = 8;
    static int NumStates(size_t param) { return param % 4 == 3 ? 5 : 0; }
    static double Settled(size_t param, double state) {
        return NumStates(param) != 0 ? std::floor(state + 0.5) : state;
    }
    // Everyone who stored something else than what the state was made of follows.
    void Move(size_t param, double state) {
        if (states[param] == Settled(param, state))
            return;
        states[param] = Settled(param, state);
        for (Control& control : controls)
            for (size_t i = 0; i < control.params.size(); ++i)
                if (control.params[i] == param && Settled(param, control.values[i]) != states[param])
                    control.values[i] = states[param];
    }
    void Play(size_t index, double value) {
        Control& control = controls[index];
        const double delta = value - control.values[0];
        for (double& stored : control.values)
            stored = std::clamp(stored + delta, 0.0, 1000.0);
        for (size_t i = 0; i < control.params.size(); ++i)
            Move(control.params[i], control.values[i]);
    }
    void Midi(const kvMIDI::KorvoMidiEvent& event) {
        const int id = event.GetEventType() == 7 ? 0 : event.GetData1();
        for (size_t i = 0; i < controls.size(); ++i) {
            Control& control = controls[i];
            if (control.type != event.GetEventType() || control.id != id)
                continue;
            const size_t lead = control.params[0];
            const int value = NumStates(lead) != 0 ? kvMIDI::SteppedValue(event, states[lead], NumStates(lead))
                                                   : kvMIDI::ContinuousValue(event);
            if (value != -1) {
                Play(i, value);
                control.isTouched = false;
            }
        }
    }
};

class RandomSession {
  public:
    explicit RandomSession(uint32_t seed) : m_random(seed) {
        for (size_t param = 0; param < Model::kNumParams; ++param)
            m_algorithm.AddParam(Model::NumStates(param) != 0 ? ToggleParam("S", Model::NumStates(param))
                                                              : LinearParam("C"));
        EXPECT_EQ(m_algorithm.FinishCreate(), kErr_NoErr);
        for (size_t lead = 0; lead < Model::kNumParams; ++lead)
            AddControl(lead);
    }
    void Step() {
        const size_t index = Below(m_model.controls.size());
        Model::Control& control = m_model.controls[index];
        const size_t lead = control.params[0];
        switch (Below(6)) {
        case 0: {
            const double value = static_cast<double>(Below(3000)) / 2.0 - 250.0;
            m_algorithm.Play(index, value);
            m_model.Play(index, value);
            break;
        }
        case 1: {
            const auto state = static_cast<double>(Below(Model::NumStates(lead) != 0 ? 5 : 1001));
            auto* chain = m_algorithm.UpdateParamRequestState(lead, state);
            m_algorithm.ExecuteAndDisposeBuffer(chain);
            m_model.Move(lead, state);
            break;
        }
        case 2:
            EXPECT_EQ(m_algorithm.Manager().Touch(index), !control.isTouched);
            control.isTouched = true;
            break;
        case 3:
            EXPECT_EQ(m_algorithm.Manager().ReleaseTouch(index), control.isTouched);
            control.isTouched = false;
            break;
        case 4:
            control.type = std::array{2, 4, 7}[Below(3)];
            control.id = control.type == 7 ? 0 : static_cast<int>(60 + Below(8));
            m_algorithm.GetAutomationControl(index)->SetMIDIEventType(control.type);
            m_algorithm.GetAutomationControl(index)->SetMIDIControlID(control.id);
            break;
        default:
            Midi();
        }
    }
    void Check() {
        for (size_t param = 0; param < Model::kNumParams; ++param) {
            EXPECT_EQ(m_algorithm.GetParamState(param), m_model.states[param]) << param;
            EXPECT_TRUE(m_algorithm.GetParamState(param) >= 0.0 && m_algorithm.GetParamState(param) <= 1000.0);
        }
        for (size_t i = 0; i < m_model.controls.size(); ++i) {
            const Model::Control& control = m_model.controls[i];
            EXPECT_EQ(m_algorithm.GetAutomationControl(i)->GetTouched(), control.isTouched);
            for (size_t k = 0; k < control.values.size(); ++k)
                EXPECT_EQ(m_algorithm.GetAutomationControl(i)->GetParamData(k)->GetValue(), control.values[k]);
        }
        EXPECT_EQ(m_algorithm.NumBlocksUnderWay(), 0u);
        CheckCalls();
    }

  private:
    size_t Below(size_t end) { return std::uniform_int_distribution<size_t>(0, end - 1)(m_random); }
    void AddControl(size_t lead) {
        Model::Control control;
        control.params.push_back(lead);
        for (size_t i = Below(3); i-- > 0;)
            control.params.push_back(Below(Model::kNumParams)); // also the lead's parameter, or one twice
        control.values.assign(control.params.size(), 0.0);
        KCAutomationControl& real = m_algorithm.AddControl("C", {lead}, static_cast<int64_t>(lead));
        for (size_t i = 1; i < control.params.size(); ++i)
            real.Register(&m_algorithm, control.params[i], KCRegisterInfo(kRegister_Controller));
        m_model.controls.push_back(control);
    }
    void Midi() {
        const kvMIDI::KorvoMidiEvent event(static_cast<uint8_t>(0x80 + 0x10 * Below(7)),
                                           static_cast<uint8_t>(60 + Below(8)), static_cast<uint8_t>(Below(128)));
        m_algorithm.Manager().MidiProcessControlChange(event);
        m_model.Midi(event);
    }
    // Each touch has its release, and each chain goes out once and comes back once.
    void CheckCalls() {
        for (const std::string& call : m_algorithm.TakeCalls()) {
            const std::string control = call.substr(call.find(' ') + 1);
            if (call.starts_with("touch")) {
                EXPECT_EQ(++m_held[control], 1) << call;
            } else if (call.starts_with("release")) {
                EXPECT_EQ(--m_held[control], 0) << call;
            } else if (call.starts_with("execute")) {
                EXPECT_EQ(++m_chains, 1);
            } else if (call == "dispose") {
                EXPECT_EQ(--m_chains, 0);
            }
        }
        EXPECT_EQ(m_chains, 0);
    }

    std::mt19937 m_random;
    HostedAlgorithm m_algorithm;
    Model m_model;
    std::map<std::string, int> m_held;
    int m_chains = 0;
};

TEST(AutomationSession, AnyOrderOfEventsAgreesWithAPlainModel) {
    for (uint32_t seed = 1; seed <= 40; ++seed) {
        RandomSession session(seed);
        for (int step = 0; step < 300; ++step) {
            session.Step();
            session.Check();
            if (testing::Test::HasFailure())
                FAIL() << "seed " << seed << ", step " << step;
        }
    }
}

TEST(AutomationSession, HostValuesAreNeverEchoed) {
    HostedAlgorithm algorithm(ManyParams(4));
    ASSERT_EQ(algorithm.FinishCreate(), kErr_NoErr);
    algorithm.AddControl("A", {0, 1, 2, 3});
    std::mt19937 random(7);
    for (int i = 0; i < 1000; ++i)
        algorithm.Play(0, std::uniform_real_distribution<double>(-100.0, 1100.0)(random));
    for (const std::string& call : algorithm.TakeCalls())
        EXPECT_TRUE(call.starts_with("execute") || call == "dispose") << call;
}

} // namespace
