#include "film.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <set>

#include "failure.h"

namespace kvKorvoV12_9_0_320::kvHost {
namespace {

namespace fs = std::filesystem;
using FileNames = std::set<std::string>;

class Film : public testing::Test {
  protected:
    Film() {
        std::string pattern = testing::TempDir() + "korvo-film-test.XXXXXX";
        m_folder = mkdtemp(pattern.data());
    }
    ~Film() override { fs::remove_all(m_folder); }

    std::string Path(const std::string& name) const { return (m_folder / name).string(); }
    FileNames Names(const std::string& folder) const {
        FileNames names;
        for (const auto& entry : fs::directory_iterator(m_folder / folder))
            names.insert(entry.path().filename().string());
        return names;
    }
    std::string Contents(const std::string& name) const {
        std::ifstream file(m_folder / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    void Make(const std::string& folder, const std::vector<std::string>& pictures) const {
        KCFilm film(Path(folder));
        for (const std::string& picture : pictures)
            film.Add(picture);
        film.Keep();
    }
    std::string ComplaintOf(const std::string& folder) const {
        try {
            KCFilm film(folder);
        } catch (const KCHostFailure& failure) {
            return failure.what();
        }
        return "no complaint";
    }

    fs::path m_folder;
};

TEST_F(Film, NumbersItsPicturesInAFolderOfItsOwn) {
    Make("film", {"a", "b"});
    EXPECT_EQ(Names("film"), (FileNames{"0001.png", "0002.png"}));
    EXPECT_EQ(Contents("film/0002.png"), "b");
}

TEST_F(Film, ReplacesTheFilmBefore) {
    Make("film", {"a", "b", "c", "d"});
    Make("film", {"e", "f"});
    EXPECT_EQ(Names("film"), (FileNames{"0001.png", "0002.png"}));
    EXPECT_EQ(Contents("film/0001.png"), "e");
}

TEST_F(Film, LeavesOtherFilesAlone) {
    Make("film", {"a"});
    std::ofstream(Path("film/notes.txt")) << "mine";
    std::ofstream(Path("film/0003.png")) << "mine"; // no film had it: 0002 is missing
    Make("film", {"b"});
    EXPECT_EQ(Names("film"), (FileNames{"0001.png", "0003.png", "notes.txt"}));
}

TEST_F(Film, ThatIsNotKeptLeavesEverythingAsItWas) {
    {
        KCFilm film(Path("film"));
        film.Add("a");
    }
    EXPECT_FALSE(fs::exists(Path("film")));
    Make("film", {"a", "b"});
    {
        KCFilm film(Path("film"));
        film.Add("c");
    }
    EXPECT_EQ(Names("film"), (FileNames{"0001.png", "0002.png"}));
    EXPECT_EQ(Contents("film/0001.png"), "a");
}

TEST_F(Film, NeedsAFolder) {
    std::ofstream(Path("file")) << "mine";
    EXPECT_EQ(ComplaintOf(Path("file")), Path("file") + ": no film can be written there: it is not a folder");
    EXPECT_EQ(ComplaintOf(Path("no/film")),
              Path("no/film") + ": no film can be written there: No such file or directory");
}

TEST_F(Film, EndsAtItsLimit) {
    KCFilm film(Path("film"), 2);
    film.Add("a");
    film.Add("b");
    EXPECT_THROW(film.Add("c"), KCHostFailure);
    film.Keep();
    EXPECT_EQ(Names("film"), (FileNames{"0001.png", "0002.png"}));
}

} // namespace
} // namespace kvKorvoV12_9_0_320::kvHost
