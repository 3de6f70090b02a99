// Learning and driving, every combination against a plain telling of the rules; and hands, host and MIDI on one
// control.
#include <korvolib/control/automation_manager.h>

#include <random>

#include <korvolib/control/automation_test_internal.h>

namespace {

using namespace kvTest;

// What one control is before an event, and what it hears.
struct sControl {
    size_t lead; // parameter; kNoParam: none
    bool isLearning;
    int type;
    int id;
};

class Session {
  public:
    Session() : m_algorithm(ManyParams(1)) {
        m_algorithm.AddParam(ToggleParam("Mode", 5));
        EXPECT_EQ(m_algorithm.FinishCreate(), kErr_NoErr);
    }
    void Add(const sControl& wanted) {
        m_controls.push_back(wanted);
        KCAutomationControl& control = m_algorithm.AddControl("C", {});
        if (wanted.lead != kNoParam)
            control.Register(&m_algorithm, wanted.lead, KCRegisterInfo(kRegister_Controller));
        control.SetMIDILearnMode(wanted.isLearning);
        control.SetMIDIEventType(wanted.type);
        control.SetMIDIControlID(wanted.id);
        control.SetMIDIChannel(9);
    }
    void Send(int type, int number, int value) {
        Expect(type, number, value);
        const auto status = static_cast<uint8_t>((type + 7) << 4);
        m_algorithm.Midi(status, static_cast<uint8_t>(number), static_cast<uint8_t>(value));
        for (size_t i = 0; i < m_controls.size(); ++i) {
            const KCAutomationControl& control = *m_algorithm.GetAutomationControl(i);
            EXPECT_EQ(control.GetMIDILearnMode(), m_controls[i].isLearning);
            EXPECT_EQ(control.GetMIDIEventType(), m_controls[i].type);
            EXPECT_EQ(control.GetMIDIControlID(), m_controls[i].id);
        }
        EXPECT_EQ(m_algorithm.GetParamState(0), m_states[0]);
        EXPECT_EQ(m_algorithm.GetParamState(1), m_states[1]);
    }

  private:
    static bool IsPedal(int type, int number) {
        return type == 4 && (number == 64 || number == 65 || number == 66 || number == 67 || number == 69);
    }
    void Expect(int type, int number, int value) {
        if (type != 2 && type != 4 && type != 7)
            return;
        const int id = type == 7 ? 0 : number;
        for (sControl& control : m_controls) {
            if (!control.isLearning || (type == 4 && id >= 120))
                continue;
            if (control.id == -1 && (type != 2 || control.lead == 1)) {
                control.id = id;
                control.type = type;
                control.isLearning = false;
            }
            return;
        }
        for (const sControl& control : m_controls)
            if (control.type == type && control.id == id && control.lead != kNoParam)
                Drive(control.lead, type, number, value);
    }
    void Drive(size_t lead, int type, int number, int value) {
        if (lead == 0) {
            m_states[0] = type == 7 ? static_cast<int>((value * 128 + number) * 0.061031431187061336)
                                    : static_cast<int>(value * 7.874015748031496);
        } else if (type == 2 || IsPedal(type, number)) {
            if (value >= (type == 2 ? 1 : 64))
                m_states[1] = m_states[1] == 4 ? 0 : m_states[1] + 1;
        } else {
            m_states[1] = (2 * 4 * value + 127) / 254;
        }
    }

