#include <shells/plugin_loader.h>

#include <korvolib/utilities/error_codes.h>

#include <dlfcn.h>
#include <unistd.h>

#include <cstring>

namespace kvKorvoV12_9_0_320 {

namespace {

int32_t Refuse(int32_t code, const char* path, const char* reason, KCFixedStringBase& error) {
    error = "";
    error << path << ": " << reason;
    return code;
}

int32_t RefuseNumber(const char* path, const char* what, uint32_t found, uint32_t expected,
                     KCFixedStringBase& error) {
    error = "";
    error << path << ": the plug-in's entry record has " << what << ' ' << found << ", this host expects "
          << expected;
    return kErr_WrongRecordVersion;
}

// A name without a folder would be searched for among the system's libraries.
KCFixedString<4095> AsPath(const char* path) {
    KCFixedString<4095> result(std::strchr(path, '/') == nullptr ? "./" : "");
    result << path;
    return result;
}

} // namespace

int32_t CheckPluginEntry(const sPLUGIN_ENTRY* entry, const char* path, KCFixedStringBase& error) {
    if (entry == nullptr)
        return Refuse(kErr_Generic, path, "the plug-in has no entry record", error);
    if (entry->version != kPluginEntryVersion)
        return RefuseNumber(path, "version", entry->version, kPluginEntryVersion, error);
    if (entry->size != sizeof(sPLUGIN_ENTRY))
        return RefuseNumber(path, "size", entry->size, sizeof(sPLUGIN_ENTRY), error);
    if (entry->name == nullptr || entry->maker == nullptr || entry->create == nullptr || entry->destroy == nullptr)
        return Refuse(kErr_Generic, path, "the plug-in's entry record is incomplete", error);
    error = "";
    return kErr_NoErr;
}

int32_t KCPluginLoader::Load(const char* path, KCFixedStringBase& error) {
    Unload();
    if (path == nullptr || *path == 0)
        return Refuse(kErr_NullArgument, "plug-in", "no file was named", error);
    int32_t result = Open(path, error);
    if (result == kErr_NoErr)
        result = Create(path, error);
    if (result != kErr_NoErr)
        Unload();
    return result;
}

int32_t KCPluginLoader::Open(const char* path, KCFixedStringBase& error) {
    const KCFixedString<4095> file = AsPath(path);
    if (access(file.c_str(), F_OK) != 0)
        return Refuse(kErr_FileNotFound, path, "no such file", error);
    m_file = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (m_file == nullptr)
        return Refuse(kErr_Generic, path, dlerror(), error);
    return kErr_NoErr;
}

int32_t KCPluginLoader::Create(const char* path, KCFixedStringBase& error) {
    const auto entryPoint = reinterpret_cast<KTPluginEntryPoint>(dlsym(m_file, kPluginEntryPoint));
    if (entryPoint == nullptr)
        return Refuse(kErr_Generic, path, "not a plug-in: it exports no KorvoPluginEntry", error);
    const sPLUGIN_ENTRY* const entry = entryPoint();
    if (const int32_t result = CheckPluginEntry(entry, path, error); result != kErr_NoErr)
        return result;
    m_plugin = entry->create();
    if (m_plugin == nullptr)
        return Refuse(kErr_Generic, path, "the plug-in could not be made", error);
    m_entry = entry;
    return kErr_NoErr;
}

void KCPluginLoader::Unload() noexcept {
    if (m_plugin != nullptr)
        m_entry->destroy(m_plugin);
    m_plugin = nullptr;
    m_entry = nullptr;
    if (m_file != nullptr)
        dlclose(m_file);
    m_file = nullptr;
}

} // namespace kvKorvoV12_9_0_320
