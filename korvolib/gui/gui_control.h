// KCGUIControl: what a window shows and a hand moves: KCBaseControl with a place, pictures, an enabled state, and
// the handling of pointer, wheel, touch, keys and typed text. It moves parameters through its registrations and
// returns the chain of blocks, which the window executes; it does not draw but records draw instructions when it is
// asked.
//
// A concrete control overrides the "Self" half of what it does differently, and the draw instructions of its own
// shape. Every event that is not finite, or meets a disabled or hidden control, changes nothing.
//
// Thread: [main], with the algorithm's lock held for events; drawing likewise, since it reads values. After
// FinishCreate neither allocates, but for the stream's own growth.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include <korvolib/graphicstream/records.h>
#include <korvolib/gui/base_control.h>
#include <korvolib/gui/event_data.h>
#include <korvolib/gui/interfaces.h>
#include <korvolib/gui/popup_menu.h>
#include <korvolib/gui/selectable.h>
#include <korvolib/utilities/color.h>
#include <korvolib/utilities/geometry.h>
#include <korvolib/utilities/xml/xmlable.h>

namespace kvKorvoV12_9_0_320 {

/// Which axis places and moves along: of faders and knobs.
enum class KEControlDirection : int32_t { Vertical, Horizontal, Both };

/// How a pointer looks over a control.
enum class KECursor : int32_t { Arrow, Hand, UpDown, LeftRight, Move, Text, NoEntry };

/// What a disabled control looks like: Dim draws it half transparent, Hide not at all, Ignore as ever.
enum class KEDisableMode : int32_t { Dim, Hide, Ignore };

class KORVO_API KCGUIControl : public KCBaseControl,
                               public CSelectable,
                               public CXMLable,
                               public KCMouseHover,
                               public KCNeedToDrawListener,
                               public RM::KCResContainerUser {
  public:
    using KCEventData = PluginViewManager::KCEventData;
    using Writer = kvGS::KCGraphicStreamBinaryWriter;
    using Rect = KURect<double>;

    ~KCGUIControl() override;

    int32_t WriteToXMLWithAlg(KCXMLElement& element, const cALGORITHM& algorithm) const override;
    int32_t ReadFromXMLWithAlg(const KCXMLElement& element, cALGORITHM& algorithm, Problems& problems) override;
    int32_t ReadFromXMLParameterList_Registration(const KCXMLElement& element, cALGORITHM& algorithm,
                                                  Problems& problems) override;
    int32_t FinishCreate() override;
    void SetControlFlag(EControlFlags flag, bool isOn) override;
    void UpdateDisabledMode() override;
    void UpdatePointer(size_t paramIndex) noexcept override;
    void DebugControl(KCFixedStringBase& text) const override;

    // New slots, in their order; a test reads the numbers.
    // ---------------------------------------------------------
    /// Reads an already built control anew: another skin.
    virtual int32_t UpdateFromXMLWithAlg(const KCXMLElement& element, cALGORITHM& algorithm, Problems& problems);
    virtual void Move(double dx, double dy);
    virtual void Resize(double width, double height);
    virtual Rect GetBounds() const;                       // in the window
    virtual size_t WhichParamIndexCanEnterText() const;   // of the registrations; kNoParam for none
    virtual Rect GetImageRect(size_t registration) const; // like all rectangles of registrations: in the window
    virtual Rect GetValueRect(size_t registration) const;
    virtual Rect GetMovementRect() const;  // where its moving part travels
    virtual Rect GetMouseDragRect() const; // where a press begins a drag
    virtual void GetValueWinText(size_t registration, KCFixedStringBase& text) const;
    virtual bool CanEnterText() const;
    /// For views that hide the pointer during a drag: where it comes back.
    virtual KUPoint<double> GetCursorPosOnRelease(const KCEventData& event) const;
    /// 0 … 1 in the movement rectangle, from its left top corner; beyond it the nearest end.
    virtual KUPoint<double> CalcRelativeClickPoint(const KCEventData& event) const;
    /// A delta of pixels as a delta of states. Discrete: one state for every 96, the rest stays in `residue`.
    /// Continuous: up to 2 pixels count as that many state steps, more as a share of the pixel range.
    virtual double ConvertMouseDeltaFromPixelsToState(double deltaPixels, double& residue, uint64_t registration,
                                                      int16_t pixelRange) const;
    virtual bool IsCyclicControl() const;
    virtual bool CanExecuteImmediately() const; // its chains go out with every event, not at the end of a gesture
    virtual bool ControlHandlesMultiSelect() const;
    virtual bool IsDisabled() const;
    virtual bool ShouldDrawTopmost() const; // beside the flag kControl_DrawTopmost, for what a state asks for
    virtual void SetDisabled();
    virtual void ClearDisabled();
    virtual Rect GetValueRectSelf(size_t registration) const;
    virtual Rect GetRectSelf() const;
    virtual void SetControlHighlightInfo(bool isHighlighted);
    virtual KECursor ChangeCursor(const KCEventData& event) const;
    virtual void UpdatePointerSelf(size_t paramIndex) noexcept;
    virtual BUFFER_HEADER* DoControlPopupMenuSelf(int32_t choice);
    virtual BUFFER_HEADER* MouseOver(const KCEventData& event, Rect& redraw);
    /// `redraw` grows by what has to be drawn; `isHandled` tells that the press began a gesture here.
    virtual BUFFER_HEADER* MouseDown(const KCEventData& event, Rect& redraw, bool& isHandled);
    virtual BUFFER_HEADER* MouseDrag(const KCEventData& event, double deltaX, double deltaY, Rect& redraw);
    virtual BUFFER_HEADER* MouseUp(const KCEventData& event, Rect& redraw);
    virtual BUFFER_HEADER* MouseWheel(const KCEventData& event, double deltaX, double deltaY, Rect& redraw);
    virtual BUFFER_HEADER* MouseDraw(const KCEventData& event, Rect& redraw); // a course drawn by hand
    virtual BUFFER_HEADER* TouchDown(const KCEventData& event, Rect& redraw, bool& isHandled);
    virtual BUFFER_HEADER* TouchDrag(const KCEventData& event, double deltaX, double deltaY, Rect& redraw);
    virtual BUFFER_HEADER* TouchLongDown(const KCEventData& event, Rect& redraw);
    virtual BUFFER_HEADER* TouchPinchGesture(const KCEventData& event, Rect& redraw);
    virtual BUFFER_HEADER* TouchUp(const KCEventData& event, Rect& redraw);
    /// A whole text for a registration. `isAccepted` is false for a text that the parameter refuses.
    virtual BUFFER_HEADER* EnterText(size_t registration, const KCFixedStringBase& text, bool& isAccepted);
    /// `isHandled`: the key meant something here. `isGestureEnd`: the key's change is complete.
    virtual BUFFER_HEADER* HandleKeyEvent(const KCEventData& event, bool& isHandled, bool& isGestureEnd);
    /// For views: the window itself goes by the registrations, and turns the wheel of whoever is registered to it.
    virtual bool ShouldAcceptMouseWheelEvent(const KCEventData& event) const;
    virtual void GetDrawInstructionsBkgColor(Writer& writer) const;
    virtual void GetDrawInstructionsParamsData(Writer& writer) const; // the windows that registrations have
    virtual void GetDrawInstructionsSelectionBitmap(Writer& writer) const;
    virtual void GetDrawInstructionsControlBackground(Writer& writer) const;
    virtual void GetDrawInstructionsForStaticTextBackground(Writer& writer) const;
    virtual int32_t GetGraphDataAsGraphicStream(Writer& writer, const Rect& rect) const;
    virtual void GetDrawInstructionsDefaultSelectionLevel(Writer& writer) const;
    virtual bool DragDropStart(const KCEventData& event, double& carriedState);
    virtual bool DragDropMove(const KCEventData& event,
                              double carriedState) const; // whether it could be dropped here
    virtual BUFFER_HEADER* DragDropStop(const KCEventData& event, double carriedState, Rect& redraw);
    virtual KCControlPopupMenuHandler* GetControlPopupMenuHandler();
    virtual void SetBkgColor(KUColor color);
    virtual void GetDrawInstructionsParamBitmapWindow(Writer& writer, size_t registration) const;
    virtual void GetDrawInstructionsDragDropImage(Writer& writer, KUPoint<double> position) const;
    virtual void GetDrawInstructionsParamValueWindow(Writer& writer, size_t registration) const;
    virtual void GetDrawInstructionsParamUnitsWindow(Writer& writer, size_t registration) const;
    virtual void GetDrawInstructionsParamLabelWindow(Writer& writer, size_t registration) const;
    virtual void GetDrawInstructionsParamGraphWindow(Writer& writer, size_t registration) const;
    virtual int32_t ReadFromXMLCustom(const KCXMLElement& element, Problems& problems);
    virtual int32_t ReadFromXMLAdditionalBitmapListSelf(const KCXMLElement& element, Problems& problems);
    virtual int32_t UpdateXMLAdditionalBitmapListSelf(const KCXMLElement& element, Problems& problems);
    virtual int32_t WriteFromXMLAdditionalBitmapListSelf(KCXMLElement& element) const;
    virtual KUPoint<double> GetTouchDelta(const KCEventData& event) const; // since the last touch event; y upwards
    virtual void ResetHoldPoint();
    virtual Rect GetSelectionBitmapRect() const;
    virtual bool IsPointInsideSelf(KUPoint<double> point) const; // of the window
    virtual bool DoYouIntersectSelf(const Rect& rect) const;
    virtual BUFFER_HEADER* MouseDownSelf(const KCEventData& event, Rect& redraw, bool& isHandled);
    virtual BUFFER_HEADER* MouseOverSelf(const KCEventData& event, Rect& redraw);
    virtual BUFFER_HEADER* MouseDragSelf(const KCEventData& event, double deltaX, double deltaY, Rect& redraw);
    virtual BUFFER_HEADER* MouseUpSelf(const KCEventData& event, Rect& redraw);
    virtual BUFFER_HEADER* MouseWheelSelf(const KCEventData& event, double deltaX, double deltaY, Rect& redraw);
    virtual BUFFER_HEADER* MouseDrawSelf(const KCEventData& event, Rect& redraw);
    virtual BUFFER_HEADER* TouchDownSelf(const KCEventData& event, Rect& redraw);
    virtual BUFFER_HEADER* TouchDragSelf(const KCEventData& event, double deltaX, double deltaY, Rect& redraw);
    virtual BUFFER_HEADER* TouchUpSelf(const KCEventData& event, Rect& redraw);
    virtual BUFFER_HEADER* KeySelf(const KCEventData& event, bool& isHandled);
    virtual BUFFER_HEADER* EnterTextSelf(size_t registration, const KCFixedStringBase& text, bool& isAccepted);
    virtual void SetNeedToRedrawControlOnly() noexcept; // marks this control, not its dependents
    virtual void UpdateRedrawControl() noexcept;        // the mark is settled: it has been drawn
    virtual bool NeedToRedrawControl() const noexcept;
    virtual bool ShouldDisableGUIControl() const; // all registered parameters are disabled, or the author says so
    virtual bool ShouldIgnoreMouseRightClick() const;
    /// What a parameter without a "Register" of its own answers to here. Drags register a second time with Shift,
    /// ten times finer, and with Primary to restore the reset state.
    virtual std::span<const ERegisterType> GetDefaultGestures() const;

    // Drawing --------------------------------------------------------------------------------------------------
    /// The whole control as one frame: background, static text, shape, parameters, selection. Hidden: nothing.
    void Draw(Writer& writer) const;
    void SetNeedToRedrawControl() noexcept; // this control and its dependents
    void OnNeedToDraw() noexcept override { SetNeedToRedrawControl(); }
    /// A selection shows: marks for redraw. (Stands behind the slots, as all overrides of the other bases do.)
    void SetSelectionSelf(int32_t minimum, int32_t maximum) override;
    /// Nobody can select what is hidden or disabled; what is selected may be deselected at any time.
    bool CanDoSelectionSelf(int32_t selection) const override;

    // Place and look --------------------------------------------------------------------------------------------
    Rect GetRect() const noexcept { return m_rect; }
    void SetRect(const Rect& rect);
    void SetRectOffset(KUPoint<double> offset) noexcept { m_rectOffset = offset; }
    bool IsPointInside(KUPoint<double> point) const { return IsVisible() && IsPointInsideSelf(point); }
    bool DoYouIntersect(const Rect& rect) const { return DoYouIntersectSelf(rect); }
    void Show();
    void Hide();
    /// Neither hidden nor, with KEDisableMode::Hide, disabled.
    bool IsVisible() const;
    KUColor GetColor() const noexcept { return m_color; }
    bool HasColor() const noexcept { return m_hasColor; }
    int32_t GetGroup() const noexcept { return m_group; } // radio buttons of one number
    KEControlDirection GetDirection() const noexcept { return m_direction; }
    KEDisableMode GetDisableMode() const noexcept { return m_disableMode; }
    bool IsHighlighted() const noexcept { return m_isHighlighted; }
    /// Multiplies both deltas of every drag; 1 unless told.
    double GetDragSensitivity() const noexcept { return m_dragSensitivity; }
    void SetDragSensitivity(double factor) noexcept;
    /// Length of the movement rectangle along the control's direction, the height where it has both; at least 1.
    int16_t GetPixelRange() const;
    const KCFixedString<31>& GetClassName() const noexcept { return m_className; }
    const KCFixedString<63>& GetAcceptableCharacters() const noexcept { return m_acceptableCharacters; }

    // Dependents: drawn again when this one is. Not owned: one that goes first is taken out before, by clearing ---
    void AddDependentPtr(KCGUIControl* dependent);
    void ClearDependentsList() noexcept;
    const std::vector<KCGUIControl*>& GetControlDependentsVector() const noexcept { return m_dependents; }
    const std::vector<KCFixedString<63>>& GetControlDependentsIDs() const noexcept { return m_dependentIDs; }
    const std::vector<KCFixedString<63>>& GetControlDrawDependentsIDs() const noexcept {
        return m_drawDependentIDs;
    }

    // Gesture ----------------------------------------------------------------------------------------------------
    /// From a press that this control took to its end.
    bool IsInGesture() const noexcept { return m_isInGesture; }
    /// The gesture carries a state (GetCarriedState) to where it ends; the window asks the control there.
    bool IsDragDropping() const noexcept { return m_isDragDropping; }
    double GetCarriedState() const noexcept { return m_carriedState; }
    /// Ends a gesture whose end will not come: every touched parameter is released. Safe at any time.
    void Release();
    /// Distance from the press on either axis from which a drag carries: more than 3 pixels.
    static bool IsDragDropDistance(const KCEventData& event) noexcept;

    // The description: one operation for each kind of item -------------------------------------------------------
    int32_t ReadFromXML(const KCXMLElement& element) override;
    int32_t WriteToXML(KCXMLElement& element) const override;
    int32_t ReadFromXMLClass(const KCXMLElement& element, Problems& problems);
    int32_t ReadFromXMLControlRect(const KCXMLElement& element, Problems& problems);
    int32_t ReadFromXMLControlRectOffset(const KCXMLElement& element, Problems& problems);
    int32_t ReadFromXMLControlColor(const KCXMLElement& element, Problems& problems);
    int32_t ReadFromXMLControlColorRect(const KCXMLElement& element, Problems& problems);
    int32_t ReadFromXMLControlGroup(const KCXMLElement& element, Problems& problems);
    int32_t ReadFromXMLDirection(const KCXMLElement& element, Problems& problems);
    int32_t ReadFromXMLDisableMode(const KCXMLElement& element, Problems& problems);
    int32_t ReadFromXMLImageList(const KCXMLElement& element, Problems& problems);
    int32_t ReadFromXMLBitmapList(const KCXMLElement& element, Problems& problems);
    int32_t ReadFromXMLSelectionImageList(const KCXMLElement& element, Problems& problems);
    int32_t ReadFromXMLAdditionalBitmapList(const KCXMLElement& element, Problems& problems);
    int32_t ReadFromXMLDependentsList(const KCXMLElement& element, Problems& problems);
    int32_t ReadFromXMLMaxSelection(const KCXMLElement& element, Problems& problems);
    int32_t ReadFromXMLAcceptableCharactersTextEntry(const KCXMLElement& element, Problems& problems);

    void SetHome(KCControlHome* home) noexcept { m_home = home; }
    KCControlHome* GetHome() const noexcept { return m_home; }
    const KCTheme& GetTheme() const noexcept; // the window's, or the library's own

  protected:
    KCGUIControl();
    /// The same description and registrations; not the window, the dependents or a gesture.
    KCGUIControl(const KCGUIControl& other);

    // What a concrete control builds its own events from -----------------------------------------------------
    /// The event is finite, and the control is to be seen and enabled.
    bool TakesInput(const KCEventData& event) const;
    /// Touches the parameter of a registration, once for all registrations of that parameter. In a gesture its end
    /// releases, otherwise EndSingleEvent.
    void TouchParamOf(size_t registration);
    void EndSingleEvent();
    /// Moves there, with a touch and, outside of a gesture, the release.
    BUFFER_HEADER* SetStateOf(size_t registration, double state);
    /// Whether the registration goes along with the horizontal axis: where the control has both directions, one
    /// that is registered to DragHorizontal and not to DragVertical, or whose role is "X".
    bool IsHorizontal(const KCParamRegistrationData& param) const;
    /// The state of the place under the pointer.
    double GetStateAtPoint(const KCParamRegistrationData& param, const KCEventData& event) const;
    /// A colour as it is drawn now: fainter while the control is disabled and dims.
    kvGS::SGSRGBAColor GetInk(KUColor color) const;
    /// A rectangle of a registration or of the description, which counts from the control's corner, in the window.
    Rect ToWindow(const Rect& rect) const;
    /// A text window of a registration, in the theme's font; a height or colour that it does not name is `height`
    /// and `color`.
    void DrawTextWin(Writer& writer, const sTEXT_WIN& win, const KCFixedStringBase& text, double height,
                     KUColor color) const;

    Rect m_rect;
    KUPoint<double> m_rectOffset;
    bool m_hasColor = false;
    KUColor m_color;
    bool m_hasColorRect = false;
    Rect m_colorRect;
    int32_t m_group = 0;
    KEControlDirection m_direction = KEControlDirection::Vertical;
    KEDisableMode m_disableMode = KEDisableMode::Dim;
    double m_dragSensitivity = 1.0;
    sBITMAP_WIN m_images;
    sBITMAP_WIN m_selectionImages;
    std::vector<sBITMAP_WIN> m_additionalImages;
    KCFixedString<31> m_className;
    KCFixedString<63> m_acceptableCharacters;
    bool m_isHighlighted = false;
    bool m_isInGesture = false;     // a MouseDownSelf that sets `isHandled` also begins one
    KUModifiers m_gestureModifiers; // of the last event of the gesture
    KUPoint<double> m_lastTouch;

  private:
    int16_t PixelRangeAlong(bool isHorizontal) const;
    BUFFER_HEADER* BeginPress(const KCEventData& event, bool& isHandled);
    BUFFER_HEADER* FirePress(size_t registration, const KCEventData& event);
    BUFFER_HEADER* DragBy(const KCEventData& event, double deltaX, double deltaY);
    BUFFER_HEADER* DragRegistration(size_t registration, KUModifiers keys, double deltaX, double deltaY);
    BUFFER_HEADER* DragAlong(size_t registration, double deltaPixels, bool isHorizontal);
    BUFFER_HEADER* FireRelease();
    BUFFER_HEADER* Hover(const KCEventData& event);
    BUFFER_HEADER* StepRegistration(size_t registration, double steps, ERegisterType type);
    BUFFER_HEADER* KeyRegistration(size_t registration, uint32_t key, bool& isHandled);
    BUFFER_HEADER* KeyAll(const KCEventData& event, bool& isHandled);
    void AdoptModifiers(KUModifiers modifiers);
    void AddRedraw(Rect& redraw) const;
    size_t FindRegistration(ERegisterType type) const; // kNoParam for none
    bool IsAcceptable(const KCFixedStringBase& text) const;
    void DrawImageOf(Writer& writer, const sBITMAP_WIN& images, int32_t image) const;
    void AddDefaultGestures(size_t registration);
    int32_t ReadLook(const KCXMLElement& element, Problems& problems);
    void UpdateParameterList(const KCXMLElement& list);
    int32_t WriteLook(KCXMLElement& element) const;
    int32_t WriteLists(KCXMLElement& element) const;

    bool m_needsRedraw = true;
    bool m_isDisabled = false;
    bool m_isDragPress = false; // the press lay where a drag begins
    bool m_isDragDropping = false;
    double m_carriedState = 0.0;
    KUModifiers m_pressModifiers;
    double m_wheelRest[2] = {0.0, 0.0}; // parts of notches: horizontal, vertical
    KCStateMenu m_menu;
    std::vector<KCGUIControl*> m_dependents;
    std::vector<KCFixedString<63>> m_dependentIDs;
    std::vector<KCFixedString<63>> m_drawDependentIDs;
    KCControlHome* m_home = nullptr;
    uint64_t m_markPass = 0; // of SetNeedToRedrawControl: who has been reached, and who is next
    KCGUIControl* m_nextToMark = nullptr;
};

} // namespace kvKorvoV12_9_0_320
