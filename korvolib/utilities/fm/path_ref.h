// Path references: text that names a place in the file system, whether or not anything is there.
//
// The C-style layer. A KTPathType is made by a Create… function and given back with DisposePathRef; KCStPath
// (path.h) owns one and is what most code wants. Nothing here touches the disk except where it says so, nothing
// throws, and a reference is not for two threads at once.
//
// Text is UTF-8 and cut only where it leaves in a fixed string: every operation works on the whole path. Separators
// at the end of a text are ignored. Decomposition is Boost.Filesystem's: "name.txt" has the base "name" and the
// extension "txt", ".hidden" the base "" and the extension "hidden".
#pragma once

#include <cstdint>

#include <korvolib/export.h>
#include <korvolib/utilities/strings/fixed_string.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320::FM {

class KCStPath;

/// An opaque path reference; null is no path, which gives kErr_NullArgument or an empty result everywhere.
struct KTPathType;

// Making and giving back. `out` is null unless the result is 0.

/// The path of `name` inside `folder`. The name may have several components; one that starts with a separator stays
/// inside the folder all the same, and an empty one is the folder itself. ".." is a name like every other: whoever
/// joins text from outside checks it.
[[nodiscard]] KORVO_API int32_t CreatePathRef(KTPathType* folder, const char* name, KTPathType*& out) noexcept;
/// With `normalize` the text, uncut, is made what NormalizePathString makes of it: if it is absolute, it has to
/// exist. kErr_FileNotFound for an empty text.
[[nodiscard]] KORVO_API int32_t CreatePathRefFromString(const char* utf8, KTPathType*& out,
                                                        bool normalize = false) noexcept;
/// The path of `name` in this library's folder among the user's caches. Nothing is created there.
[[nodiscard]] KORVO_API int32_t CreatePathRefToCacheFile(const char* name, KTPathType*& out) noexcept;
/// Leaves null behind. kErr_NullArgument for null.
KORVO_API int32_t DisposePathRef(KTPathType*& path) noexcept;

// Text of a path; each returns out.c_str(), empty for no path.

/// The native text in UTF-8.
KORVO_API const char* GetPathAsString(KTPathType* path, KCFixedString<1023>& out) noexcept;
KORVO_API const char* GetPathAsString(const KCStPath& path, KCFixedString<1023>& out) noexcept;
/// With '/' between the components.
KORVO_API const char* GetPathAsPosixString(KTPathType* path, KCFixedString<1023>& out) noexcept;
KORVO_API const char* GetPathAsPosixString(const KCStPath& path, KCFixedString<1023>& out) noexcept;
/// As this platform writes it.
KORVO_API const char* GetNativePathAsString(KTPathType* path, KCFixedString<1023>& out) noexcept;
KORVO_API const char* GetNativePathAsString(const KCStPath& path, KCFixedString<1023>& out) noexcept;
/// The last component; the root's is "/".
KORVO_API const char* GetLeaf(KTPathType* path, KCFixedString<255>& out) noexcept;
KORVO_API const char* GetLeaf(const KCStPath& path, KCFixedString<255>& out) noexcept;
/// The leaf without its extension.
KORVO_API const char* GetBase(KTPathType* path, KCFixedString<255>& out) noexcept;
KORVO_API const char* GetBase(const KCStPath& path, KCFixedString<255>& out) noexcept;
/// What follows the last '.' of the leaf.
KORVO_API const char* GetExtension(KTPathType* path, KCFixedString<255>& out) noexcept;
KORVO_API const char* GetExtension(const KCStPath& path, KCFixedString<255>& out) noexcept;
/// The name of the folder that holds it: the leaf of the parent.
KORVO_API const char* GetParentDirectory(KTPathType* path, KCFixedString<255>& out) noexcept;
KORVO_API const char* GetParentDirectory(const KCStPath& path, KCFixedString<255>& out) noexcept;

/// The way from `from` to `to`: what appended to `from` leads there ("/a/b" to "/a/c/d": "../c/d"; to itself: ".").
/// By text alone, links are not looked at. kErr_Generic and an empty text where text alone cannot tell: one path is
/// absolute and one is not, or `from` leaves the common part through "..".
[[nodiscard]] KORVO_API int32_t GetRelativeDifference(KTPathType* from, KTPathType* to,
                                                      KCFixedString<1023>& out) noexcept;
[[nodiscard]] KORVO_API int32_t GetRelativeDifference(const KCStPath& from, const KCStPath& to,
                                                      KCFixedString<1023>& out) noexcept;

// Comparing.

/// The same components; how many separators stand between them does not count. Null is no path, and the same as
/// nothing.
[[nodiscard]] KORVO_API bool IsSamePath(KTPathType* left, KTPathType* right) noexcept;
[[nodiscard]] KORVO_API bool IsSamePath(const KCStPath& left, const KCStPath& right) noexcept;
/// The same object on disk, by whatever path; false when either is missing.
[[nodiscard]] KORVO_API bool IsSameFile(KTPathType* left, KTPathType* right) noexcept;
[[nodiscard]] KORVO_API bool IsSameFile(const KCStPath& left, const KCStPath& right) noexcept;
/// Without regard to case, A to Z; only the first 15 characters count. A null or empty first one matches nothing.
[[nodiscard]] KORVO_API bool IsSameExtension(const char* left, const char* right) noexcept;

// Path text.

/// The long form of a path: on Linux, where names have one form only, the text without separators that say nothing.
/// An absolute path has to exist, and its long form to fit 260 UTF-16 units: otherwise
/// kErr_PathNormalisationFailed, and `out` stays as it was. Relative and empty text is taken over as it stands.
/// kErr_NullArgument for null.
[[nodiscard]] KORVO_API int32_t NormalizePathString(const char* utf8, KCFixedStringBase& out) noexcept;
/// The platform's own text for a long form: on Linux the same text. kErr_NullArgument for null.
[[nodiscard]] KORVO_API int32_t UnNormalizePathString(const char* utf8, KCFixedStringBase& out) noexcept;

} // namespace kvKorvoV12_9_0_320::FM
