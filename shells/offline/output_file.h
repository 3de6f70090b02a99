// A file that appears whole or not at all: it is written under another name in the same folder, and takes its own
// name when it is complete. An earlier file of that name stays until then.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <korvolib/utilities/fm/replace_file.h>

namespace kvKorvoV12_9_0_320::kvHost {

class KCOutputFile {
  public:
    /// Throws KCHostFailure when no file can be written there, the folder is missing, or something there is not a
    /// regular file. A symbolic link is followed.
    explicit KCOutputFile(const std::string& path);
    /// Removes what was written, unless it was kept.
    ~KCOutputFile();
    KCOutputFile(const KCOutputFile&) = delete;
    KCOutputFile& operator=(const KCOutputFile&) = delete;

    const std::string& GetPath() const { return m_path; } // as it was given

    /// Throws KCHostFailure.
    void Write(std::string_view bytes);

    // For a library that moves about in the file it writes. Nothing is thrown; after the first problem nothing more
    // is written, Keep fails, and Fail tells it.
    bool TryWrite(std::string_view bytes) noexcept;
    void Seek(int64_t position) noexcept { m_position = position; } // takes effect with the next write
    int64_t GetPosition() const noexcept { return m_position; }
    int64_t GetSize() const noexcept { return m_size; }

    /// Gives the file its name, if every write succeeded; throws otherwise. Once, at the end.
    void Keep();

    /// Throws "path: cannot be written: reason"; the reason is that of the first write that failed, where one did.
    [[noreturn]] void Fail(const std::string& reason) const;

  private:
    std::string m_path;
    std::unique_ptr<FM::KCStFileReplace> m_file;
    std::string m_problem;    // of the first write that failed
    int64_t m_position = 0;   // where the next write goes
    int64_t m_fileCursor = 0; // where the file itself stands
    int64_t m_size = 0;
};

/// Throws KCHostFailure where two of the paths mean one file; empty ones mean none.
void RefuseSharedOutputs(const std::vector<std::string>& paths);

} // namespace kvKorvoV12_9_0_320::kvHost
