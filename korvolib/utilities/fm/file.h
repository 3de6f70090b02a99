// Files with an owner: each object holds one open file, or none and then is not valid, and closes it at its end.
//
//   KCStFileRead sounds(path);
//   std::string text;
//   if (sounds.ReadToStdString(text) == 0) …
//
// Which class says what may be done: KCStFileRead, KCStFileWrite (an existing file, from its end on),
// KCStFileCreate (both sides), KCStTempFile (gone at the end); KCStFileReplace (replace_file.h) saves in one step.
// An object whose file could not be opened says why in GetOpenResult and fails every call with kErr_InvalidFileRef.
// Price, sharing and threads are those of open_file.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include <korvolib/export.h>
#include <korvolib/utilities/fm/open_file.h>
#include <korvolib/utilities/fm/path.h>
#include <korvolib/utilities/mem_obj.h>
#include <korvolib/utilities/validatable.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320::FM {

class KORVO_API KCStFile : public KUValidatable {
  public:
    ~KCStFile() override;
    KCStFile(const KCStFile&) = delete;
    KCStFile& operator=(const KCStFile&) = delete;

    /// Why the file is open, 0, or is not.
    int32_t GetOpenResult() const noexcept { return m_openResult; }
    /// Lent.
    KTOpenFileType* GetFileRef() const noexcept { return m_file; }
    int32_t GetFileSize(uint64_t& size) const noexcept;
    int32_t GetCursor(long& position) const noexcept;
    int32_t SetCursor(long offset, KEPositionMode mode) noexcept { return SetFileCursor(m_file, offset, mode); }
    int32_t FlushBuffers() noexcept;
    /// Closes the file before the object ends; says whether all that was written could be kept.
    int32_t Close() noexcept;

  protected:
    KCStFile() noexcept : m_file(GetInvalidOpenFileRef()) {}

    bool IsValidSelf() const noexcept override { return IsValidOpenFileRef(m_file); }

    // What the variants offer, each the part that fits its permissions.

    int32_t base_Read(void* buffer, size_t count, size_t& done) noexcept {
        return ReadFromFile(m_file, buffer, count, done);
    }
    /// From the cursor to the end; empty on failure.
    int32_t base_ReadToStdString(std::string& out) noexcept;
    int32_t base_ReadToKCStMemObj(KCStMemObj& out) noexcept;
    int32_t base_Write(const void* buffer, size_t count, size_t& done) noexcept {
        return WriteToFile(m_file, buffer, count, done);
    }
    /// All of it, or an error.
    int32_t base_WriteFromString(std::string_view text) noexcept;
    /// kErr_NullArgument for null.
    int32_t base_WriteFromString(const char* text) noexcept;
    int32_t base_WriteFromKCStMemObj(const KCStMemObj& from) noexcept;

    KTOpenFileType* m_file;
    int32_t m_openResult = 0;
};

class KORVO_API KCStFileRead : public KCStFile {
  public:
    explicit KCStFileRead(const KCStPath& path) noexcept : KCStFileRead(path.GetPathRef()) {}
    explicit KCStFileRead(KTPathType* path) noexcept;

    int32_t Read(void* buffer, size_t count, size_t& done) noexcept { return base_Read(buffer, count, done); }
    /// From the cursor to the end.
    int32_t ReadToStdString(std::string& out) noexcept { return base_ReadToStdString(out); }
    int32_t ReadToKCStMemObj(KCStMemObj& out) noexcept { return base_ReadToKCStMemObj(out); }
};

class KORVO_API KCStFileWrite : public KCStFile {
  public:
    /// The file exists, and the cursor stands at its end.
    explicit KCStFileWrite(const KCStPath& path) noexcept : KCStFileWrite(path.GetPathRef()) {}
    explicit KCStFileWrite(KTPathType* path) noexcept;

    int32_t Write(const void* buffer, size_t count, size_t& done) noexcept {
        return base_Write(buffer, count, done);
    }
    int32_t WriteFromString(std::string_view text) noexcept { return base_WriteFromString(text); }
    int32_t WriteFromString(const char* text) noexcept { return base_WriteFromString(text); }
    int32_t WriteFromKCStMemObj(const KCStMemObj& from) noexcept { return base_WriteFromKCStMemObj(from); }
    int32_t SetFileSize(uint64_t size) noexcept { return FM::SetFileSize(m_file, size); }
};

class KORVO_API KCStFileCreate : public KCStFile {
  public:
    /// As CreateAFile. CreateAlways empties an existing file at once; KCStFileReplace keeps it until the new
    /// content is complete.
    explicit KCStFileCreate(const KCStPath& path, KECreateFlags flags = KECreateFlags::OpenOrCreate,
                            KEPermitions permissions = KEPermitions::ReadWrite) noexcept
        : KCStFileCreate(path.GetPathRef(), flags, permissions) {}
    explicit KCStFileCreate(KTPathType* path, KECreateFlags flags = KECreateFlags::OpenOrCreate,
                            KEPermitions permissions = KEPermitions::ReadWrite) noexcept;

    int32_t Read(void* buffer, size_t count, size_t& done) noexcept { return base_Read(buffer, count, done); }
    int32_t ReadToStdString(std::string& out) noexcept { return base_ReadToStdString(out); }
    int32_t ReadToKCStMemObj(KCStMemObj& out) noexcept { return base_ReadToKCStMemObj(out); }
    int32_t Write(const void* buffer, size_t count, size_t& done) noexcept {
        return base_Write(buffer, count, done);
    }
    int32_t WriteFromString(std::string_view text) noexcept { return base_WriteFromString(text); }
    int32_t WriteFromString(const char* text) noexcept { return base_WriteFromString(text); }
    int32_t WriteFromKCStMemObj(const KCStMemObj& from) noexcept { return base_WriteFromKCStMemObj(from); }
    int32_t SetFileSize(uint64_t size) noexcept { return FM::SetFileSize(m_file, size); }
};

class KORVO_API KCStTempFile : public KCStFile {
  public:
    /// In the system's folder for temporary files.
    KCStTempFile() noexcept;
    explicit KCStTempFile(const KCStPath& folder) noexcept;
    /// Closes and deletes the file.
    ~KCStTempFile() override;

    const KCStPath& GetPath() const noexcept { return m_path; }
    int32_t Write(const void* buffer, size_t count, size_t& done) noexcept {
        return base_Write(buffer, count, done);
    }
    int32_t WriteFromKCStMemObj(const KCStMemObj& from) noexcept { return base_WriteFromKCStMemObj(from); }
    /// Closes the file and leaves it to the caller: it stays, at `path`. kErr_InvalidFileRef without a file.
    int32_t TakeOver(KCStPath& path) noexcept;

  private:
    KCStPath m_path;
};

} // namespace kvKorvoV12_9_0_320::FM
