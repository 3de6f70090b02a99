// A film: numbered pictures in a folder, 0001.png and on. It appears when it is complete, and replaces the film
// that the folder held before; until then its pictures are in a folder inside.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320::kvHost {

inline constexpr size_t kLongestFilm = 10000; // pictures

class KCFilm {
  public:
    /// Makes the folder unless it is there; the folder above it must be. Throws KCHostFailure.
    explicit KCFilm(const std::string& folder, size_t longest = kLongestFilm);
    /// Leaves everything as it was, unless the film was kept.
    ~KCFilm();
    KCFilm(const KCFilm&) = delete;
    KCFilm& operator=(const KCFilm&) = delete;

    /// The contents of the next picture. Throws KCHostFailure, also for more than the longest film has.
    void Add(std::string_view png);
    size_t GetNumPictures() const { return m_numPictures; }
    /// Once, at the end; throws KCHostFailure. Numbered pictures of an earlier, longer film go.
    void Keep();

  private:
    [[noreturn]] void Fail(const std::string& reason) const;

    std::filesystem::path m_folder;
    std::filesystem::path m_hidden; // where the pictures are meanwhile
    size_t m_longest;
    bool m_isOwn = false; // the folder was made here
    size_t m_numPictures = 0;
};

} // namespace kvKorvoV12_9_0_320::kvHost
