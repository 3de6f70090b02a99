// The small roles that controls play beside being controls: neighbours in a list, being hovered over, hearing that
// something they show is out of date, using pictures from a container. And what a control knows of its window.
// Thread: [main].
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <span>
#include <vector>

#include <korvolib/export.h>
#include <korvolib/graphicstream/painter.h>
#include <korvolib/utilities/strings/fixed_string.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320 {

class KCGUIControl;
class KCTheme;
class cALGORITHM;

/// A node that knows the one before and the one after it.
template <class T>
class KCNeighborable {
  public:
    virtual ~KCNeighborable() = default;
    /// Forgets both neighbours, who keep this one: whoever builds the list resets all of it.
    virtual void Reset() {
        m_previous = T{};
        m_next = T{};
    }
    T GetPrevious() const noexcept { return m_previous; }
    T GetNext() const noexcept { return m_next; }
    void SetPrevious(T previous) noexcept { m_previous = previous; }
    void SetNext(T next) noexcept { m_next = next; }

  private:
    T m_previous{};
    T m_next{};
};

/// Whether the pointer is over it, and since when.
class KORVO_API KCMouseHover {
  public:
    virtual ~KCMouseHover() = default;
    bool IsHovering() const noexcept { return m_isHovering; }
    /// Seconds of the event's clock; only the first call of a stay counts.
    void BeginHover(double timeSeconds) noexcept;
    void EndHover() noexcept { m_isHovering = false; }
    double GetHoverSeconds(double nowSeconds) const noexcept; // 0 while not hovering

  private:
    bool m_isHovering = false;
    double m_sinceSeconds = 0.0;
};

/// Hears that something it shows has changed.
class KORVO_API KCNeedToDrawListener {
  public:
    virtual ~KCNeedToDrawListener() = default;
    virtual void OnNeedToDraw() noexcept = 0;
};

namespace RM {

/// Pictures by resource id: what descriptions name and graphic streams refer to. The bytes are copied in.
class KORVO_API KCResContainer : public kvGS::KCGSImageProvider {
  public:
    /// 0, kErr_NullArgument without bytes, kErr_MalformedText for what is no PNG file; an id that is there is
    /// replaced.
    int32_t AddImage(int32_t resID, std::span<const uint8_t> png);
    bool HasImage(int32_t resID) const noexcept { return m_images.contains(resID); }
    std::span<const uint8_t> GetImagePNG(int32_t resID) noexcept override;

  private:
    std::map<int32_t, std::vector<uint8_t>> m_images;
};

/// Uses pictures of a container that outlives it.
class KORVO_API KCResContainerUser {
  public:
    virtual ~KCResContainerUser() = default;
    void SetResContainer(KCResContainer* container) noexcept { m_container = container; }
    KCResContainer* GetResContainer() const noexcept { return m_container; } // null without one

  private:
    KCResContainer* m_container = nullptr;
};

} // namespace RM

/// What a control knows of the window it stands in.
class KORVO_API KCControlHome {
  public:
    virtual ~KCControlHome() = default;
    /// The control has marked itself; the window will ask NeedToRedrawControl. Allocates nothing.
    virtual void AddControlToRedraw(KCGUIControl& control) noexcept = 0;
    virtual const KCTheme& GetTheme() const noexcept = 0;
    /// Ids are names of a description; null for an unknown one.
    virtual KCGUIControl* FindControl(const KCFixedStringBase& id) noexcept = 0;
    /// The control that typed text goes to, or null; a control asks for it and gives it back.
    virtual KCGUIControl* GetTextFocus() const noexcept = 0;
    virtual void SetTextFocus(KCGUIControl* control) noexcept = 0;
};

} // namespace kvKorvoV12_9_0_320
