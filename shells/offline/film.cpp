#include "film.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <system_error>

#include "failure.h"

namespace kvKorvoV12_9_0_320::kvHost {

namespace fs = std::filesystem;

namespace {

std::string PictureName(size_t number) {
    std::string digits = std::to_string(number);
    digits.insert(0, digits.size() < 4 ? 4 - digits.size() : 0, '0');
    return digits + ".png";
}

} // namespace

KCFilm::KCFilm(const std::string& folder, size_t longest) : m_folder(folder), m_longest(longest) {
    std::error_code error;
    m_isOwn = fs::create_directory(m_folder, error);
    if (!fs::is_directory(m_folder))
        Fail(fs::exists(m_folder) ? "it is not a folder" : error.message());
    std::string pattern = (m_folder / ".film.XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) {
        const int problem = errno;
        if (m_isOwn)
            fs::remove(m_folder, error);
        Fail(std::strerror(problem));
    }
    m_hidden = pattern;
}

KCFilm::~KCFilm() {
    std::error_code ignored;
    fs::remove_all(m_hidden, ignored);
    if (m_isOwn)
        fs::remove(m_folder, ignored); // no more than an empty folder
}

void KCFilm::Add(std::string_view png) {
    if (m_numPictures == m_longest)
        Fail("the film has more than " + std::to_string(m_longest) + " pictures");
    errno = 0;
    std::ofstream file(m_hidden / PictureName(m_numPictures + 1), std::ios::binary);
    file.write(png.data(), static_cast<std::streamsize>(png.size()));
    file.close();
    if (!file)
        Fail(std::strerror(errno));
    ++m_numPictures;
}

void KCFilm::Keep() {
    std::error_code error;
    for (size_t number = 1; number <= m_numPictures && !error; ++number)
        fs::rename(m_hidden / PictureName(number), m_folder / PictureName(number), error);
    if (error)
        Fail(error.message());
    // What follows of an earlier film is not part of this one.
    for (size_t number = m_numPictures + 1; fs::remove(m_folder / PictureName(number), error); ++number)
        continue;
    if (error)
        Fail(error.message());
    fs::remove(m_hidden, error); // empty now; what is left of it goes at the end
}

void KCFilm::Fail(const std::string& reason) const {
    throw KCHostFailure(m_folder.string() + ": no film can be written there: " + reason);
}

} // namespace kvKorvoV12_9_0_320::kvHost
