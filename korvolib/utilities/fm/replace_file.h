// Replacing a file in one step: whoever looks sees the old content or the new, never anything between, whatever
// fails and whenever the process ends.
//
//   if (KCStFileReplace save(path); save.WriteFromString(text) == 0)
//       result = save.Commit();
//
// The new content goes to a temporary file ("korvo-….tmp") in the same folder, which gets the old file's permission
// bits, is flushed to the medium and then takes the old one's name. Through a link, what the link names is replaced
// and the link stays. Anyone who writes to the old file (see open_file.h) is in the way: kErr_SharingViolation at
// the start. Those who read it keep the content they opened. The price: twice the room on disk, one flush, and a
// new object on disk: hard links to the old one keep the old content, and its owner is whoever saves. A process
// that is killed may leave its temporary file behind. May wait for the disk; one thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>

#include <korvolib/export.h>
#include <korvolib/utilities/fm/file.h>
#include <korvolib/utilities/fm/path.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320::FM {

class KORVO_API KCStFileReplace : public KCStFile {
  public:
    /// Makes the folders that lead to the file. A folder, or a file that may not be written to, is kErr_Generic; a
    /// device or a pipe is written to directly.
    explicit KCStFileReplace(const KCStPath& path) noexcept : KCStFileReplace(path.GetPathRef()) {}
    explicit KCStFileReplace(KTPathType* path) noexcept;
    /// Without a Commit the old file stays.
    ~KCStFileReplace() override;

    int32_t Write(const void* buffer, size_t count, size_t& done) noexcept;
    int32_t WriteFromString(std::string_view text) noexcept;
    int32_t WriteFromString(const char* text) noexcept;
    int32_t WriteFromKCStMemObj(const KCStMemObj& from) noexcept;

    /// Puts what was written in the old file's place, if every write so far was done in full; otherwise repeats the
    /// first error. Either way this is not valid afterwards.
    int32_t Commit() noexcept;

  protected:
    /// Keeps the first error of all writes, and gives this one back.
    int32_t Remember(int32_t writeResult) noexcept;

    KTOpenFileType*
        m_old; // the file that is replaced, held while this lives; the invalid reference if there is none
    uint32_t m_mode = kModeOfNewFiles;
    static constexpr uint32_t kModeOfNewFiles = ~uint32_t{0}; // whatever the process gives its new files

  private:
    int32_t Start(KTPathType* path) noexcept;
    int32_t TakeOldFile() noexcept;
    int32_t StartTemporary() noexcept;
    int32_t FinishTemporary() noexcept;
    int32_t PutInPlace() noexcept;
    void GiveUp() noexcept;

    KCStPath m_target;
    KCStPath m_temporary;      // none when the target is written to directly
    int32_t m_writeResult = 0; // the first that was an error
};

/// The whole of it: the file holds exactly these bytes, or is as it was and this says why. kErr_NullArgument for
/// null bytes with a size.
[[nodiscard]] KORVO_API int32_t ReplaceFile(KTPathType* path, const void* bytes, size_t size) noexcept;
[[nodiscard]] KORVO_API int32_t ReplaceFile(const KCStPath& path, const void* bytes, size_t size) noexcept;

} // namespace kvKorvoV12_9_0_320::FM
