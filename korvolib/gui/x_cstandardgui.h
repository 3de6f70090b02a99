// CStandardGUI_X: a window of a plug-in, from its description "GUIXML": controls, theme, selection, gestures, undo
// steps, and the recording of the picture. It needs no display: a view hands events in and plays the recorded
// stream.
//
//   CStandardGUI_X window;
//   window.Create(algorithm);                          // reads "GUIXML"; what was wrong is in GetProblems
//   window.SetHistory(undoManager);                    // one step for each gesture; null for none
//   window.MouseDown(event); window.MouseDrag(event);  // each takes the lock, executes and disposes its chain
//   window.MouseUp(event);
//   window.DrawDirty(writer); window.Draw(writer);     // what has changed, or all
//
// A gesture is from pointer down to pointer up (or lost, or the window closed): its parameters are touched at the
// start and released at the end, whatever happens between. A wheel step, a key, a menu choice and a typed text are
// whole gestures. Every gesture links, and is one undo step if all its parameters may be saved to undo.
//
// Thread: [main]; takes the algorithm's lock itself. The algorithm outlives the window. After Create, events
// allocate nothing.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <vector>

#include <korvolib/gui/drawable.h>
#include <korvolib/gui/gui_control.h>
#include <korvolib/gui/theme.h>
#include <korvolib/undo/undo_command.h>

namespace kvKorvoV12_9_0_320 {

class KORVO_API CStandardGUI_X : public CSelectableHome, public KCControlHome {
  public:
    using BUFFER_HEADER = cALGORITHM::BUFFER_HEADER;
    using KCEventData = PluginViewManager::KCEventData;
    using Writer = kvGS::KCGraphicStreamBinaryWriter;
    using Rect = KURect<double>;

    CStandardGUI_X();
    ~CStandardGUI_X() override; // Close
    CStandardGUI_X(const CStandardGUI_X&) = delete;
    CStandardGUI_X& operator=(const CStandardGUI_X&) = delete;

    // Life -----------------------------------------------------------------------------------------------------
    /// Builds the window once. kErr_NullArgument without a "GUIXML", the codes of KCXMLElement::Parse for one that
    /// does not read, kErr_BadDescription where parts had to be left out: the rest of the window works.
    int32_t Create(cALGORITHM& algorithm);
    int32_t Create(cALGORITHM& algorithm, const char* xml);
    /// Another skin of the same controls, by their names.
    int32_t UpdateFromXML(const char* xml);
    int32_t WriteToXML(KCXMLElement& element) const;
    /// Ends every gesture; the controls are gone.
    void Close();
    const std::vector<sDESCRIPTION_PROBLEM>& GetProblems() const noexcept { return m_problems; }
    /// Steps go there at the end of gestures; not owned, null for none.
    void SetHistory(Undo::KTUndoManagerType* history) noexcept { m_history = history; }
    /// Told of each change of the history: the parameter of a step. Null for nobody.
    void SetStepListener(std::function<void(size_t paramIndex)> listener) { m_onStep = std::move(listener); }
    RM::KCResContainer& GetResources() noexcept { return m_resources; }

    // Events -----------------------------------------------------------------------------------------------------
    // True when a control took it. Positions in the window's pixels; an event that is not finite is ignored.
    bool MouseOver(const KCEventData& event);
    bool MouseDown(const KCEventData& event);
    bool MouseDrag(const KCEventData& event); // deltas are from the last position of the pointer
    bool MouseUp(const KCEventData& event);
    void MouseLost(); // no release will come: the gesture ends as it stands
    bool MouseWheel(const KCEventData& event, double deltaX, double deltaY); // notches; up is more
    bool TouchDown(const KCEventData& event);
    bool TouchDrag(const KCEventData& event);
    bool TouchLongDown(const KCEventData& event);
    bool TouchPinch(const KCEventData& event);
    bool TouchUp(const KCEventData& event);
    bool Key(const KCEventData& event);
    /// Typed text for the control that has the text focus, or the selected one: characters as they come.
    bool Text(const char* utf8);
    /// What a menu of a control chose: a state number of its first menu registration.
    bool MenuChoice(const KCFixedStringBase& controlName, int32_t choice);
    /// From the view's timer: refresh marks of parameters, hover delays.
    void Idle(double timeSeconds);

    // Picture ----------------------------------------------------------------------------------------------------
    KUSize<double> GetSize() const noexcept { return m_size; }
    bool NeedsRedraw() const noexcept { return !m_dirty.empty() || m_needsWholeRedraw; }
    /// The whole window as one picture of a stream; settles every mark.
    int32_t Draw(Writer& writer);
    /// The controls that are marked, each with what stands on top of it, as one picture; nothing when none is.
    int32_t DrawDirty(Writer& writer);

    // Controls ---------------------------------------------------------------------------------------------------
    size_t GetNumControls() const noexcept { return m_controls.size(); }
    KCGUIControl* GetControl(size_t number) noexcept;
    KCGUIControl* FindControl(const KCFixedStringBase& name) noexcept override; // the first of that name
    KCGUIControl* FindControlAt(KUPoint<double> point) noexcept;                // the topmost that is hit
    KCGUIControl* FindControlOfParam(size_t paramIndex) noexcept;               // the first with that lead
    cALGORITHM* GetAlgorithm() const noexcept { return m_algorithm; }

    /// Joins chains in order; the buffers of one event are one update.
    static BUFFER_HEADER* ChainBuffers(BUFFER_HEADER* first, BUFFER_HEADER* second);

    // KCControlHome
    void AddControlToRedraw(KCGUIControl& control) noexcept override;
    const KCTheme& GetTheme() const noexcept override { return m_theme; }
    KCGUIControl* GetTextFocus() const noexcept override { return m_textFocus; }
    void SetTextFocus(KCGUIControl* control) noexcept override { m_textFocus = control; }
    void BuildSelectableListSelf(std::vector<CSelectable*>& list) override;

  private:
    cALGORITHM* m_algorithm = nullptr;
    KUSize<double> m_size;
    KCTheme m_theme;
    RM::KCResContainer m_resources;
    std::vector<std::unique_ptr<KCGUIControl>> m_controls;
    std::vector<std::unique_ptr<CDrawable>> m_drawables;
    std::vector<KCGUIControl*> m_dirty; // room for all
    std::vector<sDESCRIPTION_PROBLEM> m_problems;
    KCGUIControl* m_captured = nullptr; // by the pointer
    KCGUIControl* m_hovered = nullptr;
    KCGUIControl* m_textFocus = nullptr;
    KUPoint<double> m_lastPosition;
    bool m_needsWholeRedraw = true;
    Undo::KTUndoManagerType* m_history = nullptr;
    std::function<void(size_t)> m_onStep;
};

/// Makes a control of a class that a description names ("Knob", "Fader", …); null for an unknown name.
KORVO_API std::unique_ptr<KCGUIControl> MakeControlOfClass(const char* className);

} // namespace kvKorvoV12_9_0_320
