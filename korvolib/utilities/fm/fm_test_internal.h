// What the tests of the file layer share: a folder of their own, plain file access beside FM, and a platform that
// fails, cuts short, or ends the process when told to.
#pragma once

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>

#include <unistd.h>

#include <gtest/gtest.h>

#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/fm/path.h>
#include <korvolib/utilities/fm/platform.h>

namespace kvTest {

namespace FM = kvKorvo::FM;

inline void Spit(const std::string& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
}

inline std::string Slurp(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

inline bool Exists(const std::string& path) {
    return std::filesystem::symlink_status(path).type() != std::filesystem::file_type::not_found;
}

/// A folder that is gone with the object.
class TempFolder {
  public:
    explicit TempFolder(const std::string& base = std::filesystem::temp_directory_path())
        : m_path(base + "/korvolib-test-XXXXXX") {
        if (::mkdtemp(m_path.data()) == nullptr)
            ADD_FAILURE() << "no folder for the test";
    }
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::string& Text() const { return m_path; }
    std::string Text(const std::string& name) const { return m_path + "/" + name; }
    FM::KCStPath Path() const { return FM::KCStPath(m_path.c_str()); }
    FM::KCStPath Path(const std::string& name) const { return FM::KCStPath(Text(name).c_str()); }
    /// A new file with that content.
    FM::KCStPath File(const std::string& name, const std::string& text) const {
        std::filesystem::remove(Text(name)); // rewriting in place makes some file systems wait for the disk
        Spit(Text(name), text);
        return Path(name);
    }
    size_t Count() const {
        return static_cast<size_t>(
            std::distance(std::filesystem::directory_iterator(m_path), std::filesystem::directory_iterator()));
    }

    /// Where nothing waits for a disk, if there is such a place.
    static std::string Fast() {
        const std::string shared = "/dev/shm";
        return std::filesystem::is_directory(shared) ? shared : std::filesystem::temp_directory_path().string();
    }

  private:
    std::string m_path;
};

class FmTest : public ::testing::Test {
  protected:
    TempFolder m_folder;
};

/// Sits between FM and the system while it lives. Every call is counted and shown to `before`, whose error, if not
/// 0, the call gives instead of doing its work (a Close closes all the same). Reads and writes do at most `most`
/// bytes a call.
class FaultyPlatform final : public FM::KCPlatform {
  public:
    using Before = std::function<int(const char* call, size_t index)>;

    explicit FaultyPlatform(Before before = nullptr) : m_before(std::move(before)) { FM::SetPlatform(this); }
    ~FaultyPlatform() { FM::SetPlatform(nullptr); }
    FaultyPlatform(const FaultyPlatform&) = delete;
    FaultyPlatform& operator=(const FaultyPlatform&) = delete;

    size_t most = SIZE_MAX;
    size_t Calls() const { return m_calls; }

    int Open(const char* path, const FM::sOpenHow& how, int& handle) noexcept override {
        return Or("Open", [&] { return m_real.Open(path, how, handle); });
    }
    int Close(int handle) noexcept override {
        const int error = m_real.Close(handle);
        return Or("Close", [&] { return error; });
    }
    int Read(int handle, void* to, size_t size, size_t& done) noexcept override {
        return Or("Read", [&] { return m_real.Read(handle, to, std::min(size, most), done); });
    }
    int Write(int handle, const void* from, size_t size, size_t& done) noexcept override {
        return Or("Write", [&] { return m_real.Write(handle, from, std::min(size, most), done); });
    }
    int Seek(int handle, int64_t offset, FM::KESeekFrom from, int64_t& position) noexcept override {
        return Or("Seek", [&] { return m_real.Seek(handle, offset, from, position); });
    }
    int SetSize(int handle, uint64_t size) noexcept override {
        return Or("SetSize", [&] { return m_real.SetSize(handle, size); });
    }
    int SetMode(int handle, uint32_t mode) noexcept override {
        return Or("SetMode", [&] { return m_real.SetMode(handle, mode); });
    }
    int Flush(int handle) noexcept override {
        return Or("Flush", [&] { return m_real.Flush(handle); });
    }
    int InfoOfHandle(int handle, FM::sObjectInfo& info) noexcept override {
        return Or("InfoOfHandle", [&] { return m_real.InfoOfHandle(handle, info); });
    }
    int WaitForData(int handle) noexcept override {
        return Or("WaitForData", [&] { return m_real.WaitForData(handle); });
    }
    int Lock(int handle, FM::KELockByte byte, bool exclusive) noexcept override {
        return Or("Lock", [&] { return m_real.Lock(handle, byte, exclusive); });
    }
    int IsLockedElsewhere(int handle, bool& isLocked) noexcept override {
        return Or("IsLockedElsewhere", [&] { return m_real.IsLockedElsewhere(handle, isLocked); });
    }
    int Info(const char* path, bool followLinks, FM::sObjectInfo& info) noexcept override {
        return Or("Info", [&] { return m_real.Info(path, followLinks, info); });
    }
    int CheckAccess(const char* path, bool read, bool write) noexcept override {
        return Or("CheckAccess", [&] { return m_real.CheckAccess(path, read, write); });
    }
    int MakeFolder(const char* path) noexcept override {
        return Or("MakeFolder", [&] { return m_real.MakeFolder(path); });
    }
    int RemoveFile(const char* path) noexcept override {
        return Or("RemoveFile", [&] { return m_real.RemoveFile(path); });
    }
    int RemoveFolder(const char* path) noexcept override {
        return Or("RemoveFolder", [&] { return m_real.RemoveFolder(path); });
    }
    int Rename(const char* from, const char* to, bool overwrite) noexcept override {
        return Or("Rename", [&] { return m_real.Rename(from, to, overwrite); });
    }
    int MakeLink(const char* target, const char* path) noexcept override {
        return Or("MakeLink", [&] { return m_real.MakeLink(target, path); });
    }
    int ReadLink(const char* path, char* to, size_t capacity, size_t& length) noexcept override {
        return Or("ReadLink", [&] { return m_real.ReadLink(path, to, capacity, length); });
    }
    int FlushFolder(const char* path) noexcept override {
        return Or("FlushFolder", [&] { return m_real.FlushFolder(path); });
    }
    int OpenFolder(const char* path, bool followLink, void*& folder) noexcept override {
        return Or("OpenFolder", [&] { return m_real.OpenFolder(path, followLink, folder); });
    }
    int NextItem(void* folder, FM::sListedItem& item) noexcept override {
        return Or("NextItem", [&] { return m_real.NextItem(folder, item); });
    }
    void CloseFolder(void* folder) noexcept override { m_real.CloseFolder(folder); }
    const char* Environment(const char* name) noexcept override { return m_real.Environment(name); }
    int HomeFolder(char* to, size_t capacity) noexcept override { return m_real.HomeFolder(to, capacity); }
    uint64_t RandomNumber() noexcept override { return m_real.RandomNumber(); }

  private:
    template <class Call>
    int Or(const char* name, Call call) {
        const size_t index = m_calls++;
        const int error = m_before ? m_before(name, index) : 0;
        return error != 0 ? error : call();
    }

    FM::KCPlatform& m_real = FM::RealPlatform();
    Before m_before;
    size_t m_calls = 0;
};

/// Fails every call of that name.
inline FaultyPlatform::Before Failing(std::string name, int error) {
    return [name, error](const char* call, size_t) { return name == call ? error : 0; };
}

} // namespace kvTest
