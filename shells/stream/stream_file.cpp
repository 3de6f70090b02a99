#include <shells/stream/stream_file.h>

#include <cstring>
#include <fstream>
#include <iterator>

namespace korvoStream {

using namespace kvKorvo::kvGS;

bool ReadFile(const std::string& path, kvKorvo::KCStMemObj& bytes) {
    std::ifstream file(path, std::ios::binary);
    char block[65536];
    bytes.Clear();
    while (file.read(block, sizeof block) || file.gcount() != 0) {
        if (bytes.Append(block, static_cast<size_t>(file.gcount())) != 0)
            return false;
    }
    return file.eof() && !file.bad();
}

bool WriteFile(const std::string& path, std::string_view bytes) {
    std::ofstream file(path, std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    return file.good();
}

int32_t RecordLister::Add(std::span<const uint8_t> bytes, size_t offset) {
    SGSHeader header;
    std::memcpy(&header, bytes.data(), sizeof header);
    m_records.push_back({header.code, offset, header.size});
    return 0;
}

std::span<const uint8_t> FolderImages::GetImagePNG(int32_t resID) noexcept {
    try {
        const auto [entry, isNew] = m_files.try_emplace(resID);
        if (isNew && !ReadFile(m_folder + "/" + std::to_string(resID) + ".png", entry->second))
            entry->second.Clear();
        return entry->second.GetBytes();
    } catch (...) {
        return {};
    }
}

} // namespace korvoStream
