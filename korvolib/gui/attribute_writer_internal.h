// Sets attributes of one element, those that say something, and keeps the first error.
#pragma once

#include <cstdint>

#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/xml/xml_element.h>

namespace kvKorvoV12_9_0_320::GUIDescription {

class AttributeWriter {
  public:
    explicit AttributeWriter(KCXMLElement& element) noexcept : m_element(element) {}

    AttributeWriter& Set(const char* name, const KUXMLValue& value) noexcept {
        if (m_result == kErr_NoErr)
            m_result = m_element.SetAttribute(name, value);
        return *this;
    }
    template <class Value>
    AttributeWriter& SetUnless(const Value& usual, const char* name, const Value& value) noexcept {
        return value == usual ? *this : Set(name, value);
    }
    int32_t GetResult() const noexcept { return m_result; }

  private:
    KCXMLElement& m_element;
    int32_t m_result = kErr_NoErr;
};

} // namespace kvKorvoV12_9_0_320::GUIDescription
