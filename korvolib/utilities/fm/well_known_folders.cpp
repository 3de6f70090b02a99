#include <korvolib/utilities/fm/well_known_folders.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>

#include <korvolib/utilities/fm/open_file_internal.h>
#include <korvolib/utilities/fm/path.h>
#include <korvolib/utilities/fm/path_internal.h>

namespace kvKorvoV12_9_0_320::FM {

namespace {

constexpr const char* kDomainNames[] = {"User", "Local", "System"};

// Where a folder is: in a variable, or a list of folders in one, whose first is meant; else at a fixed place, which
// counts from the home if it is relative. Null: the domain has none.
struct sPlace {
    const char* variable;
    const char* otherwise;
};

struct sWellKnown {
    const char* name;
    const char* userDirectory; // its line in user-dirs.dirs
    sPlace user;
    sPlace local;
    sPlace system;
};

constexpr sWellKnown kFolders[] = {
    {"Home", nullptr, {"HOME", ""}, {}, {}},
    {"Desktop", "XDG_DESKTOP_DIR", {nullptr, "Desktop"}, {}, {}},
    {"Documents", "XDG_DOCUMENTS_DIR", {nullptr, "Documents"}, {}, {}},
    {"Downloads", "XDG_DOWNLOAD_DIR", {nullptr, "Downloads"}, {}, {}},
    {"Music", "XDG_MUSIC_DIR", {nullptr, "Music"}, {}, {}},
    {"Pictures", "XDG_PICTURES_DIR", {nullptr, "Pictures"}, {}, {}},
    {"Videos", "XDG_VIDEOS_DIR", {nullptr, "Videos"}, {}, {}},
    {"Preferences", nullptr, {"XDG_CONFIG_HOME", ".config"}, {"XDG_CONFIG_DIRS", "/etc/xdg"}, {nullptr, "/etc"}},
    {"ApplicationSupport",
     nullptr,
     {"XDG_DATA_HOME", ".local/share"},
     {"XDG_DATA_DIRS", "/usr/local/share"},
     {nullptr, "/usr/share"}},
    {"Caches", nullptr, {"XDG_CACHE_HOME", ".cache"}, {nullptr, "/var/cache"}, {nullptr, "/var/cache"}},
    {"State", nullptr, {"XDG_STATE_HOME", ".local/state"}, {nullptr, "/var/lib"}, {nullptr, "/var/lib"}},
    {"Temporary", nullptr, {"TMPDIR", "/tmp"}, {nullptr, "/tmp"}, {nullptr, "/var/tmp"}},
};

// The base directory specification has relative values ignored, in a list each; the first entry of a list is its
// most important. Lists are the variables that end in _DIRS: in others a colon is part of the name.
std::string FromVariable(const char* variable) {
    const char* value = variable == nullptr ? nullptr : CurrentPlatform().Environment(variable);
    if (value == nullptr)
        return {};
    const bool isList = std::string_view(variable).ends_with("_DIRS");
    std::string_view rest = value;
    while (!rest.empty()) {
        const std::string_view entry = isList ? rest.substr(0, rest.find(':')) : rest;
        if (entry.starts_with(kSeparator))
            return std::string(entry);
        rest.remove_prefix(std::min(rest.size(), entry.size() + 1));
    }
    return {};
}

std::string HomeText() {
    std::string home = FromVariable("HOME");
    char fromUserList[4096];
    if (home.empty() && CurrentPlatform().HomeFolder(fromUserList, sizeof fromUserList) == 0)
        home = fromUserList;
    return home;
}

// The value of a line  NAME="$HOME/relative"  or  NAME="/absolute"  with \ before characters that a shell knows.
std::string ValueOfLine(std::string_view line, const std::string& home) {
    constexpr std::string_view kHome = "$HOME";
    if (line.size() < 2 || line.front() != '"')
        return {};
    line.remove_prefix(1);
    const bool isInHome = line.substr(0, kHome.size()) == kHome;
    if (isInHome)
        line.remove_prefix(kHome.size());
    if (!line.starts_with(kSeparator) && !(isInHome && line.starts_with('"')))
        return {};
    std::string value = isInHome ? home : std::string();
    for (size_t i = 0; i < line.size() && line[i] != '"'; ++i) {
        if (line[i] == '\\' && i + 1 < line.size())
            ++i;
        value += line[i];
    }
    return value;
}

std::string FromUserDirectories(std::string_view name, const std::string& home) {
    constexpr size_t kLongestFile = 65536; // it has eight lines
    std::string config = FromVariable("XDG_CONFIG_HOME");
    if (config.empty())
        config = JoinedText(home, ".config");
    sOpenHow how;
    how.read = true;
    int handle = -1;
    sObjectInfo info;
    if (OpenHandle(JoinedText(config, "user-dirs.dirs").c_str(), how, KESharing::Nobody, handle, info) !=
        kErr_NoErr)
        return {};
    std::string text;
    text.resize(info.size < kLongestFile ? static_cast<size_t>(info.size) : kLongestFile);
    size_t length = 0;
    if (ReadFully(handle, text.data(), text.size(), length) != kErr_NoErr)
        length = 0;
    CloseHandle(handle);
    std::string value;
    for (std::string_view rest(text.data(), length); !rest.empty();) {
        const size_t end = rest.find('\n');
        const std::string_view line = rest.substr(0, end);
        rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
        if (line.substr(0, name.size()) == name && line.substr(name.size(), 1) == "=")
            value = ValueOfLine(line.substr(name.size() + 1), home); // the last one counts, as in a shell
    }
    return value;
}

std::string TextOfPlace(const sWellKnown& folder, const sPlace& place) {
    if (place.otherwise == nullptr)
        return {};
    std::string text = FromVariable(place.variable);
    if (!text.empty())
        return text;
    if (*place.otherwise == kSeparator)
        return place.otherwise;
    const std::string home = HomeText();
    if (home.empty())
        return {};
    if (folder.userDirectory != nullptr)
        text = FromUserDirectories(folder.userDirectory, home);
    return text.empty() ? JoinedText(home, place.otherwise) : text;
}

bool ParseIndicator(const char* indicator, KEFoldersDomain& domain, KESystemFolders& folder) {
    if (indicator == nullptr)
        return false;
    std::string_view text = indicator;
    domain = KEFoldersDomain::User;
    if (const size_t slash = text.find(kSeparator); slash != std::string_view::npos) {
        size_t found = 0;
        while (found < std::size(kDomainNames) && text.substr(0, slash) != kDomainNames[found])
            ++found;
        if (found == std::size(kDomainNames))
            return false;
        domain = static_cast<KEFoldersDomain>(found);
        text.remove_prefix(slash + 1);
    }
    for (size_t i = 0; i < std::size(kFolders); ++i) {
        if (text == kFolders[i].name) {
            folder = static_cast<KESystemFolders>(i);
            return true;
        }
    }
    return false;
}

} // namespace

const char* KEFoldersDomainName(KEFoldersDomain domain) noexcept {
    const auto index = static_cast<uint32_t>(domain);
    return index < std::size(kDomainNames) ? kDomainNames[index] : "";
}

const char* KESystemFoldersName(KESystemFolders folder) noexcept {
    const auto index = static_cast<uint32_t>(folder);
    return index < std::size(kFolders) ? kFolders[index].name : "";
}

int32_t CreateSystemFolderPathRef(KEFoldersDomain domain, KESystemFolders folder, KTPathType*& out) noexcept {
    out = nullptr;
    const auto index = static_cast<uint32_t>(folder);
    if (index >= std::size(kFolders) || static_cast<uint32_t>(domain) >= std::size(kDomainNames))
        return kErr_FileNotFound;
    const sWellKnown& known = kFolders[index];
    const sPlace* const places[] = {&known.user, &known.local, &known.system};
    return WithoutThrowing(
        [&] { return MakePathRef(TextOfPlace(known, *places[static_cast<uint32_t>(domain)]), out); });
}

bool IsValidIndicator(const char* indicator) noexcept {
    KEFoldersDomain domain;
    KESystemFolders folder;
    KTPathType* path = nullptr;
    if (!ParseIndicator(indicator, domain, folder) || CreateSystemFolderPathRef(domain, folder, path) != kErr_NoErr)
        return false;
    DisposePathRef(path);
    return true;
}

int32_t GetPathFromIndicator(const char* indicator, KCStPath& out) noexcept {
    out.Clear();
    KEFoldersDomain domain;
    KESystemFolders folder;
    if (indicator == nullptr)
        return kErr_NullArgument;
    if (!ParseIndicator(indicator, domain, folder))
        return kErr_FileNotFound;
    KTPathType* path = nullptr;
    const int32_t result = CreateSystemFolderPathRef(domain, folder, path);
    out.TakeOver(path);
    return result;
}

} // namespace kvKorvoV12_9_0_320::FM
