// Opens a plug-in's shared object, checks that it is one that this host understands, and makes the plug-in.
//
// Thread: [main].
#pragma once

#include <cstdint>

#include <korvolib/utilities/strings/fixed_string.h>
#include <shells/plugin.h>

namespace kvKorvoV12_9_0_320 {

/// One loaded plug-in; its destructor destroys the plug-in and closes the file.
class KCPluginLoader {
  public:
    KCPluginLoader() = default;
    ~KCPluginLoader() { Unload(); }
    KCPluginLoader(const KCPluginLoader&) = delete;
    KCPluginLoader& operator=(const KCPluginLoader&) = delete;

    /// Unloads what was there and loads the file at `path`. 0 with `error` empty; or, with nothing loaded and one
    /// sentence that names the file in `error`: kErr_NullArgument for a null or empty path, kErr_FileNotFound,
    /// kErr_WrongRecordVersion for an entry record of another version or size, kErr_Generic for a file that is not
    /// a plug-in or makes none.
    [[nodiscard]] int32_t Load(const char* path, KCFixedStringBase& error);
    void Unload() noexcept;

    KCPlugin* GetPlugin() const noexcept { return m_plugin; }          // null: nothing is loaded
    const sPLUGIN_ENTRY* GetEntry() const noexcept { return m_entry; } // null: nothing is loaded

  private:
    int32_t Open(const char* path, KCFixedStringBase& error);
    int32_t Create(const char* path, KCFixedStringBase& error);

    void* m_file = nullptr;
    const sPLUGIN_ENTRY* m_entry = nullptr;
    KCPlugin* m_plugin = nullptr;
};

/// Whether a host of this version may use the record: 0, or kErr_WrongRecordVersion or kErr_Generic with a sentence
/// that begins with `path` and says what was found and what was expected.
[[nodiscard]] int32_t CheckPluginEntry(const sPLUGIN_ENTRY* entry, const char* path, KCFixedStringBase& error);

} // namespace kvKorvoV12_9_0_320
