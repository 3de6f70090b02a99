// KCControlPopupMenuHandler: the choices that a control offers when it is pressed with the right button. The window
// draws them, or its view shows them in a menu of its own and hands the choice back (CStandardGUI_X::MenuChoice).
// Thread: [main], with the algorithm's lock held. Nothing allocates.
#pragma once

#include <cstddef>
#include <cstdint>

#include <korvolib/export.h>
#include <korvolib/utilities/strings/fixed_string.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320 {

class cALGORITHM;

class KORVO_API KCControlPopupMenuHandler {
  public:
    virtual ~KCControlPopupMenuHandler() = default;
    virtual int32_t GetNumChoices() const = 0;
    /// `text` is empty for a choice outside of 0 … GetNumChoices() − 1.
    virtual void GetChoiceText(int32_t choice, KCFixedStringBase& text) const = 0;
    /// The one that is chosen now; −1 for none.
    virtual int32_t GetCurrentChoice() const = 0;
};

/// The states of a discrete parameter, each by its text: a value with its units, as its control shows it.
class KORVO_API KCStateMenu final : public KCControlPopupMenuHandler {
  public:
    /// More states than this are no menu that anybody could read.
    static constexpr int32_t kMaxChoices = 1000;

    /// Null, or a parameter that is not there or not discrete, has no choices.
    void SetParam(const cALGORITHM* algorithm, size_t paramIndex) noexcept;
    int32_t GetNumChoices() const override;
    void GetChoiceText(int32_t choice, KCFixedStringBase& text) const override;
    int32_t GetCurrentChoice() const override;

  private:
    const cALGORITHM* m_algorithm = nullptr;
    size_t m_paramIndex = 0;
};

} // namespace kvKorvoV12_9_0_320
