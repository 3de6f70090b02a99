// CXMLable: what reads itself from an element of a description and writes itself back. Controls and drawables
// derive from it. Called by whoever holds the algorithm's lock; the caller keeps the element.
#pragma once

#include <cstdint>

#include <korvolib/export.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320 {

class KCXMLElement;

class KORVO_API CXMLable {
  public:
    virtual ~CXMLable() = default;

    /// Takes its settings from the element. kErr_BadDescription for an element that has no meaning here.
    [[nodiscard]] virtual int32_t ReadFromXML(const KCXMLElement& element) = 0;
    /// Puts its settings into the element, so that ReadFromXML of it gives an equal object.
    [[nodiscard]] virtual int32_t WriteToXML(KCXMLElement& element) const = 0;

  protected:
    CXMLable() noexcept = default;
    CXMLable(const CXMLable&) noexcept = default;
    CXMLable& operator=(const CXMLable&) noexcept = default;
};

} // namespace kvKorvoV12_9_0_320
