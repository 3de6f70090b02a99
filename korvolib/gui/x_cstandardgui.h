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
// What it draws of a control ends at the control's bounds, and at its selection picture's: so a changed control can
// be drawn again together with just what it overlaps, at a price that does not grow with the window. Playing
// DrawDirty over the picture before gives the picture that Draw gives.
//
// An exception of a plug-in's hook passes to the caller unchanged; the gesture has ended then, the lock is given
// back.
//
// Thread: [main]; takes the algorithm's lock itself, for each event from its first call until its blocks have been
// executed. The algorithm outlives the window. After Create, events allocate nothing, but for the steps of a
// history.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <unordered_map>
#include <vector>

#include <korvolib/gui/drawable.h>
#include <korvolib/gui/drawn_menu.h>
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

    // Limits of a description; what comes after is reported and left out.
    static constexpr size_t kMaxControls = 4096;
    static constexpr size_t kMaxDrawables = 4096;
    static constexpr double kMaxSide = 16384.0; // of the window, in pixels
    static constexpr size_t kMaxFingers = 10;   // at a time; more are ignored

    CStandardGUI_X();
    ~CStandardGUI_X() override; // Close
    CStandardGUI_X(const CStandardGUI_X&) = delete;
    CStandardGUI_X& operator=(const CStandardGUI_X&) = delete;

    // Life -----------------------------------------------------------------------------------------------------
    /// Builds the window, once until Close: kErr_Generic while it stands. kErr_NullArgument without a "GUIXML", the
    /// codes of KCXMLElement::Parse for one that does not read, kErr_BadDescription where parts had to be left out:
    /// the rest of the window works.
    int32_t Create(cALGORITHM& algorithm);
    int32_t Create(cALGORITHM& algorithm, const char* xml);
    /// Another skin of the same controls, by their names; those it does not name stay as they are. Ends every
    /// gesture. The codes of Create, kErr_Generic before Create.
    int32_t UpdateFromXML(const char* xml);
    /// A description that builds this window again.
    int32_t WriteToXML(KCXMLElement& element) const;
    /// Ends every gesture; the controls are gone.
    void Close();
    const std::vector<sDESCRIPTION_PROBLEM>& GetProblems() const noexcept { return m_problems; }
    /// Steps go there at the end of gestures; not owned, null for none.
    void SetHistory(Undo::KTUndoManagerType* history) noexcept { m_history = history; }
    /// Told of each gesture that went into the history: the parameter of its step. Null for nobody.
    void SetStepListener(std::function<void(size_t paramIndex)> listener) { m_onStep = std::move(listener); }
    RM::KCResContainer& GetResources() noexcept { return m_resources; }

    // Events -----------------------------------------------------------------------------------------------------
    // True when a control took it. Positions in the window's pixels; an event that is not finite is ignored, and so
    // is one that a hook sends from inside an event.
    bool MouseOver(const KCEventData& event);
    bool MouseDown(const KCEventData& event); // a second one without a release ends the gesture before
    bool MouseDrag(const KCEventData& event); // deltas are from the last position of the pointer
    bool MouseUp(const KCEventData& event);
    void MouseLost(); // no release will come: the gesture ends as it stands
    bool MouseWheel(const KCEventData& event, double deltaX, double deltaY); // notches; up is more
    bool TouchDown(const KCEventData& event);
    bool TouchDrag(const KCEventData& event);
    bool TouchLongDown(const KCEventData& event);
    bool TouchPinch(const KCEventData& event);
    bool TouchUp(const KCEventData& event);
    /// Tab moves the selection; other keys go to the control that has the text focus, or the selected one. An arrow
    /// that the selected one has no use for moves the selection too.
    bool Key(const KCEventData& event);
    /// Typed text for the same control: characters as they come. Bytes that are no UTF-8 are left out.
    bool Text(const char* utf8);
    /// A whole text for a control, as if typed and committed. False for an unknown control and a refused text.
    bool EnterText(const KCFixedStringBase& controlName, const KCFixedStringBase& text);
    /// What a menu of a control chose: a state number of its first menu registration.
    bool MenuChoice(const KCFixedStringBase& controlName, int32_t choice);
    /// The control that was pressed with the right button and offers choices (GetControlPopupMenuHandler); null
    /// when there is none. The window draws them over everything. A press on a row chooses as MenuChoice does, any
    /// other closes the menu and does nothing else; the wheel scrolls; of the keys, arrows, page keys, Home and End
    /// move the highlighted row, Enter and Space choose it, Escape and Tab close.
    KCGUIControl* GetOpenMenu() const noexcept { return m_openMenu; }
    void CloseMenu() noexcept;
    /// False for a view that shows the choices in a menu of its own, and answers with MenuChoice or CloseMenu; the
    /// next press closes it too, and goes on to what it meets. True unless told.
    void SetDrawsMenus(bool drawsMenus) noexcept;
    /// The menu that is drawn over the window; null when none is.
    const KCDrawnMenu* GetDrawnMenu() const noexcept { return IsMenuDrawn() ? &m_menu : nullptr; }
    /// From the view's timer: what parameters ask for (refresh marks, disabled and hidden ones), hover delays.
    void Idle(double timeSeconds);

    // Picture ----------------------------------------------------------------------------------------------------
    KUSize<double> GetSize() const noexcept { return m_size; }
    /// [any]
    bool NeedsRedraw() const noexcept { return m_needsRedraw.load(std::memory_order_relaxed); }
    /// The whole window as one picture of a stream; settles every mark. kErr_Generic before Create, or the
    /// writer's.
    int32_t Draw(Writer& writer);
    /// The controls that are marked, each with what it overlaps, as one picture without a ground of its own; all of
    /// the window when a control has been moved; nothing when none is marked.
    int32_t DrawDirty(Writer& writer);

    // Controls ---------------------------------------------------------------------------------------------------
    size_t GetNumControls() const noexcept { return m_controls.size(); }
    KCGUIControl* GetControl(size_t number) noexcept; // in the description's order; null past the end
    KCGUIControl* FindControl(const KCFixedStringBase& name) noexcept override; // the first of that name
    KCGUIControl* FindControlAt(KUPoint<double> point) const;                   // the topmost that is hit
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

  protected:
    /// A control of a class that a description names, or null; MakeControlOfClass unless overridden, as for classes
    /// of a plug-in's own.
    virtual std::unique_ptr<KCGUIControl> MakeControlSelf(const char* className);

  private:
    class sEVENT;

    // A control, and where it was when the overlaps were found.
    struct sPLACE {
        std::unique_ptr<KCGUIControl> control;
        int32_t line = 0; // of the description
        Rect rect;
        bool isTopmost = false;
        bool isMarked = false; // it is in m_dirty
        bool isHiddenByParam = false;
        bool overlapsMany = false;       // too many for lists: everything is looked at
        std::vector<uint32_t> drawables; // that it overlaps, in drawing order
        std::vector<uint32_t> overlaps;  // controls, this one included, in drawing order
    };

    // From the press of a pointer to its release.
    struct sGESTURE {
        KCGUIControl* control = nullptr; // null: none
        int64_t touchID = 0;
        KUPoint<double> press;
        KUPoint<double> last;
        bool hasMoved = false; // a parameter of the control
        bool isCarrying = false;
        double carriedState = 0.0;
        KCGUIControl* dropTarget = nullptr;
        BUFFER_HEADER* pending = nullptr; // of a control that does not execute immediately
    };

    // Description
    int32_t Parse(const char* xml, KCXMLElement& root);
    int32_t Build(const KCXMLElement& root);
    int32_t Rebuild(const KCXMLElement& root);
    int32_t Finish();
    void ReadSize(const KCXMLElement& root);
    void ReadLook(const KCXMLElement& root);
    std::vector<std::unique_ptr<CDrawable>> ReadDrawables(const KCXMLElement& root);
    void ReadControls(const KCXMLElement& root);
    void ReadControl(const KCXMLElement& element);
    void Keep(std::unique_ptr<KCGUIControl> control, const KCXMLElement& element);
    void NameLinkGroups();
    void ResolveDependents();
    void ResolveDependents(sPLACE& place, const std::vector<KCFixedString<63>>& ids);
    void Arrange();
    void FindControlsOfParams();
    void FindOverlaps(sPLACE& place);
    void Report(int32_t line, const char* before, const char* name = nullptr, const char* after = "");
    void Forget() noexcept;

    // Events
    template <class Handler>
    void Send(sGESTURE& gesture, Handler handler);
    template <class Handler>
    bool SendWhole(KCGUIControl& control, Handler handler);
    bool Press(sGESTURE& gesture, const KCEventData& event, bool isTouch);
    bool Drag(sGESTURE& gesture, const KCEventData& event, bool isTouch);
    bool Lift(sGESTURE& gesture, const KCEventData& event, bool isTouch);
    void Carry(sGESTURE& gesture, const KCEventData& event);
    void Drop(sGESTURE& gesture, const KCEventData& event);
    void SetDropTarget(sGESTURE& gesture, KCGUIControl* target);
    void Execute(sGESTURE& gesture, BUFFER_HEADER* chain);
    void EndGesture(sGESTURE& gesture);
    void AbandonGesture(sGESTURE& gesture) noexcept;
    void EndAllGestures();
    void EndStrandedGestures();
    void InsertStep(const KCGUIControl& control);
    void RememberStates(const KCGUIControl& control);
    bool HaveStatesChanged(const KCGUIControl& control) const noexcept;
    sGESTURE* FindTouch(int64_t touchID) noexcept;
    sGESTURE* FindCapture(const KCGUIControl& control) noexcept;
    void SelectByPress(KCGUIControl* control, const KCEventData& event);
    void LeaveText(const KCGUIControl* next);
    KCGUIControl* GetKeyTarget() const;
    bool SendKey(const KCEventData& event);
    bool SendKeyTo(KCGUIControl& target, const KCEventData& event);
    bool MoveSelectionByArrow(const KCEventData& event);
    void HoverOver(KCGUIControl* control, const KCEventData& event);
    void SendHover(double timeSeconds);
    void RefreshParam(size_t index);
    void FollowHiddenParam(size_t index);

    // Menu
    bool IsMenuDrawn() const noexcept { return m_openMenu != nullptr && m_drawsMenus; }
    void OpenMenu(KCGUIControl& control);
    bool FindDrawnMenu(); // and closes one that is out of date
    void PressMenu(KUPoint<double> point);
    bool SendMenuKey(uint32_t key);
    bool Choose(KCGUIControl& control, int32_t choice);
    void MarkMenu(bool hasChanged = true) noexcept;
    bool IsMenuTouched() const;
    void RecordMenu(Writer& writer) const;

    // Picture
    kvGS::SGSStream DescribePicture(bool isWhole) noexcept;
    int32_t DrawAll(Writer& writer);
    void RecordAll(Writer& writer) const;
    void RecordAround(Writer& writer, const sPLACE& place) const;
    void RecordDrawable(Writer& writer, const CDrawable& drawable) const;
    void RecordControl(Writer& writer, const sPLACE& place) const;
    void RecordCarried(Writer& writer) const;
    static bool HasMoved(const sPLACE& place);
    static bool IsTopmost(const KCGUIControl& control);
    void Settle() noexcept;
    void AskForAll() noexcept;
    static Rect DrawnRect(const KCGUIControl& control);
    static Rect DrawnRect(const CDrawable& drawable) noexcept;

    cALGORITHM* m_algorithm = nullptr;
    KUSize<double> m_size;
    KCTheme m_theme;
    RM::KCResContainer m_resources;
    std::vector<std::unique_ptr<CDrawable>> m_drawables;
    std::vector<sPLACE> m_controls;
    std::vector<uint32_t> m_order; // as they are drawn: those that draw topmost last
    std::map<KCFixedString<127>, KCGUIControl*> m_byName;
    std::unordered_map<const KCGUIControl*, uint32_t> m_numbers;
    std::vector<std::vector<uint32_t>> m_controlsOfParam;
    std::vector<sDESCRIPTION_PROBLEM> m_problems;

    std::vector<uint32_t> m_dirty; // room for all
    bool m_needsAll = true;
    std::atomic<bool> m_needsRedraw{false};
    uint64_t m_numPictures = 0;

    sGESTURE m_mouse;
    sGESTURE m_hover; // one stay over a control
    std::array<sGESTURE, kMaxFingers> m_touches;
    std::vector<double> m_states; // of the control that an event goes to, before it
    KCGUIControl* m_hovered = nullptr;
    KUPoint<double> m_hoverPosition;
    KUModifiers m_hoverModifiers;
    KCGUIControl* m_textFocus = nullptr;
    KCGUIControl* m_openMenu = nullptr;
    KCDrawnMenu m_menu; // of m_openMenu
    bool m_drawsMenus = true;
    bool m_isMenuMarked = false;
    bool m_isInEvent = false;
    bool m_isCloseWanted = false; // inside an event
    Undo::KTUndoManagerType* m_history = nullptr;
    std::function<void(size_t)> m_onStep;
};

/// Makes a control of a class that a description names ("Knob", "Fader", …); null for an unknown name.
KORVO_API std::unique_ptr<KCGUIControl> MakeControlOfClass(const char* className);

} // namespace kvKorvoV12_9_0_320
