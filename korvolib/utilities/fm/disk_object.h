// Objects on disk, by their path: asking about them, making folders and links, deleting, moving, copying.
//
// The C-style layer; a null reference, or a KCStPath without a path, gives kErr_NullArgument or false. Every call
// goes to the disk and may wait for it: never from the audio thread. Links are followed by what asks, and never by
// what deletes or moves.
#pragma once

#include <cstdint>

#include <korvolib/export.h>
#include <korvolib/utilities/fm/open_file.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320::FM {

class KCStPath;
struct KTPathType;

// Asking.

/// True for every kind of object. A link exists when what it names does.
[[nodiscard]] KORVO_API bool DoesFileExist(KTPathType* path) noexcept;
[[nodiscard]] KORVO_API bool DoesFileExist(const KCStPath& path) noexcept;
/// With followLink a link counts as what it names, otherwise it is neither file nor folder.
[[nodiscard]] KORVO_API bool IsFile(KTPathType* path, bool followLink = true) noexcept;
[[nodiscard]] KORVO_API bool IsFile(const KCStPath& path, bool followLink = true) noexcept;
[[nodiscard]] KORVO_API bool IsFolder(KTPathType* path, bool followLink = true) noexcept;
[[nodiscard]] KORVO_API bool IsFolder(const KCStPath& path, bool followLink = true) noexcept;
/// A symbolic link, whether or not what it names exists.
[[nodiscard]] KORVO_API bool IsFileSystemLink(KTPathType* path) noexcept;
[[nodiscard]] KORVO_API bool IsFileSystemLink(const KCStPath& path) noexcept;
/// True while some opener of this library, here or in another process, keeps a writer out.
[[nodiscard]] KORVO_API bool IsLocked(KTPathType* path) noexcept;
[[nodiscard]] KORVO_API bool IsLocked(const KCStPath& path) noexcept;
/// Whether this process may write to it, as far as the permissions say.
[[nodiscard]] KORVO_API bool IsWritable(KTPathType* path) noexcept;
[[nodiscard]] KORVO_API bool IsWritable(const KCStPath& path) noexcept;
/// What this process may do to it; None on failure.
[[nodiscard]] KORVO_API int32_t GetPermissions(KTPathType* path, KEPermitions& out) noexcept;
[[nodiscard]] KORVO_API int32_t GetPermissions(const KCStPath& path, KEPermitions& out) noexcept;
/// In bytes. kErr_Generic for a folder.
[[nodiscard]] KORVO_API int32_t GetFileSizeFromPathRef(KTPathType* path, uint64_t& size) noexcept;
[[nodiscard]] KORVO_API int32_t GetFileSizeFromPathRef(const KCStPath& path, uint64_t& size) noexcept;
/// In seconds since 1970, UTC.
[[nodiscard]] KORVO_API int32_t GetFileLastWriteTimeFromPathRef(KTPathType* path, int64_t& time) noexcept;
[[nodiscard]] KORVO_API int32_t GetFileLastWriteTimeFromPathRef(const KCStPath& path, int64_t& time) noexcept;

// Links and shortcuts. `out` is null, or not valid, unless the result is 0.

/// The path that a link names, through links to links. What is no link names itself; what the last link names need
/// not exist. kErr_Generic for links in a circle.
[[nodiscard]] KORVO_API int32_t ResolveFileSystemLink(KTPathType* path, KTPathType*& out) noexcept;
[[nodiscard]] KORVO_API int32_t ResolveFileSystemLink(const KCStPath& path, KCStPath& out) noexcept;
/// Whether the content is that of a Windows shortcut, whatever its name ([MS-SHLLINK], read on every platform).
[[nodiscard]] KORVO_API bool IsWinShortcut(KTPathType* path) noexcept;
[[nodiscard]] KORVO_API bool IsWinShortcut(const KCStPath& path) noexcept;
/// What a shortcut names. Its path relative to the shortcut comes first, when something is there: that one survives
/// a copy to another machine. Otherwise its full path, with '/' between the components ("C:/Sounds/kick.wav").
/// kErr_Generic for what is no shortcut, is damaged, or names nothing.
[[nodiscard]] KORVO_API int32_t ResolveWinShortcut(KTPathType* path, KTPathType*& out) noexcept;
[[nodiscard]] KORVO_API int32_t ResolveWinShortcut(const KCStPath& path, KCStPath& out) noexcept;

// Making and deleting.

/// Makes the folder and all that lead to it; a folder that exists is a success. kErr_FileAlreadyExists if something
/// else has one of the names.
[[nodiscard]] KORVO_API int32_t CreateFolder(KTPathType* path) noexcept;
[[nodiscard]] KORVO_API int32_t CreateFolder(const KCStPath& path) noexcept;
/// Makes `link` name `target`, which need not exist; a relative target counts from the link's folder.
[[nodiscard]] KORVO_API int32_t CreateFileSystemLink(KTPathType* target, KTPathType* link) noexcept;
[[nodiscard]] KORVO_API int32_t CreateFileSystemLink(const KCStPath& target, const KCStPath& link) noexcept;
/// A file, a link or an empty folder. kErr_Generic for a folder with contents.
[[nodiscard]] KORVO_API int32_t DeleteFileSystemObject(KTPathType* path) noexcept;
[[nodiscard]] KORVO_API int32_t DeleteFileSystemObject(const KCStPath& path) noexcept;
/// With all that a folder holds, as far as possible; the first failure is reported. Links in it go, what they name
/// stays.
[[nodiscard]] KORVO_API int32_t DeleteFileSystemObjectRecursively(KTPathType* path) noexcept;
[[nodiscard]] KORVO_API int32_t DeleteFileSystemObjectRecursively(const KCStPath& path) noexcept;
/// Gives an object another path; never overwrites: kErr_FileAlreadyExists. To another file system only files move,
/// by copying.
[[nodiscard]] KORVO_API int32_t MoveFileSystemObject(KTPathType* from, KTPathType* to) noexcept;
[[nodiscard]] KORVO_API int32_t MoveFileSystemObject(const KCStPath& from, const KCStPath& to) noexcept;
/// Copies a file's content and, for a new file, its permissions. An existing target is rewritten in place to that
/// content and length (OpenOrCreate), an error (CreateNew), or replaced in one step, so that it is whole whatever
/// happens (CreateAlways). A copy that fails leaves no new file behind.
[[nodiscard]] KORVO_API int32_t DuplicateFile(KTPathType* from, KTPathType* to, KECreateFlags flags) noexcept;
[[nodiscard]] KORVO_API int32_t DuplicateFile(const KCStPath& from, const KCStPath& to,
                                              KECreateFlags flags) noexcept;

} // namespace kvKorvoV12_9_0_320::FM
