// Folders that every system has somewhere: a domain says whose, a system folder says which.
//
// On Linux these follow the XDG Base Directory Specification and the user directories of xdg-user-dirs: the table
// stands in docs/files.md. Reads the environment and, for Desktop to Videos, one small file; creates nothing. Any
// thread, as long as none changes the environment.
#pragma once

#include <cstdint>

#include <korvolib/export.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320::FM {

class KCStPath;
struct KTPathType;

enum class KEFoldersDomain : int32_t {
    User,   ///< Of the user this process runs for.
    Local,  ///< Of this machine, kept by its administrator.
    System, ///< Of the system itself.
};

enum class KESystemFolders : int32_t {
    Home,
    Desktop,
    Documents,
    Downloads,
    Music,
    Pictures,
    Videos,
    Preferences,        ///< Settings.
    ApplicationSupport, ///< Data that programs bring or keep.
    Caches,             ///< What can be made again.
    State,              ///< What is kept between runs: logs, histories.
    Temporary,
};

/// The name that indicators use: "User", "Local", "System"; "" for any other value.
[[nodiscard]] KORVO_API const char* KEFoldersDomainName(KEFoldersDomain domain) noexcept;
/// "Home", "Desktop", and so on as the values are named; "" for any other value.
[[nodiscard]] KORVO_API const char* KESystemFoldersName(KESystemFolders folder) noexcept;

/// kErr_FileNotFound where the domain has no such folder. The folder itself need not exist.
[[nodiscard]] KORVO_API int32_t CreateSystemFolderPathRef(KEFoldersDomain domain, KESystemFolders folder,
                                                          KTPathType*& out) noexcept;

/// True for the text of a well-known folder: its name, which means the user's ("Music"), or a domain, '/' and its
/// name ("System/Caches"). Letter for letter.
[[nodiscard]] KORVO_API bool IsValidIndicator(const char* indicator) noexcept;
/// The folder that an indicator names. kErr_FileNotFound for no indicator.
[[nodiscard]] KORVO_API int32_t GetPathFromIndicator(const char* indicator, KCStPath& out) noexcept;

} // namespace kvKorvoV12_9_0_320::FM
