// Puts the whole process into de_DE.UTF-8, where printf writes 0,5, for as long as it lives, and back to "C" then.
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
