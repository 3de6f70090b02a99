#include <tests/support/source_file.h>

#include <fstream>
#include <sstream>

namespace kvTest {

std::string ReadSourceFile(const std::string& path) {
    const std::ifstream file(std::string(KORVO_SOURCE_DIR "/") + path);
    std::ostringstream text;
    if (file)
        text << file.rdbuf();
    return text.str();
}

void WriteSourceFile(const std::string& path, const std::string& text) {
    std::ofstream(std::string(KORVO_SOURCE_DIR "/") + path, std::ios::binary) << text;
}

} // namespace kvTest
