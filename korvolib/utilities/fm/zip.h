// Reading zip archives, through libzip.
//
//   KCStFileReadFromZip sounds(archive);
//   std::string session;
//   if (sounds.ReadToStdString("mix/friday.session", session) == 0) …
//
// The archive stays open as long as the object lives, and is shared like a file that is read (open_file.h). Every
// entry is read to its end and checked against its checksum: what comes out is what went in, or
// kErr_ZipEntryNotReadable. A size that an archive states is believed only up to a limit, and memory is taken as
// data comes. Names in archives are data: nothing here makes a path of one. One thread at a time; nothing throws.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include <korvolib/export.h>
#include <korvolib/utilities/fm/path.h>
#include <korvolib/utilities/mem_obj.h>
#include <korvolib/utilities/strings/fixed_string.h>
#include <korvolib/utilities/validatable.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320::FM {

/// An open archive, for the two readers below.
class KORVO_API KCStZipArchive : public KUValidatable {
  public:
    ~KCStZipArchive() override;
    KCStZipArchive(const KCStZipArchive&) = delete;
    KCStZipArchive& operator=(const KCStZipArchive&) = delete;

    /// Why the archive is open, 0, or is not; kErr_Generic for a file that is no archive.
    int32_t GetOpenResult() const noexcept { return m_openResult; }

  protected:
    explicit KCStZipArchive(const KCStPath& archive) noexcept;
    bool IsValidSelf() const noexcept override { return m_archive != nullptr; }

    void* m_archive = nullptr; // libzip's

  private:
    KTOpenFileType* m_file; // holds the archive as its readers do
    int32_t m_openResult = 0;
};

/// Reads entries. In an invalid object everything is kErr_ZipEntryNotReadable, and so is an entry that is missing,
/// empty, damaged, encrypted or larger than the limit. Of entries with one name the first counts.
class KORVO_API KCStFileReadFromZip : public KCStZipArchive {
  public:
    explicit KCStFileReadFromZip(const KCStPath& archive) noexcept : KCStZipArchive(archive) {}

    static constexpr uint64_t kDefaultSizeLimit = uint64_t{1} << 30;
    /// The largest entry, in bytes, that is read.
    void SetSizeLimit(uint64_t bytes) noexcept { m_sizeLimit = bytes; }

    /// The size that the archive states; `entry` is the whole path in the archive, letter for letter.
    int32_t GetEntrySize(const KCFixedString<255>& entry, uint64_t& size) noexcept;
    /// `entry` is the whole path in the archive. `out` is empty unless the result is 0.
    int32_t ReadToStdString(const KCFixedString<255>& entry, std::string& out) noexcept;
    /// `entry` is the name alone, found in whichever folder of the archive comes first. `out` is empty unless the
    /// result is 0.
    int32_t ReadToKCStMemObj(const KCFixedString<255>& entry, KCStMemObj& out) noexcept;

  private:
    uint64_t m_sizeLimit = kDefaultSizeLimit;
};

/// Steps through the names in an archive.
class KORVO_API KCStZipFileIterator : public KCStZipArchive {
  public:
    explicit KCStZipFileIterator(const KCStPath& archive) noexcept;

    /// The next entry's name without its folders, from the first 255 characters of its path; folders are skipped.
    /// False, and an empty name, at the end.
    [[nodiscard]] bool GetNextItemFromZip(KCFixedString<255>& leaf) noexcept;

  private:
    uint64_t m_next = 0;
    uint64_t m_count = 0;
};

} // namespace kvKorvoV12_9_0_320::FM
