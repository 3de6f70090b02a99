#include <clocale>

#include "host.h"

int main(int argc, char** argv) {
    // As hosts do: whatever the library prints and reads must not depend on it.
    std::setlocale(LC_ALL, "");
    return kvKorvoV12_9_0_320::kvHost::RunHost(argc, argv);
}
