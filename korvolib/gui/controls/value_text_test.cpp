#include <korvolib/gui/controls/value_text.h>

#include <korvolib/gui/controls/controls_test_internal.h>

namespace kvTest {
namespace {

using namespace PluginViewManager;

class ValueTextTest : public testing::Test {
  protected:
    ValueTextTest() { field->SetHome(&home); }
    ~ValueTextTest() override { field->SetHome(nullptr); }

    void Type(const std::string& text) {
        for (const char c : text)
            PressKey(algorithm, *field, static_cast<uint8_t>(c));
    }
    bool Key(uint32_t key) { return PressKey(algorithm, *field, key); }
    double State() const { return algorithm.GetParamState(0); }

    ControlsAlgorithm algorithm;
    ControlsHome home;
    std::unique_ptr<KCValueText> field =
        MakeControl<KCValueText>(algorithm, "ValueText", R"(Rect="0 0 80 24" AcceptableCharacters="0123456789.-x")",
                                 R"(<Parameter Name="Gain"/>)");
};

TEST_F(ValueTextTest, AClickBeginsAndTakesTheTextFocus) {
    EXPECT_TRUE(Click(algorithm, *field, 10.0, 10.0));
    EXPECT_TRUE(field->IsEditing());
    EXPECT_EQ(home.focus, field.get());
}

TEST_F(ValueTextTest, EnterBeginsTypedTextReplacesAndEnterCommits) {
    EXPECT_TRUE(Key(kKey_Enter));
    Type("6");
    EXPECT_EQ(field->GetTypedText(), "6");
    EXPECT_EQ(State(), 500.0);
    EXPECT_TRUE(Key(kKey_Enter));
    EXPECT_EQ(State(), 750.0);
    EXPECT_FALSE(field->IsEditing());
    EXPECT_EQ(home.focus, nullptr);
    EXPECT_TRUE(Shows(*field, "6.0 dB"));
}

TEST_F(ValueTextTest, AnUntouchedTextChangesNothing) {
    algorithm.SetState(0, 500.123); // not what its text "0.0" means
    Key(kKey_Enter);
    algorithm.TakeLog();
    Key(kKey_Enter);
    EXPECT_EQ(State(), 500.123);
    EXPECT_TRUE(algorithm.TakeLog().empty());
}

TEST_F(ValueTextTest, EscapeRestores) {
    Key(kKey_Enter);
    Type("6");
    EXPECT_TRUE(Key(kKey_Escape));
    EXPECT_FALSE(field->IsEditing());
    EXPECT_EQ(State(), 500.0);
    EXPECT_TRUE(Shows(*field, "0.0 dB"));
}

TEST_F(ValueTextTest, BackspaceTakesTheLastCharacterAndAnUntouchedTextWhole) {
    Key(kKey_Enter);
    Type("12");
    Key(kKey_Backspace);
    EXPECT_EQ(field->GetTypedText(), "1");
    Key(kKey_Backspace);
    Key(kKey_Backspace);
    EXPECT_EQ(field->GetTypedText(), "");
    Key(kKey_Escape);
    Key(kKey_Enter);
    Key(kKey_Backspace);
    EXPECT_EQ(field->GetTypedText(), "");
}

TEST_F(ValueTextTest, CharactersThatAreNotAcceptableAreLeftOut) {
    Key(kKey_Enter);
    Type("-a3b");
    PressKey(algorithm, *field, 0x3A9); // Ω
    EXPECT_EQ(field->GetTypedText(), "-3");
}

TEST_F(ValueTextTest, AKeyWithPrimaryIsACommandOfTheHost) {
    Key(kKey_Enter);
    Type("1");
    bool isHandled = false, isGestureEnd = false;
    KCEventData paste;
    paste.type = KEEventType::Key;
    paste.key = 'x';
    paste.modifiers = KEModifier::Primary;
    EXPECT_EQ(field->HandleKeyEvent(paste, isHandled, isGestureEnd), nullptr);
    EXPECT_FALSE(isHandled);
    EXPECT_EQ(field->GetTypedText(), "1");
    EXPECT_TRUE(field->IsEditing());
}

TEST_F(ValueTextTest, ARefusedTextKeepsTheValueAndSaysSoUntilTheNextEvent) {
    Key(kKey_Enter);
    Type("x-x");
    Key(kKey_Enter);
    EXPECT_EQ(State(), 500.0);
    EXPECT_TRUE(field->IsRefused());
    EXPECT_TRUE(Shows(*field, "x-x"));
    EXPECT_NE(YAMLOf(*field).find("{red: 255, green: 92, blue: 92, alpha: 255}"), std::string::npos);
    KURect<double> redraw;
    Execute(algorithm, field->MouseOver(At(10.0, 10.0), redraw));
    EXPECT_FALSE(field->IsRefused());
    EXPECT_TRUE(Shows(*field, "0.0 dB"));
}

TEST_F(ValueTextTest, LosingTheFocusRestores) {
    Key(kKey_Enter);
    Type("6");
    home.focus = nullptr;
    EXPECT_FALSE(field->IsEditing());
    EXPECT_TRUE(Shows(*field, "0.0 dB"));
    EXPECT_EQ(State(), 500.0);
}

TEST_F(ValueTextTest, ATextLongerThanItsRoomIsCutAtACharacter) {
    Key(kKey_Enter);
    Type(std::string(200, '1'));
    EXPECT_EQ(field->GetTypedText().size(), field->GetTypedText().capacity());
    Key(kKey_Enter);
    EXPECT_LE(State(), 1000.0);
}

TEST_F(ValueTextTest, ACommitIsOneGesture) {
    Key(kKey_Enter);
    Type("3");
    algorithm.TakeLog();
    Key(kKey_Enter);
    const std::vector<std::string> log = algorithm.TakeLog();
    EXPECT_EQ(std::count(log.begin(), log.end(), "touch 0"), 1);
    EXPECT_EQ(std::count(log.begin(), log.end(), "release 0"), 1);
}

TEST_F(ValueTextTest, WhenDisabledNothingBegins) {
    field->SetDisabled();
    EXPECT_FALSE(Key(kKey_Enter));
    EXPECT_FALSE(Click(algorithm, *field, 10.0, 10.0));
    EXPECT_FALSE(field->IsEditing());
}

TEST_F(ValueTextTest, ADragDoesNotBegin) {
    Press(algorithm, *field, At(10.0, 10.0));
    KCEventData lifted = At(10.0, 20.0);
    lifted.dragStart = {10.0, 10.0};
    Lift(algorithm, *field, lifted);
    EXPECT_FALSE(field->IsEditing());
}

TEST(ValueText, TakesAnyCharacterWhereNoneAreNamed) {
    ControlsAlgorithm algorithm;
    const auto field =
        MakeControl<KCValueText>(algorithm, "ValueText", R"(Rect="0 0 80 24")", R"(<Parameter Name="Gain"/>)");
    PressKey(algorithm, *field, kKey_Enter);
    for (const uint32_t key : {0x41u, 0xE4u, 0x20ACu, 0x1F3B5u, 0xD800u, 0x07u, 0x110000u})
        PressKey(algorithm, *field, key);
    EXPECT_EQ(field->GetTypedText(), "Aä€🎵");
    PressKey(algorithm, *field, kKey_Backspace);
    EXPECT_EQ(field->GetTypedText(), "Aä€");
}

} // namespace
} // namespace kvTest
