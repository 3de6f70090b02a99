// Must say: (deleted|use of overloaded)
// A call whose brackets were forgotten would fall into the bool overload and write "true".
#include <korvolib/utilities/strings/fixed_string.h>

int Number();

void Write() {
    kvKorvo::KCFixedString<31> text;
    text << Number();
#ifdef MISTAKE
    text << Number;
#endif
}
