#include <korvolib/utilities/fm/zip.h>

#include <algorithm>
#include <string_view>

#include <zip.h>

#include <korvolib/utilities/fm/open_file_internal.h>
#include <korvolib/utilities/fm/path_internal.h>

namespace kvKorvoV12_9_0_320::FM {

namespace {

zip_t* Opened(void* archive) { return static_cast<zip_t*>(archive); }

struct sEntry {
    zip_uint64_t index = 0;
    uint64_t size = 0;
    uint64_t packedSize = 0;
    uint16_t method = 0;
};

bool FindEntry(void* archive, const KCFixedString<255>& name, zip_flags_t flags, sEntry& entry) {
    if (archive == nullptr || name.empty())
        return false;
    const zip_int64_t index = zip_name_locate(Opened(archive), name.c_str(), flags);
    if (index < 0)
        return false;
    zip_stat_t stat;
    constexpr zip_uint64_t kNeeded = ZIP_STAT_SIZE | ZIP_STAT_COMP_SIZE | ZIP_STAT_COMP_METHOD;
    if (zip_stat_index(Opened(archive), static_cast<zip_uint64_t>(index), 0, &stat) != 0 ||
        (stat.valid & kNeeded) != kNeeded)
        return false;
    entry = {static_cast<zip_uint64_t>(index), stat.size, stat.comp_size, stat.comp_method};
    return true;
}

// Deflate makes at most 1032 bytes of one (zlib's technical notes), storing exactly one: a stated size beyond that
// is a lie, and need not cost any memory.
bool IsBelievable(const sEntry& entry, uint64_t limit) {
    constexpr uint64_t kMostFromOneByte = 1032;
    if (entry.size == 0 || entry.size > limit)
        return false;
    if (entry.method == ZIP_CM_STORE)
        return entry.packedSize >= entry.size; // more, where it is encrypted
    return entry.method != ZIP_CM_DEFLATE || entry.size / kMostFromOneByte <= entry.packedSize;
}

class EntryReader {
  public:
    EntryReader(void* archive, zip_uint64_t index) : m_file(zip_fopen_index(Opened(archive), index, 0)) {}
    EntryReader(const EntryReader&) = delete;
    EntryReader& operator=(const EntryReader&) = delete;
    ~EntryReader() {
        if (m_file != nullptr)
            zip_fclose(m_file);
    }
    bool IsOpen() const { return m_file != nullptr; }
    /// Exactly so many bytes.
    bool Read(char* to, size_t size) {
        while (size != 0) {
            const zip_int64_t count = zip_fread(m_file, to, size);
            if (count <= 0)
                return false;
            to += count;
            size -= static_cast<size_t>(count);
        }
        return true;
    }
    /// The checksum is compared when the reader runs into the end.
    bool IsAtGoodEnd() {
        char beyond = 0;
        return zip_fread(m_file, &beyond, 1) == 0;
    }

