// What a concrete control may do after the base has handled an event: nothing, unless it overrides.
#include <korvolib/gui/gui_control.h>

namespace kvKorvoV12_9_0_320 {

using BUFFER_HEADER = cALGORITHM::BUFFER_HEADER;

bool KCGUIControl::ShouldAcceptMouseWheelEvent(const KCEventData&) const { return false; }

BUFFER_HEADER* KCGUIControl::MouseDraw(const KCEventData& event, Rect& redraw) {
    if (!TakesInput(event))
        return nullptr;
    BUFFER_HEADER* const chain = MouseDrawSelf(event, redraw);
    AddRedraw(redraw);
    return chain;
}

BUFFER_HEADER* KCGUIControl::MouseDownSelf(const KCEventData&, Rect&, bool&) { return nullptr; }

BUFFER_HEADER* KCGUIControl::MouseOverSelf(const KCEventData&, Rect&) { return nullptr; }

BUFFER_HEADER* KCGUIControl::MouseDragSelf(const KCEventData&, double, double, Rect&) { return nullptr; }

BUFFER_HEADER* KCGUIControl::MouseUpSelf(const KCEventData&, Rect&) { return nullptr; }

BUFFER_HEADER* KCGUIControl::MouseWheelSelf(const KCEventData&, double, double, Rect&) { return nullptr; }

BUFFER_HEADER* KCGUIControl::MouseDrawSelf(const KCEventData&, Rect&) { return nullptr; }

BUFFER_HEADER* KCGUIControl::KeySelf(const KCEventData&, bool&) { return nullptr; }

BUFFER_HEADER* KCGUIControl::EnterTextSelf(size_t, const KCFixedStringBase&, bool&) { return nullptr; }

int32_t KCGUIControl::ReadFromXMLCustom(const KCXMLElement&, Problems&) { return kErr_NoErr; }

int32_t KCGUIControl::ReadFromXMLAdditionalBitmapListSelf(const KCXMLElement&, Problems&) { return kErr_NoErr; }

int32_t KCGUIControl::UpdateXMLAdditionalBitmapListSelf(const KCXMLElement&, Problems&) { return kErr_NoErr; }

int32_t KCGUIControl::WriteFromXMLAdditionalBitmapListSelf(KCXMLElement&) const { return kErr_NoErr; }

} // namespace kvKorvoV12_9_0_320
