// A file that appears whole or not at all: it is written under another name in the same folder, and takes its own
// name when it is complete. An earlier file of that name stays until then.
#pragma once

#include <string>
#include <string_view>

#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320::kvHost {

class KCOutputFile {
  public:
    /// Throws KCHostFailure when no file can be written there, or something there is not a regular file. A symbolic
    /// link is followed.
    explicit KCOutputFile(const std::string& path);
    /// Removes what was written, unless it was kept.
    ~KCOutputFile();
    KCOutputFile(const KCOutputFile&) = delete;
    KCOutputFile& operator=(const KCOutputFile&) = delete;

    const std::string& GetPath() const { return m_path; } // as it was given
    int GetDescriptor() const { return m_descriptor; }    // open for reading and writing until Keep

    void Write(std::string_view text);
    /// Gives the file its name. Once, at the end.
    void Keep();

    /// Throws "path: cannot be written: reason"; the reason is that of `errno` when none is given.
    [[noreturn]] void Fail(const std::string& reason = {}) const;

  private:
    void Open();
    void Discard() noexcept;

    std::string m_path;
    std::string m_finalPath; // the path behind symbolic links
    std::string m_temporaryPath;
    int m_descriptor = -1;
};

} // namespace kvKorvoV12_9_0_320::kvHost