  private:
    zip_file_t* m_file;
};

// Memory grows with what has really come, so that a lie about the size costs little.
template <class Resize, class Data>
int32_t ReadEntry(void* archive, const sEntry& entry, Resize resize, Data data) {
    constexpr uint64_t kAtOnce = uint64_t{1} << 26;
    EntryReader reader(archive, entry.index);
    if (!reader.IsOpen())
        return kErr_ZipEntryNotReadable;
    for (uint64_t filled = 0; filled < entry.size;) {
        const uint64_t next = std::min(entry.size, std::max(kAtOnce, filled * 2));
        if (const int32_t result = resize(static_cast<size_t>(next)); result != kErr_NoErr)
            return result;
        if (!reader.Read(data() + filled, static_cast<size_t>(next - filled)))
            return kErr_ZipEntryNotReadable;
        filled = next;
    }
    return reader.IsAtGoodEnd() ? kErr_NoErr : kErr_ZipEntryNotReadable;
}

int32_t ResultOfZipError(int error, int systemError) {
    switch (error) {
    case ZIP_ER_NOENT:
        return kErr_FileNotFound;
    case ZIP_ER_MEMORY:
        return kErr_AllocationFailed;
    case ZIP_ER_OPEN:
    case ZIP_ER_READ:
    case ZIP_ER_SEEK:
        return systemError == 0 ? kErr_Generic : TranslateSystemError(systemError);
    default:
        return kErr_Generic;
    }
}

int32_t OpenArchive(const char* path, void*& archive) {
    int error = ZIP_ER_OK;
    archive = zip_open(path, 0, &error);
    if (archive != nullptr)
        return kErr_NoErr;
    zip_error_t details;
    zip_error_init_with_code(&details, error);
    const int32_t result = ResultOfZipError(error, zip_error_code_system(&details));
    zip_error_fini(&details);
    return result;
}

} // namespace

KCStZipArchive::KCStZipArchive(const KCStPath& archive) noexcept : m_file(GetInvalidOpenFileRef()) {
    m_openResult = OpenFile(archive, KEPermitions::Read, m_file);
    if (m_openResult == kErr_NoErr)
        m_openResult = OpenArchive(NativeOf(archive.GetPathRef()), m_archive);
    if (m_openResult != kErr_NoErr)
        CloseFile(m_file);
}

KCStZipArchive::~KCStZipArchive() {
    // Nothing was changed, so that closing writes nothing; should it fail all the same, discarding does not.
    if (m_archive != nullptr && zip_close(Opened(m_archive)) != 0)
        zip_discard(Opened(m_archive));
    CloseFile(m_file);
}

int32_t KCStFileReadFromZip::GetEntrySize(const KCFixedString<255>& entry, uint64_t& size) noexcept {
    size = 0;
    sEntry found;
    if (!FindEntry(m_archive, entry, 0, found))
        return kErr_ZipEntryNotReadable;
    size = found.size;
    return kErr_NoErr;
}

int32_t KCStFileReadFromZip::ReadToStdString(const KCFixedString<255>& entry, std::string& out) noexcept {
    out.clear();
    sEntry found;
    if (!FindEntry(m_archive, entry, 0, found) || !IsBelievable(found, m_sizeLimit))
        return kErr_ZipEntryNotReadable;
    const auto resize = [&](size_t size) noexcept {
        return WithoutThrowing([&] {
            out.resize(size);
            return kErr_NoErr;
        });
    };
    const int32_t result = ReadEntry(m_archive, found, resize, [&] { return out.data(); });
    if (result != kErr_NoErr)
        out.clear();
    return result;
}

int32_t KCStFileReadFromZip::ReadToKCStMemObj(const KCFixedString<255>& entry, KCStMemObj& out) noexcept {
    out.Clear();
    sEntry found;
    if (!FindEntry(m_archive, entry, ZIP_FL_NODIR, found) || !IsBelievable(found, m_sizeLimit))
        return kErr_ZipEntryNotReadable;
    const int32_t result = ReadEntry(
        m_archive, found, [&](size_t size) noexcept { return out.Resize(size); },
        [&] { return static_cast<char*>(out.GetData()); });
    if (result != kErr_NoErr)
        out.Clear();
    return result;
}

KCStZipFileIterator::KCStZipFileIterator(const KCStPath& archive) noexcept : KCStZipArchive(archive) {
    const zip_int64_t count = m_archive == nullptr ? 0 : zip_get_num_entries(Opened(m_archive), 0);
    m_count = count < 0 ? 0 : static_cast<uint64_t>(count);
}

bool KCStZipFileIterator::GetNextItemFromZip(KCFixedString<255>& leaf) noexcept {
    leaf.clear();
    while (m_next < m_count) {
        const KCFixedString<255> name(zip_get_name(Opened(m_archive), m_next++, 0));
        const size_t slash = name.rfind('/');
        leaf.assign(name.c_str() + (slash == name.npos ? 0 : slash + 1));
        if (!leaf.empty())
            return true;
    }
    return false;
}

} // namespace kvKorvoV12_9_0_320::FM
