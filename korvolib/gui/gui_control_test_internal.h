// A small control for tests, and the window it believes to stand in.
#pragma once

#include <algorithm>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include <korvolib/graphicstream/binary_writer.h>
#include <korvolib/graphicstream/to_yaml.h>
#include <korvolib/gui/gui_control.h>
#include <korvolib/gui/gui_test_internal.h>
#include <korvolib/gui/theme.h>

namespace kvTest {

// Nothing but the base; writes down which hooks ran.
class TestControl : public KCGUIControl {
  public:
    TestControl() = default;
    TestControl(const TestControl& other) = default;
    std::unique_ptr<KCBaseControl> Clone() const override { return std::make_unique<TestControl>(*this); }
    std::span<const ERegisterType> GetDefaultGestures() const override { return gestures; }

    BUFFER_HEADER* MouseOverSelf(const KCEventData&, Rect&) override { return Note("over"); }
    BUFFER_HEADER* MouseDragSelf(const KCEventData&, double, double, Rect&) override { return Note("drag"); }
    BUFFER_HEADER* MouseUpSelf(const KCEventData&, Rect&) override { return Note("up"); }
    BUFFER_HEADER* MouseWheelSelf(const KCEventData&, double, double, Rect&) override { return Note("wheel"); }
    BUFFER_HEADER* MouseDrawSelf(const KCEventData&, Rect&) override { return Note("draw"); }
    BUFFER_HEADER* TouchDownSelf(const KCEventData&, Rect&) override { return Note("finger down"); }
    BUFFER_HEADER* TouchDragSelf(const KCEventData&, double, double, Rect&) override { return Note("finger drag"); }
    BUFFER_HEADER* TouchUpSelf(const KCEventData&, Rect&) override { return Note("finger up"); }
    BUFFER_HEADER* KeySelf(const KCEventData&, bool& isHandled) override {
        isHandled = takesKeys;
        return Note("key");
    }
    void UpdatePointerSelf(size_t) noexcept override { ++numPointerUpdates; }

    using KCGUIControl::GetInk;
    using KCGUIControl::m_direction;
    using KCGUIControl::m_disableMode;
    using KCGUIControl::m_images;
    using KCGUIControl::m_selectionImages;

    std::vector<ERegisterType> gestures{kRegister_DragVertical, kRegister_Wheel, kRegister_Keys};
    std::vector<std::string> hooks;
    bool keepsNotes = true;
    bool takesKeys = false;
    int numPointerUpdates = 0;

  private:
    BUFFER_HEADER* Note(const char* hook) {
        if (keepsNotes)
            hooks.emplace_back(hook);
        return nullptr;
    }
};

class TestHome : public KCControlHome {
  public:
    TestHome() { marked.reserve(64); }
    void AddControlToRedraw(KCGUIControl& control) noexcept override { marked.push_back(&control); }
    const KCTheme& GetTheme() const noexcept override { return theme; }
    KCGUIControl* FindControl(const KCFixedStringBase&) noexcept override { return nullptr; }
    KCGUIControl* GetTextFocus() const noexcept override { return nullptr; }
    void SetTextFocus(KCGUIControl*) noexcept override {}

    KCTheme theme;
    std::vector<KCGUIControl*> marked;
};

// A recorded picture as YAML.
inline std::string PictureText(const kvGS::KCGraphicStreamBinaryWriter& writer) {
    kvGS::KCGraphicStreamToYAML yaml;
    EXPECT_EQ(writer.GetError(), kErr_NoErr);
    EXPECT_EQ(yaml.ExecStream(writer), kErr_NoErr);
    return std::string(yaml.GetText());
}

inline bool Contains(const std::string& text, const char* part) { return text.find(part) != std::string::npos; }

// An algorithm of ThreeParams and one control of 100 by 200 pixels at (10, 20).
class OneControl : public ::testing::Test {
  protected:
    using KCEventData = PluginViewManager::KCEventData;
    using Type = PluginViewManager::KEEventType;
    using Rect = KURect<double>;

    OneControl() : alg(ThreeParams()) {
        alg.FinishCreate();
        control.SetRect(Rect::FromOrigin({10, 20}, {100, 200}));
        control.SetHome(&home);
        control.FinishCreate();
        control.UpdateRedrawControl();
    }
    ~OneControl() override { control.UnRegisterAll(); }

    KCParamRegistrationData& Add(size_t param, ERegisterType type, KUModifiers modifiers = {}) {
        EXPECT_EQ(control.Register(&alg, param, KCRegisterInfo(type, modifiers)), 0);
        alg.TakeLog();
        return *control.GetParamData(control.GetParamDataVec().size() - 1);
    }
    static KCEventData At(double x, double y, KUModifiers modifiers = {}) {
        KCEventData event;
        event.type = Type::MouseDown;
        event.position = event.dragStart = {x, y};
        event.modifiers = modifiers;
        return event;
    }
    bool Press(KCEventData event = At(60, 120)) {
        bool isHandled = false;
        Execute(control.MouseDown(event, redraw, isHandled));
        return isHandled;
    }
    void Drag(double dx, double dy, KUModifiers modifiers = {}) {
        Execute(control.MouseDrag(At(60, 120, modifiers), dx, dy, redraw));
    }
    void Up(KUModifiers modifiers = {}) { Execute(control.MouseUp(At(60, 120, modifiers), redraw)); }
    void Wheel(double notches) { Execute(control.MouseWheel(At(60, 120), 0.0, notches, redraw)); }
    bool Key(uint32_t key, KUModifiers modifiers = {}) {
        KCEventData event = At(60, 120, modifiers);
        event.key = key;
        bool isHandled = false, isGestureEnd = false;
        Execute(control.HandleKeyEvent(event, isHandled, isGestureEnd));
        EXPECT_EQ(isHandled, isGestureEnd);
        return isHandled;
    }
    void Execute(cALGORITHM::BUFFER_HEADER* chain) { alg.ExecuteAndDisposeBuffer(chain); }
    double State(size_t param) const { return alg.GetParamState(param); }
    size_t Count(const std::string& line) const {
        return static_cast<size_t>(std::count(alg.log.begin(), alg.log.end(), line));
    }

    RecordingAlgorithm alg;
    TestHome home;
    TestControl control;
    Rect redraw;
};

} // namespace kvTest
