// Puts the whole process into a German locale for as long as it lives, and back to "C" then. printf writes 0,5, and
// since its texts are of ISO-8859-1, tolower turns the byte 0xC4 into 0xE4, which in UTF-8 it never does.
//
//   const GermanLocale german;
//   ASSERT_TRUE(german.IsActive());
#pragma once

namespace kvTest {

class GermanLocale {
  public:
    GermanLocale();
    ~GermanLocale();
    GermanLocale(const GermanLocale&) = delete;
    GermanLocale& operator=(const GermanLocale&) = delete;

    /// False when the locale could not be set, so that a test would prove nothing.
    bool IsActive() const { return m_isActive; }

  private:
    bool m_isActive;
};

} // namespace kvTest
