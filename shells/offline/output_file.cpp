#include "output_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "failure.h"

namespace kvKorvoV12_9_0_320::kvHost {
namespace {

namespace fs = std::filesystem;

// Where the file really goes: a name put in place of a link would cut the link.
std::string FollowLinks(const std::string& path) {
    std::error_code ignored;
    const fs::path resolved = fs::is_symlink(path, ignored) ? fs::weakly_canonical(path, ignored) : fs::path(path);
    return resolved.empty() ? path : resolved.string();
}

} // namespace

KCOutputFile::KCOutputFile(const std::string& path) : m_path(path), m_finalPath(FollowLinks(path)) {
    std::error_code problem;
    const fs::file_status status = fs::status(m_finalPath, problem);
    if (fs::is_directory(status))
        Fail("it is a folder");
    if (fs::exists(status) && !fs::is_regular_file(status))
        Fail("it is not a regular file");
    Open();
}

KCOutputFile::~KCOutputFile() { Discard(); }

void KCOutputFile::Open() {
    const fs::path whole(m_finalPath);
    if (whole.filename().empty())
        Fail("a file name is missing");
    for (int attempt = 0; m_descriptor < 0; ++attempt) {
        std::string name(".");
        name += whole.filename().string() + "." + std::to_string(getpid()) + "." + std::to_string(attempt);
        m_temporaryPath = (whole.parent_path() / name).string();
        m_descriptor = open(m_temporaryPath.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (m_descriptor < 0 && (errno != EEXIST || attempt == 100))
            Fail();
    }
}

void KCOutputFile::Write(std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = write(m_descriptor, text.data(), text.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            Fail();
        text.remove_prefix(static_cast<size_t>(written));
    }
}

void KCOutputFile::Keep() {
    const int descriptor = m_descriptor;
    m_descriptor = -1;
    const bool isComplete =
        close(descriptor) == 0 && std::rename(m_temporaryPath.c_str(), m_finalPath.c_str()) == 0;
    if (!isComplete) {
        const std::string reason = std::strerror(errno);
        unlink(m_temporaryPath.c_str());
        Fail(reason);
    }
}

void KCOutputFile::Discard() noexcept {
    if (m_descriptor < 0)
        return;
    close(m_descriptor);
    unlink(m_temporaryPath.c_str());
    m_descriptor = -1;
}

void KCOutputFile::Fail(const std::string& reason) const {
    throw KCHostFailure(m_path + ": cannot be written: " + (reason.empty() ? std::strerror(errno) : reason));
}

} // namespace kvKorvoV12_9_0_320::kvHost