    HostedAlgorithm m_algorithm;
    std::vector<sControl> m_controls;
    int m_states[2] = {0, 0};
};

TEST(AutomationLearning, EveryCombinationAgreesWithAPlainTellingOfTheRules) {
    std::mt19937 random(11);
    const auto below = [&random](int end) { return std::uniform_int_distribution<int>(0, end - 1)(random); };
    constexpr int kNumbers[] = {0, 1, 63, 64, 67, 68, 69, 119, 120, 127};
    constexpr int kTypes[] = {-1, 2, 3, 4, 7};
    constexpr size_t kLeads[] = {0, 1, kNoParam};
    for (int run = 0; run < 300 && !testing::Test::HasFailure(); ++run) {
        Session session;
        for (int i = below(5); i-- > 0;)
            session.Add(
                {kLeads[below(3)], below(3) == 0, kTypes[below(5)], below(2) == 0 ? -1 : kNumbers[below(10)]});
        for (int i = 0; i < 60; ++i)
            session.Send(1 + below(7), kNumbers[below(10)], below(2) == 0 ? below(128) : kNumbers[below(10)]);
    }
}

// Two windows' hands, the host's own touches and MIDI, in any order: touches and releases take turns, and when all
// have let go, nothing is held.
TEST(AutomationLearning, HandsHostAndMidiTogetherKeepGesturesBalanced) {
    for (uint32_t seed = 1; seed <= 50; ++seed) {
        HostedAlgorithm algorithm(ManyParams(2));
        ASSERT_EQ(algorithm.FinishCreate(), kErr_NoErr);
        const KCAutomationControl& control = algorithm.AddControl("A", {0, 1});
        algorithm.Manager().AttachMIDIToLearnMode(4, 7, 0);
        std::mt19937 random(seed);
        int numHeld = 0;
        const auto check = [&] {
            for (const std::string& call : algorithm.TakeCalls()) {
                numHeld +=
                    static_cast<int>(call.starts_with("touch")) - static_cast<int>(call.starts_with("release"));
                EXPECT_TRUE(numHeld == 0 || numHeld == 1) << call;
            }
        };
        {
            std::vector<KCParamRegistrationData> hands(2, {&algorithm, 0, KCRegisterInfo(kRegister_DragVertical)});
            for (int step = 0; step < 200; ++step, check()) {
                KCParamRegistrationData& hand = hands[random() % 2];
                const auto what = random() % 5;
                if (what == 0 && hand.ShouldSendTouch()) {
                    hand.Touch();
                    EXPECT_TRUE(control.GetTouched());
                } else if (what == 1) {
                    hand.FinishDragParam();
                } else if (what == 2) {
                    algorithm.Manager().Touch(0);
                } else if (what == 3) {
                    algorithm.Manager().ReleaseTouch(0);
                } else {
                    algorithm.Midi(0xB0, 7, static_cast<uint8_t>(random() % 128));
                    EXPECT_FALSE(control.GetTouched());
                }
            }
        }
        algorithm.Manager().ReleaseTouch(0);
        check();
        EXPECT_EQ(numHeld, 0);
        EXPECT_FALSE(control.GetTouched());
    }
}

// ---- What a window leaves behind

TEST(AutomationLearning, AHandThatIsDestroyedInTheMiddleLetsGo) {
    HostedAlgorithm algorithm(ManyParams(1));
    ASSERT_EQ(algorithm.FinishCreate(), kErr_NoErr);
    algorithm.AddControl("A", {0});
    {
        KCParamRegistrationData hand(&algorithm, 0, KCRegisterInfo(kRegister_DragVertical));
        hand.Touch();
    }
    EXPECT_THAT(algorithm.TakeCalls(), testing::ElementsAre("touch 7 at 0", "release 7 at 0"));
}

TEST(AutomationLearning, AHandOnAParameterWhoseControlHasGoneEndsQuietly) {
    HostedAlgorithm algorithm(ManyParams(1));
    ASSERT_EQ(algorithm.FinishCreate(), kErr_NoErr);
    algorithm.AddControl("A", {0});
    KCParamRegistrationData hand(&algorithm, 0, KCRegisterInfo(kRegister_DragVertical));
    hand.Touch();
    EXPECT_EQ(algorithm.Manager().DeleteAutomationControl(0), kErr_NoErr);
    hand.FinishDragParam();
    EXPECT_THAT(algorithm.TakeCalls(), testing::ElementsAre("touch 7 at 0", "release 7 at 0"));
}

} // namespace
