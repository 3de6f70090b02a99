// Cursor, size and flush of an open file.

#include <korvolib/utilities/fm/open_file_internal.h>
#include <korvolib/utilities/fm/path_internal.h>

namespace kvKorvoV12_9_0_320::FM {

namespace {

int Seek(int handle, int64_t offset, KESeekFrom from, int64_t& position) {
    return Uninterrupted([&] { return CurrentPlatform().Seek(handle, offset, from, position); });
}

// The cursor's reach is that of a signed 32-bit position, whatever it starts from.
int32_t SeekWithinReach(int handle, int64_t offset, KESeekFrom from) {
    int64_t before = 0;
    int64_t position = 0;
    int error = from == KESeekFrom::Start ? 0 : Seek(handle, 0, KESeekFrom::Current, before);
    if (error == 0)
        error = Seek(handle, offset, from, position);
    if (error != 0 || position <= INT32_MAX)
        return TranslateSystemError(error);
    error = Seek(handle, before, KESeekFrom::Start, position);
    return error != 0 ? TranslateSystemError(error) : kErr_Generic;
}

} // namespace

int32_t GetFileCursor(KTOpenFileType* file, long& position) noexcept {
    position = 0;
    if (!IsValidOpenFileRef(file))
        return kErr_InvalidFileRef;
    int64_t now = 0;
    const int error = Seek(HandleOfFile(file), 0, KESeekFrom::Current, now);
    position = static_cast<long>(now);
    return TranslateSystemError(error);
}

int32_t SetFileCursor(KTOpenFileType* file, long offset, KEPositionMode mode) noexcept {
    if (!IsValidOpenFileRef(file))
        return kErr_InvalidFileRef;
    if (mode != KEPositionMode::FromStart && mode != KEPositionMode::FromCurrent && mode != KEPositionMode::FromEnd)
        return kErr_UnknownPositionMode;
    if (offset < INT32_MIN || offset > INT32_MAX)
        return kErr_Generic;
    constexpr KESeekFrom kFrom[] = {KESeekFrom::Start, KESeekFrom::Current, KESeekFrom::End};
    return SeekWithinReach(HandleOfFile(file), offset, kFrom[static_cast<int>(mode)]);
}

int32_t SetFileSize(KTOpenFileType* file, uint64_t size) noexcept {
    if (!IsValidOpenFileRef(file))
        return kErr_InvalidFileRef;
    return TranslateSystemError(Uninterrupted([&] { return CurrentPlatform().SetSize(HandleOfFile(file), size); }));
}

int32_t FlushFileBuffers(KTOpenFileType* file) noexcept {
    if (!IsValidOpenFileRef(file))
        return kErr_InvalidFileRef;
    return TranslateSystemError(Uninterrupted([&] { return CurrentPlatform().Flush(HandleOfFile(file)); }));
}

int32_t GetFileSizeFromOpenFileRef(KTOpenFileType* file, uint64_t& size) noexcept {
    size = 0;
    if (!IsValidOpenFileRef(file))
        return kErr_InvalidFileRef;
    sObjectInfo info;
    const int error = Uninterrupted([&] { return CurrentPlatform().InfoOfHandle(HandleOfFile(file), info); });
    size = info.size;
    return TranslateSystemError(error);
}

} // namespace kvKorvoV12_9_0_320::FM
