#include <korvolib/gui/controls/value_text.h>

#include <korvolib/gui/controls/draw_shapes_internal.h>

#include <string_view>

namespace kvKorvoV12_9_0_320 {

namespace {

constexpr uint32_t kFirstPrintable = 0x20;
constexpr uint32_t kLastCodePoint = 0x10FFFF;

bool IsCharacter(uint32_t key) noexcept {
    const bool isControl = key < kFirstPrintable || (key >= 0x7F && key < 0xA0);
    const bool isSurrogate = key >= 0xD800 && key < 0xE000;
    return !isControl && !isSurrogate && key <= kLastCodePoint;
}

// UTF-8 (RFC 3629).
KCFixedString<7> EncodeCharacter(uint32_t key) noexcept {
    KCFixedString<7> text;
    const auto put = [&text](uint32_t byte) { text << static_cast<char>(byte); };
    const auto putRest = [&put, key](int shift) { put(0x80u | (key >> shift & 0x3Fu)); };
    if (key < 0x80) {
        put(key);
    } else if (key < 0x800) {
        put(0xC0u | key >> 6);
        putRest(0);
    } else if (key < 0x10000) {
        put(0xE0u | key >> 12);
        putRest(6);
        putRest(0);
    } else {
        put(0xF0u | key >> 18);
        putRest(12);
        putRest(6);
        putRest(0);
    }
    return text;
}

void EraseLastCharacter(KCFixedStringBase& text) noexcept {
    size_t kept = text.size();
    while (kept > 0 && (static_cast<unsigned char>(text[kept - 1]) & 0xC0u) == 0x80u)
        --kept;
    text.resize(kept > 0 ? kept - 1 : 0);
}

} // namespace

std::unique_ptr<KCBaseControl> KCValueText::Clone() const { return CloneControl(*this); }

std::span<const ERegisterType> KCValueText::GetDefaultGestures() const {
    static constexpr ERegisterType kGestures[] = {kRegister_Wheel, kRegister_Keys, kRegister_Text};
    return kGestures;
}

KCValueText::Rect KCValueText::GetValueRectSelf(size_t) const { return GetBounds(); }

KECursor KCValueText::ChangeCursor(const KCEventData& event) const {
    return CanEnterText() && IsVisible() && !IsDisabled() ? KECursor::Text : KCGUIControl::ChangeCursor(event);
}

bool KCValueText::IsEditing() const noexcept {
    return m_isEditing && (GetHome() == nullptr || GetHome()->GetTextFocus() == this);
}

void KCValueText::BeginEditing() {
    const size_t registration = WhichParamIndexCanEnterText();
    if (registration >= m_params.size() || IsEditing())
        return;
    m_params[registration].UpdateValue(m_typed);
    m_isEditing = true;
    m_isUntouched = true;
    if (GetHome() != nullptr)
        GetHome()->SetTextFocus(this);
    SetNeedToRedrawControl();
}

void KCValueText::EndEditing() noexcept {
    m_isEditing = false;
    if (GetHome() != nullptr && GetHome()->GetTextFocus() == this)
        GetHome()->SetTextFocus(nullptr);
    SetNeedToRedrawControl();
}

void KCValueText::ForgetRefusal() noexcept {
    if (!m_isRefused)
        return;
    m_isRefused = false;
    SetNeedToRedrawControl();
}

void KCValueText::TakeCharacter(uint32_t codePoint) {
    const KCFixedString<7> character = EncodeCharacter(codePoint);
    if (!GetAcceptableCharacters().empty() &&
        GetAcceptableCharacters().find(character.c_str()) == KCFixedStringBase::npos)
        return;
    if (m_isUntouched)
        m_typed.clear();
    m_isUntouched = false;
    if (m_typed.size() + character.size() <= m_typed.capacity()) // half a character would be no text
        m_typed << character;
    SetNeedToRedrawControl();
}

KCValueText::BUFFER_HEADER* KCValueText::Commit() {
    const bool isUntouched = m_isUntouched;
    EndEditing();
    if (isUntouched)
        return nullptr;
    bool isAccepted = false;
    BUFFER_HEADER* const chain = EnterText(WhichParamIndexCanEnterText(), m_typed, isAccepted);
    m_isRefused = !isAccepted;
    return chain;
}

void KCValueText::TakeBackspace() {
    if (m_isUntouched)
        m_typed.clear();
    m_isUntouched = false;
    EraseLastCharacter(m_typed);
    SetNeedToRedrawControl();
}

KCValueText::BUFFER_HEADER* KCValueText::KeySelf(const KCEventData& event, bool& isHandled) {
    ForgetRefusal();
    const bool isEnter = event.key == PluginViewManager::kKey_Enter;
    if (!IsEditing()) {
        isHandled = isEnter && CanEnterText();
        if (isHandled)
            BeginEditing();
        return nullptr;
    }
    // With Primary alone a character is a command of the host; with Alt too it may be typed so.
    isHandled = !(IsCharacter(event.key) && event.IsModifierDown(KEModifier::Primary) &&
                  !event.IsModifierDown(KEModifier::Alt));
    if (!isHandled)
        return nullptr; // all else stays here: arrows and the like would move what is being typed over
    if (isEnter)
        return Commit();
    if (event.key == PluginViewManager::kKey_Escape)
        EndEditing();
    else if (event.key == PluginViewManager::kKey_Backspace)
        TakeBackspace();
    else if (IsCharacter(event.key))
        TakeCharacter(event.key);
    return nullptr;
}

KCValueText::BUFFER_HEADER* KCValueText::MouseDownSelf(const KCEventData& event, Rect&, bool& isHandled) {
    ForgetRefusal();
    isHandled = isHandled || (event.modifiers.IsEmpty() && CanEnterText());
    return nullptr;
}

// A press that has become a drag may move the value, where a registration says so; one that stayed wants to type.
KCValueText::BUFFER_HEADER* KCValueText::MouseUpSelf(const KCEventData& event, Rect&) {
    if (event.modifiers.IsEmpty() && !IsDragDropDistance(event))
        BeginEditing();
    return nullptr;
}

KCValueText::BUFFER_HEADER* KCValueText::TouchUpSelf(const KCEventData& event, Rect& redraw) {
    return MouseUpSelf(event, redraw);
}

KCValueText::BUFFER_HEADER* KCValueText::MouseOverSelf(const KCEventData&, Rect&) {
    ForgetRefusal();
    return nullptr;
}

KCValueText::BUFFER_HEADER* KCValueText::MouseWheelSelf(const KCEventData&, double, double, Rect&) {
    ForgetRefusal();
    return nullptr;
}

void KCValueText::GetDrawInstructionsControlBackground(Writer& writer) const {
    KCShapes shapes(writer, *this);
    const KCTheme& theme = shapes.Theme();
    const Rect field = GetBounds();
    const bool isEditing = IsEditing();
    KUColor frame = isEditing ? theme.accent : IsHighlighted() ? theme.bodyLight : theme.panelFrame;
    KUColor ink = theme.text;
    KCFixedString<127> text;
    if (isEditing || m_isRefused)
        text = m_typed;
    else if (GetParamData(0) != nullptr && !GetParamData(0)->GetValueWin().IsShown())
        ValueText(GetParamData(0), text);
    if (m_isRefused)
        frame = ink = theme.warning;
    shapes.Rounded(field, theme.cornerRadius, theme.track);
    if (isEditing && m_isUntouched) // all of it will be replaced
        shapes.Rounded(field.Inset(3.0, 3.0), theme.cornerRadius - 2.0, theme.selection.WithAlpha(90));
    shapes.RoundedFrame(field, theme.cornerRadius, 1.0, frame);
    if (isEditing && !m_isUntouched)
        text << '|';
    shapes.Text(text, field.Inset(4.0, 1.0), theme.valueHeight, ink);
}

} // namespace kvKorvoV12_9_0_320
