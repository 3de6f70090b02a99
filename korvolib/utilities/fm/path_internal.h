// What stands behind a path reference, and the few helpers that every source of the file layer shares.
#pragma once

#include <string>
#include <string_view>
#include <utility>

#include <boost/filesystem/path.hpp>

#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/fm/path_ref.h>
#include <korvolib/utilities/fm/platform.h>

namespace kvKorvoV12_9_0_320::FM {

struct KTPathType {
    boost::filesystem::path path;
    // What a folder's listing said of it, for the filters that see it before anyone else does; Unknown afterwards.
    KEObjectKind listedKind = KEObjectKind::Unknown;
};

constexpr char kSeparator = '/';

/// Runs what may run out of memory (or trip over a limit of the standard library) and makes a code of it.
template <class Body>
int32_t WithoutThrowing(Body&& body) noexcept {
    try {
        return std::forward<Body>(body)();
    } catch (...) {
        return kErr_AllocationFailed;
    }
}

/// Makes a system call again until no signal breaks it off.
template <class Call>
int Uninterrupted(Call&& call) noexcept {
    for (;;) {
        const int error = call();
        if (!IsInterrupted(error))
            return error;
    }
}

inline std::string_view TextOf(const KTPathType& path) noexcept { return path.path.native(); }
inline const char* NativeOf(const KTPathType* path) noexcept { return path->path.c_str(); }

inline std::string_view WithoutTrailingSeparators(std::string_view text) noexcept {
    while (text.size() > 1 && text.back() == kSeparator)
        text.remove_suffix(1);
    return text;
}

/// May throw: the folder's text, a separator if one is missing, the name.
std::string JoinedText(std::string_view folder, std::string_view name);
/// Never throws. An empty text is no path: kErr_FileNotFound.
int32_t MakePathRef(std::string_view text, KTPathType*& out) noexcept;
/// May throw: what NormalizePathString makes of a text, whole. `out` means nothing unless the result is 0.
int32_t NormalizedText(std::string_view utf8, std::string& out);
/// The text of the folder that holds it, empty if the text does not say.
std::string_view ParentText(std::string_view text) noexcept;

inline int32_t InfoOfPath(const char* path, bool followLinks, sObjectInfo& info) noexcept {
    return TranslateSystemError(Uninterrupted([&] { return CurrentPlatform().Info(path, followLinks, info); }));
}

/// A rename that finds the target there is kErr_FileAlreadyExists; `error` is the system's.
int32_t RenameToNewName(const char* from, const char* to, int& error) noexcept;

/// Walks over the components of a path: the root first if there is one, then the names.
class PathParts {
  public:
    explicit PathParts(std::string_view text) noexcept : m_text(text) {}
    bool Next(std::string_view& part) noexcept;
    /// Where the component that Next gave ends in the text.
    size_t End() const noexcept { return m_position; }

  private:
    std::string_view m_text;
    size_t m_position = 0;
};

} // namespace kvKorvoV12_9_0_320::FM
