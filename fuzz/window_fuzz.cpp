// A description, a NUL, and bytes that are events: whatever they say, gestures balance, parameters stay in range
// and the streams that the window records are well formed.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include <korvolib/graphicstream/binary_writer.h>
#include <korvolib/graphicstream/to_svg.h>
#include <korvolib/gui/window_test_internal.h>

using namespace kvWindowTest;
using namespace PluginViewManager;

namespace {

// The bytes of the events; 0 behind their end.
class Bytes {
  public:
    Bytes(const uint8_t* data, size_t size) : m_at(data), m_end(data + size) {}
    bool IsAtEnd() const { return m_at == m_end; }
    uint8_t Take() { return m_at == m_end ? 0 : *m_at++; }

  private:
    const uint8_t* m_at;
    const uint8_t* m_end;
};

KCEventData TakeEvent(Bytes& bytes, KEEventType type) {
    constexpr uint32_t kKeys[] = {kKey_Tab, kKey_Enter, kKey_Escape, kKey_Backspace, kKey_Left, kKey_Right,
                                  kKey_Up,  kKey_Down,  kKey_PageUp, kKey_PageDown,  kKey_Home, kKey_End};
    KCEventData event;
    event.type = type;
    event.position = {2.0 * bytes.Take(), 2.0 * bytes.Take()};
    const uint8_t more = bytes.Take();
    for (uint32_t i = 0; i < kNumModifiers; ++i)
        event.modifiers.Set(static_cast<KEModifier>(i), (more >> i & 1) != 0);
    event.numClicks = 1 + (more >> 4 & 1);
    event.touchID = more >> 5;
    event.key = kKeys[more % std::size(kKeys)];
    event.pinchScale = event.position.x / 128.0;
    event.timeSeconds = event.position.y;
    return event;
}

void Send(CStandardGUI_X& window, Bytes& bytes, CStandardGUI_X::Writer& writer) {
    switch (bytes.Take() % 16) {
    case 0:
        window.MouseDown(TakeEvent(bytes, KEEventType::MouseDown));
        break;
    case 1:
        window.MouseDrag(TakeEvent(bytes, KEEventType::MouseDrag));
        break;
    case 2:
        window.MouseUp(TakeEvent(bytes, KEEventType::MouseUp));
        break;
    case 3: {
        const KCEventData event = TakeEvent(bytes, KEEventType::MouseWheel);
        const double across = bytes.Take() - 128.0;
        window.MouseWheel(event, across, bytes.Take() - 128.0);
        break;
    }
    case 4:
        window.MouseOver(TakeEvent(bytes, KEEventType::MouseOver));
        break;
    case 5:
        window.MouseOver(TakeEvent(bytes, KEEventType::MouseOut));
        break;
    case 6:
        window.TouchDown(TakeEvent(bytes, KEEventType::TouchDown));
        break;
    case 7:
        window.TouchDrag(TakeEvent(bytes, KEEventType::TouchDrag));
        break;
    case 8:
        window.TouchUp(TakeEvent(bytes, KEEventType::TouchUp));
        break;
    case 9:
        window.TouchPinch(TakeEvent(bytes, KEEventType::TouchPinch));
        break;
    case 10:
        window.Key(TakeEvent(bytes, KEEventType::Key));
        break;
    case 11: {
        const char text[] = {static_cast<char>(bytes.Take()), static_cast<char>(bytes.Take()), 0};
        window.Text(text);
        break;
    }
    case 12:
        if (KCGUIControl* const control = window.GetControl(bytes.Take()); control != nullptr)
            window.MenuChoice(control->GetName(), bytes.Take());
        break;
    case 13:
        window.Idle(bytes.Take());
        break;
    case 14:
        window.MouseLost();
        break;
    default:
        writer.ClearStream();
        if (window.DrawDirty(writer) != 0)
            std::abort();
    }
}

void Check(bool isTrue) {
    if (!isTrue)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const auto* const nul = static_cast<const uint8_t*>(size == 0 ? nullptr : std::memchr(data, 0, size));
    const size_t length = nul == nullptr ? size : static_cast<size_t>(nul - data);
    sWINDOW window(std::string(reinterpret_cast<const char*>(data), length));
    CStandardGUI_X::Writer writer;
    if (window.window.GetAlgorithm() != nullptr) {
        for (Bytes bytes(data + length, size - length); !bytes.IsAtEnd();)
            Send(window.window, bytes, writer);
        writer.ClearStream();
        Check(window.window.Draw(writer) == 0);
        kvGS::KCGraphicStreamToSVG svg;
        Check(svg.ExecStream(writer) == 0);
    }
    window.window.Close();
    Check(IsBalanced(window.algorithm.log));
    for (size_t index = 0; index < window.algorithm.GetNumParams(); ++index)
        Check(window.State(index) >= 0.0 && window.State(index) <= 1000.0);
    return 0;
}
