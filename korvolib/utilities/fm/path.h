// KCStPath: a path with an owner. It holds one path reference, or none and then is not valid.
//
//   KCStPath session(userDocuments, "Mixes");
//   session.Append("Friday.session");
//   if (session.IsExist()) …
//
// Copies copy the whole path; every operation works on the whole path, and only text that leaves in a fixed string
// is cut. A call that fails leaves the path as it was. What asks the disk goes there at each call. Nothing throws;
// one thread at a time.
#pragma once

#include <cstdint>
#include <vector>

#include <korvolib/export.h>
#include <korvolib/utilities/fm/disk_object.h>
#include <korvolib/utilities/fm/path_ref.h>
#include <korvolib/utilities/strings/fixed_string.h>
#include <korvolib/utilities/validatable.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320::FM {

class KORVO_API KCStPath : public KUValidatable {
  public:
    KCStPath() noexcept = default;
    /// As CreatePathRefFromString.
    explicit KCStPath(const char* utf8) noexcept;
    explicit KCStPath(const KCFixedStringBase& utf8) noexcept : KCStPath(utf8.c_str()) {}
    /// As CreatePathRef.
    KCStPath(const KCStPath& folder, const char* name) noexcept;
    KCStPath(const KCStPath& other) noexcept;
    KCStPath(KCStPath&& other) noexcept;
    /// When memory runs out, this holds no path.
    KCStPath& operator=(const KCStPath& other) noexcept;
    KCStPath& operator=(KCStPath&& other) noexcept;
    ~KCStPath() override;

    // Changing.

    /// Adds a component, or several; text that starts with a separator stays inside.
    int32_t Append(const char* name) noexcept;
    /// Adds text to the end of the leaf name. kErr_Generic for text with a separator, and for the root.
    int32_t ExtendLeafName(const char* text) noexcept;
    void Clear() noexcept;
    /// Owns the reference from now on; what this held before is gone.
    void TakeOver(KTPathType* path) noexcept;

    // References.

    /// A new reference, which the caller disposes of; null without a path or memory.
    [[nodiscard]] KTPathType* CreatePathRefCopy() const noexcept;
    /// Lent: valid until this path changes.
    KTPathType* GetPathRef() const noexcept { return m_path; }

    // Text.

    /// Not valid where the text names no parent.
    KCStPath GetParent() const noexcept;
    KCFixedString<255> GetLeaf() const noexcept;
    KCFixedString<255> GetBase() const noexcept;
    KCFixedString<255> GetExtension() const noexcept;
    KCFixedString<255> GetParentDirectory() const noexcept;
    KCFixedString<1023> GetPathString() const noexcept;
    KCFixedString<1023> GetPosixPathString() const noexcept;
    KCFixedString<1023> GetNativePathString() const noexcept;
    /// The way from here to `other`: see FM::GetRelativeDifference. Empty where there is none.
    KCFixedString<1023> GetRelativeDifference(const KCStPath& other) const noexcept;
    /// The path cut after that many of the components that SplitPath gives; the whole path from their number on.
    KCFixedString<1023> GetStringFromPathToLevel(unsigned level) const noexcept;
    /// The components, "/" first if the path is absolute. kErr_NullArgument without a path; then, and without
    /// memory, `components` is empty.
    int32_t SplitPath(std::vector<KCFixedString<255>>& components) const noexcept;

    // The object on disk; see disk_object.h.

    /// A link exists when what it names does.
    bool IsExist() const noexcept;
    bool IsFile(bool followLink = true) const noexcept;
    bool IsFolder(bool followLink = true) const noexcept;
    bool IsFileSystemLink() const noexcept;
    bool IsLocked() const noexcept;
    bool IsWritable() const noexcept;
    KEPermitions GetPermissions() const noexcept;
    /// Bytes; 0 for what is missing or no file.
    uint64_t GetFileSize() const noexcept;
    /// Seconds since 1970, UTC; 0 for what is missing.
    int64_t GetFileLastWriteTime() const noexcept;
    int32_t ResolveFileSystemLink(KCStPath& out) const noexcept;

    /// The same components, or no path on both sides.
    friend KORVO_API bool operator==(const KCStPath& left, const KCStPath& right) noexcept;

  protected:
    bool IsValidSelf() const noexcept override { return m_path != nullptr; }

  private:
    KTPathType* m_path = nullptr;
};

} // namespace kvKorvoV12_9_0_320::FM
