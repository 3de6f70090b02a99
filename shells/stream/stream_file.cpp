#include <shells/stream/stream_file.h>

#include <cstring>

#include <korvolib/utilities/fm/open_file.h>
#include <korvolib/utilities/fm/path.h>

namespace korvoStream {

using namespace kvKorvo::kvGS;

bool ReadFile(const std::string& path, kvKorvo::KCStMemObj& bytes) {
    return kvKorvo::FM::ReadFileToKCStMemObj(kvKorvo::FM::KCStPath(path.c_str()), bytes) == 0;
}

bool WriteFile(const std::string& path, std::string_view bytes) {
    kvKorvo::KCStMemObj block;
    return block.Append(bytes) == 0 &&
           kvKorvo::FM::WriteFileFromKCStMemObj(kvKorvo::FM::KCStPath(path.c_str()), block) == 0;
}

int32_t RecordLister::Add(std::span<const uint8_t> bytes, size_t offset) {
    SGSHeader header;
    std::memcpy(&header, bytes.data(), sizeof header);
    m_records.push_back({header.code, offset, header.size});
    return 0;
}

std::span<const uint8_t> FolderImages::GetImagePNG(int32_t resID) noexcept {
    if (m_folder.empty())
        return {}; // not the root folder's pictures
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
