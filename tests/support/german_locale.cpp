#include <tests/support/german_locale.h>

#include <clocale>
#include <cstdlib>
#include <cstring>

namespace kvTest {

GermanLocale::GermanLocale() {
    setenv("LOCPATH", KORVO_TEST_LOCALES, 1);
    m_isActive = std::setlocale(LC_ALL, "de_DE.ISO-8859-1") != nullptr &&
                 std::strcmp(std::localeconv()->decimal_point, ",") == 0;
}

GermanLocale::~GermanLocale() {
    std::setlocale(LC_ALL, "C");
    unsetenv("LOCPATH");
}

} // namespace kvTest
