// Opening, and reading and writing to the end, for the sources of the file layer.
#pragma once

#include <cstddef>
#include <cstdint>

#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/fm/open_file.h>
#include <korvolib/utilities/fm/platform.h>

namespace kvKorvoV12_9_0_320::FM {

// A reference is the handle plus one: so null is no file either, and nothing has to be allocated or can leak.
inline KTOpenFileType* FileOfHandle(int handle) noexcept {
    return reinterpret_cast<KTOpenFileType*>(static_cast<intptr_t>(handle) + 1);
}
/// -1 for what is no reference of ours.
inline int HandleOfFile(const KTOpenFileType* file) noexcept {
    const auto value = reinterpret_cast<intptr_t>(file) - 1;
    return value >= 0 && value < INT32_MAX ? static_cast<int>(value) : -1;
}

/// Whom an opener that reads and writes shares the file with.
enum class KESharing : uint8_t { Nobody, Readers };

/// Opens, refuses folders, takes the locks. The handle is -1 unless the result is 0.
int32_t OpenHandle(const char* path, const sOpenHow& how, KESharing sharing, int& handle,
                   sObjectInfo& info) noexcept;
/// Takes back a file that was just made.
void RemoveNewFile(const char* path) noexcept;
/// 0, or what the system says of data it could not keep.
int32_t CloseHandle(int handle) noexcept;
/// A new file in a folder, locked as CreateAFile does it for reading and writing.
int32_t CreateTempIn(KTPathType* folder, uint32_t mode, KTOpenFileType*& out, KTPathType*& path) noexcept;
/// All of it, or up to the end, or an error; `done` says how much.
int32_t ReadFully(int handle, void* to, size_t size, size_t& done) noexcept;
int32_t WriteFully(int handle, const void* from, size_t size, size_t& done) noexcept;

/// The largest file that is read without its having stated a size.
constexpr size_t kMaxUnstatedSize = size_t{1} << 30;

/// Reads from the cursor to the end into what `resize(size)` (a result code) makes room for at `data()`. Trusts the
/// stated number of bytes, if any, so that a file of that size takes one read and one block.
template <class Resize, class Data>
int32_t ReadToEnd(int handle, uint64_t stated, Resize resize, Data data) noexcept {
    constexpr size_t kFirstGuess = 16384;
    size_t filled = 0;
    size_t room = stated == 0 ? kFirstGuess : static_cast<size_t>(stated);
    for (;;) {
        if (const int32_t result = resize(room); result != kErr_NoErr)
            return result;
        size_t done = 0;
        if (const int32_t result = ReadFully(handle, data() + filled, room - filled, done); result != kErr_NoErr)
            return result;
        filled += done;
        if (filled == stated || filled < room)
            return resize(filled);
        if (room >= kMaxUnstatedSize)
            return kErr_LimitExceeded;
        room *= 2;
    }
}

/// The two places that whole files are read to.
int32_t ReadToEnd(int handle, uint64_t stated, std::string& out) noexcept;
int32_t ReadToEnd(int handle, uint64_t stated, KCStMemObj& out) noexcept;

} // namespace kvKorvoV12_9_0_320::FM
