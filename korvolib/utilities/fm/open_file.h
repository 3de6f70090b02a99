// Open files: reading and writing through a KTOpenFileType.
//
// The C-style layer; the classes of file.h own an open file each and are what most code wants. The layer keeps no
// buffer: a read or write is one system call, repeated only when the system did a part of it. Every call may wait
// for the disk: never from the audio thread. An open file is not for two threads at once.
//
// Sharing holds among all users of this library, in one process and across processes, and a conflict is
// kErr_SharingViolation at once, without waiting:
//
//   - those who only read share the file;
//   - a CreateAFile for reading and writing shares it with those who only read;
//   - every other pair with a writer in it is refused.
//
// Other programs are not kept out. Nor is anyone on a file system without locks, where files open all the same.
// (Underneath, open files lock two bytes at offsets 2^62 and 2^62 + 1: the writer's byte, exclusive, by all who
// write; the reader's byte, shared by those who read as above, exclusive by other writers.)
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include <korvolib/export.h>
#include <korvolib/utilities/mem_obj.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320::FM {

class KCStPath;
struct KTPathType;

/// An opaque reference to an open file. All ones, GetInvalidOpenFileRef, is no file: kErr_InvalidFileRef
/// everywhere.
struct KTOpenFileType;

/// What an opener may do. Any value that is not named here is as None.
enum class KEPermitions : int32_t {
    Read = 0,
    Write = 1, ///< The cursor starts at the end of the file; it may be moved from there.
    ReadWrite = 2,
    None = -1, ///< The file can be asked for its size, and closed.
};

/// Any other value makes a call fail with kErr_Generic.
enum class KECreateFlags : int32_t {
    OpenOrCreate = 0,
    CreateNew = 1,    ///< kErr_FileAlreadyExists if it exists.
    CreateAlways = 2, ///< An existing file becomes empty.
};

enum class KEPositionMode : int32_t { FromStart = 0, FromCurrent = 1, FromEnd = 2 };

[[nodiscard]] KORVO_API KTOpenFileType* GetInvalidOpenFileRef() noexcept;
/// False for the invalid reference and for null.
[[nodiscard]] KORVO_API bool IsValidOpenFileRef(const KTOpenFileType* file) noexcept;

// Opening. `out` is the invalid reference unless the result is 0. A folder is kErr_Generic.

/// Opens a file that exists.
[[nodiscard]] KORVO_API int32_t OpenFile(KTPathType* path, KEPermitions permissions, KTOpenFileType*& out) noexcept;
[[nodiscard]] KORVO_API int32_t OpenFile(const KCStPath& path, KEPermitions permissions,
                                         KTOpenFileType*& out) noexcept;
/// Makes the folders that lead to the file, then opens or creates it. A create that is refused loses nothing. The
/// last argument means nothing.
[[nodiscard]] KORVO_API int32_t CreateAFile(KTPathType* path, KECreateFlags flags, KEPermitions permissions,
                                            KTOpenFileType*& out, unsigned short ignored = 0) noexcept;
[[nodiscard]] KORVO_API int32_t CreateAFile(const KCStPath& path, KECreateFlags flags, KEPermitions permissions,
                                            KTOpenFileType*& out, unsigned short ignored = 0) noexcept;
/// Makes a file with a new name, which only this user may read, open for reading and writing: in the given folder
/// or in the system's folder for temporary files. The caller deletes it, and disposes of `path`.
[[nodiscard]] KORVO_API int32_t CreateTempFile(KTOpenFileType*& out, KTPathType*& path) noexcept;
[[nodiscard]] KORVO_API int32_t CreateTempFile(KTPathType* folder, KTOpenFileType*& out,
                                               KTPathType*& path) noexcept;
/// Leaves the invalid reference behind, also when the system reports that written data was lost.
KORVO_API int32_t CloseFile(KTOpenFileType*& file) noexcept;

// Reading and writing at the cursor, which moves on by what was done. kErr_NullArgument for a null buffer with a
// count.

/// `done` is less than `count` only at the end of the file or with an error.
[[nodiscard]] KORVO_API int32_t ReadFromFile(KTOpenFileType* file, void* buffer, size_t count,
                                             size_t& done) noexcept;
/// `done` is less than `count` only with an error.
[[nodiscard]] KORVO_API int32_t WriteToFile(KTOpenFileType* file, const void* buffer, size_t count,
                                            size_t& done) noexcept;
/// Bytes from the start; 0 on failure.
[[nodiscard]] KORVO_API int32_t GetFileCursor(KTOpenFileType* file, long& position) noexcept;
/// kErr_UnknownPositionMode for a mode that is none. kErr_Generic, and the cursor stays, for an offset outside
/// signed 32 bits and for a target before the start or beyond 2^31 - 1.
[[nodiscard]] KORVO_API int32_t SetFileCursor(KTOpenFileType* file, long offset, KEPositionMode mode) noexcept;
/// Cuts the file or fills it up with zeros; the cursor stays.
[[nodiscard]] KORVO_API int32_t SetFileSize(KTOpenFileType* file, uint64_t size) noexcept;
/// Returns when all that was written is on the medium.
[[nodiscard]] KORVO_API int32_t FlushFileBuffers(KTOpenFileType* file) noexcept;
[[nodiscard]] KORVO_API int32_t GetFileSizeFromOpenFileRef(KTOpenFileType* file, uint64_t& size) noexcept;

// Whole files. Outputs are empty unless the result is 0. What does not state its size (a pipe) is read to its end,
// up to 1 GiB: kErr_LimitExceeded.

[[nodiscard]] KORVO_API int32_t ReadTheWholeFile(KTPathType* path, std::string& out) noexcept;
[[nodiscard]] KORVO_API int32_t ReadTheWholeFile(const KCStPath& path, std::string& out) noexcept;
[[nodiscard]] KORVO_API int32_t ReadFileToKCStMemObj(KTPathType* path, KCStMemObj& out) noexcept;
[[nodiscard]] KORVO_API int32_t ReadFileToKCStMemObj(const KCStPath& path, KCStMemObj& out) noexcept;
/// `data` has `size` bytes; null for an empty file.
[[nodiscard]] KORVO_API int32_t GetDataPtrFromBinFile(KTPathType* path, std::unique_ptr<uint8_t[]>& data,
                                                      size_t& size) noexcept;
[[nodiscard]] KORVO_API int32_t GetDataPtrFromBinFile(const KCStPath& path, std::unique_ptr<uint8_t[]>& data,
                                                      size_t& size) noexcept;
/// Makes the file hold exactly these bytes. An existing one is replaced in one step, as ReplaceFile does it.
[[nodiscard]] KORVO_API int32_t WriteFileFromKCStMemObj(KTPathType* path, const KCStMemObj& from) noexcept;
[[nodiscard]] KORVO_API int32_t WriteFileFromKCStMemObj(const KCStPath& path, const KCStMemObj& from) noexcept;

} // namespace kvKorvoV12_9_0_320::FM
