#include <korvolib/utilities/fm/file.h>

#include <utility>

#include <korvolib/utilities/fm/open_file_internal.h>
#include <korvolib/utilities/fm/path_internal.h>

namespace kvKorvoV12_9_0_320::FM {

namespace {

template <class Out>
int32_t ReadRest(KTOpenFileType* file, Out& out) {
    uint64_t size = 0;
    int32_t result = GetFileSizeFromOpenFileRef(file, size);
    if (result != kErr_NoErr)
        return result;
    long cursor = 0;
    if (GetFileCursor(file, cursor) != kErr_NoErr)
        size = 0; // a pipe has no cursor and states no size
    const auto passed = static_cast<uint64_t>(cursor);
    return ReadToEnd(HandleOfFile(file), size > passed ? size - passed : 0, out);
}

} // namespace

KCStFile::~KCStFile() { Close(); }

int32_t KCStFile::GetFileSize(uint64_t& size) const noexcept { return GetFileSizeFromOpenFileRef(m_file, size); }
int32_t KCStFile::GetCursor(long& position) const noexcept { return GetFileCursor(m_file, position); }
int32_t KCStFile::FlushBuffers() noexcept { return FlushFileBuffers(m_file); }
int32_t KCStFile::Close() noexcept { return CloseFile(m_file); }

int32_t KCStFile::base_ReadToStdString(std::string& out) noexcept {
    out.clear();
    const int32_t result = ReadRest(m_file, out);
    if (result != kErr_NoErr)
        out.clear();
    return result;
}

int32_t KCStFile::base_ReadToKCStMemObj(KCStMemObj& out) noexcept {
    out.Clear();
    const int32_t result = ReadRest(m_file, out);
    if (result != kErr_NoErr)
        out.Clear();
    return result;
}

int32_t KCStFile::base_WriteFromString(std::string_view text) noexcept {
    size_t done = 0;
    return base_Write(text.data(), text.size(), done);
}

int32_t KCStFile::base_WriteFromString(const char* text) noexcept {
    if (!IsValid())
        return kErr_InvalidFileRef;
    return text == nullptr ? kErr_NullArgument : base_WriteFromString(std::string_view(text));
}

int32_t KCStFile::base_WriteFromKCStMemObj(const KCStMemObj& from) noexcept {
    size_t done = 0;
    return base_Write(from.GetData(), from.GetSize(), done);
}

KCStFileRead::KCStFileRead(KTPathType* path) noexcept { m_openResult = OpenFile(path, KEPermitions::Read, m_file); }

KCStFileWrite::KCStFileWrite(KTPathType* path) noexcept {
    m_openResult = OpenFile(path, KEPermitions::Write, m_file);
}

KCStFileCreate::KCStFileCreate(KTPathType* path, KECreateFlags flags, KEPermitions permissions) noexcept {
    m_openResult = CreateAFile(path, flags, permissions, m_file);
}

KCStTempFile::KCStTempFile() noexcept {
    KTPathType* path = nullptr;
    m_openResult = CreateTempFile(m_file, path);
    m_path.TakeOver(path);
}

KCStTempFile::KCStTempFile(const KCStPath& folder) noexcept {
    KTPathType* path = nullptr;
    m_openResult = CreateTempFile(folder.GetPathRef(), m_file, path);
    m_path.TakeOver(path);
}

KCStTempFile::~KCStTempFile() {
    Close();
    if (m_path)
        RemoveNewFile(NativeOf(m_path.GetPathRef()));
}

int32_t KCStTempFile::TakeOver(KCStPath& path) noexcept {
    path.Clear();
    const int32_t result = Close();
    if (result == kErr_NoErr)
        path = std::exchange(m_path, KCStPath());
    return result;
}

} // namespace kvKorvoV12_9_0_320::FM
