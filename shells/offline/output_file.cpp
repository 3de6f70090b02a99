#include "output_file.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <set>

#include <korvolib/utilities/error_codes.h>

#include "failure.h"
#include "file_problem.h"

namespace kvKorvoV12_9_0_320::kvHost {

KCOutputFile::KCOutputFile(const std::string& path) : m_path(path) {
    const FM::KCStPath whole(path.c_str());
    if (whole.IsFolder())
        Fail("it is a folder");
    if (whole.IsExist() && !whole.IsFile())
        Fail("it is not a regular file");
    if (path.empty() || path.ends_with('/'))
        Fail("a file name is missing");
    // The layer would make the missing folders; a mistyped path is no reason to.
    const FM::KCStPath folder = whole.GetParent();
    if (folder.IsValid() && !folder.IsFolder())
        Fail("no such folder");
    errno = 0;
    m_file = std::make_unique<FM::KCStFileReplace>(whole);
    if (const int32_t result = m_file->GetOpenResult(); result != kErr_NoErr)
        Fail(FileProblem(result));
}

KCOutputFile::~KCOutputFile() = default;

void KCOutputFile::Write(std::string_view bytes) {
    if (!TryWrite(bytes))
        Fail({});
}

// The file's own cursor follows only for a write: what merely looks around may look further than the layer seeks.
bool KCOutputFile::TryWrite(std::string_view bytes) noexcept {
    if (!m_problem.empty())
        return false;
    errno = 0;
    int32_t result = kErr_NoErr;
    size_t done = 0;
    if (m_position != m_fileCursor)
        result = m_file->SetCursor(static_cast<long>(m_position), FM::KEPositionMode::FromStart);
    if (result == kErr_NoErr) {
        result = m_file->Write(bytes.data(), bytes.size(), done);
        m_position += static_cast<int64_t>(done);
        m_fileCursor = m_position;
        m_size = std::max(m_size, m_position);
    }
    if (result != kErr_NoErr)
        m_problem = FileProblem(result);
    return result == kErr_NoErr;
}

void KCOutputFile::Keep() {
    if (!m_problem.empty())
        Fail({});
    errno = 0;
    if (const int32_t result = m_file->Commit(); result != kErr_NoErr)
        Fail(FileProblem(result));
    m_file.reset();
}

void KCOutputFile::Fail(const std::string& reason) const {
    throw KCHostFailure(m_path + ": cannot be written: " + (m_problem.empty() ? reason : m_problem));
}

void RefuseSharedOutputs(const std::vector<std::string>& paths) {
    std::set<std::filesystem::path> named;
    for (const std::string& path : paths)
        if (!path.empty() && !named.insert(std::filesystem::path(path).lexically_normal()).second)
            throw KCHostFailure(path + ": named for two outputs");
}

} // namespace kvKorvoV12_9_0_320::kvHost
