// One run through a folder, as both layers use it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <korvolib/utilities/fm/path_internal.h>
#include <korvolib/utilities/fm/platform.h>

namespace kvKorvoV12_9_0_320::FM {

class FolderRun {
  public:
    FolderRun() noexcept = default;
    FolderRun(const FolderRun&) = delete;
    FolderRun& operator=(const FolderRun&) = delete;
    ~FolderRun() {
        if (m_folder != nullptr)
            CurrentPlatform().CloseFolder(m_folder);
    }

    int32_t Open(KTPathType* folder) noexcept {
        if (folder == nullptr)
            return kErr_NullArgument;
        return WithoutThrowing([&] {
            m_path = TextOf(*folder);
            if (m_path.back() != kSeparator)
                m_path += kSeparator;
            m_prefix = m_path.size();
            return TranslateSystemError(
                Uninterrupted([&] { return CurrentPlatform().OpenFolder(NativeOf(folder), true, m_folder); }));
        });
    }

    /// A new reference; null at the end.
    int32_t Next(KTPathType*& item) noexcept {
        item = nullptr;
        sListedItem listed;
        const int error = Uninterrupted([&] { return CurrentPlatform().NextItem(m_folder, listed); });
        if (error != 0 || listed.name == nullptr)
            return TranslateSystemError(error);
        return WithoutThrowing([&] {
            m_path.resize(m_prefix);
            m_path.append(listed.name, listed.length);
            const int32_t result = MakePathRef(m_path, item);
            if (result == kErr_NoErr)
                item->listedKind = listed.kind;
            return result;
        });
    }

  private:
    std::string m_path; // the folder and a separator, then the last item
    size_t m_prefix = 0;
    void* m_folder = nullptr;
};

/// Bytewise by the whole name: items of one folder share all that stands before it.
inline bool ComesBeforeByName(KTPathType* left, KTPathType* right) noexcept {
    return TextOf(*left) < TextOf(*right);
}

/// The last component as it stands in the path, whole.
inline std::string_view NameOf(KTPathType* path) noexcept {
    const std::string_view text = TextOf(*path);
    return text.substr(text.find_last_of(kSeparator) + 1);
}

} // namespace kvKorvoV12_9_0_320::FM
