#include <korvolib/utilities/fm/zip.h>

#include <string>
#include <vector>

#include <sys/stat.h>

#include <gtest/gtest.h>

#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/fm/file.h>
#include <korvolib/utilities/fm/fm_test_internal.h>

namespace {

using namespace kvKorvo::FM;
using kvKorvo::KCFixedString;
using kvKorvo::KCStMemObj;
using kvTest::Slurp;
using kvTest::Spit;
using Names = std::vector<std::string>;

constexpr int32_t kNotReadable = -1011;

class Zips : public kvTest::FmTest {
  protected:
    /// Runs the zip command in the test's folder.
    KCStPath Zip(const std::string& arguments, const std::string& archive = "a.zip") {
        const std::string command = "cd '" + m_folder.Text() + "' && zip -q " + arguments;
        EXPECT_EQ(std::system(command.c_str()), 0) << command;
        return m_folder.Path(archive);
    }
    void File(const std::string& name, const std::string& content) {
        std::filesystem::create_directories(std::filesystem::path(m_folder.Text(name)).parent_path());
        Spit(m_folder.Text(name), content);
    }
    static int32_t ReadText(const KCStPath& archive, const char* entry, std::string& text) {
        return KCStFileReadFromZip(archive).ReadToStdString(entry, text);
    }
    static std::string Text(const KCStPath& archive, const char* entry) {
        std::string text;
        EXPECT_EQ(ReadText(archive, entry, text), 0) << entry;
        return text;
    }
    static Names Leaves(const KCStPath& archive) {
        KCStZipFileIterator iterator(archive);
        Names names;
        for (KCFixedString<255> leaf; iterator.GetNextItemFromZip(leaf);)
            names.emplace_back(leaf.c_str());
        return names;
    }
};

TEST_F(Zips, NestedEntriesAreFoundByPathAndByLeaf) {
    File("dir/sub/file.txt", "content");
    const KCStPath archive = Zip("-r a.zip dir");
    EXPECT_EQ(Text(archive, "dir/sub/file.txt"), "content");
    KCStFileReadFromZip zip(archive);
    std::string text = "old";
    EXPECT_EQ(zip.ReadToStdString("file.txt", text), kNotReadable); // the whole path, letter for letter
    EXPECT_EQ(text, "");
    KCStMemObj block;
    EXPECT_EQ(zip.ReadToKCStMemObj("file.txt", block), 0);
    EXPECT_EQ(block.GetText(), "content");
    EXPECT_EQ(zip.ReadToKCStMemObj("dir/sub/file.txt", block), kNotReadable); // the leaf alone
    EXPECT_TRUE(block.IsEmpty());
    EXPECT_EQ(Leaves(archive), (Names{"file.txt"})); // dir/ and dir/sub/ are no items
}

TEST_F(Zips, StoredAndDeflatedAndZip64) {
    std::string content;
    for (int i = 0; i < 5000; ++i)
        content += std::to_string(i * i);
    File("f", content);
    EXPECT_TRUE(Text(Zip("-0 stored.zip f", "stored.zip"), "f") == content);
    EXPECT_TRUE(Text(Zip("-9 deflated.zip f", "deflated.zip"), "f") == content);
    const KCStPath zip64 = Zip("-fz big.zip f", "big.zip");
    EXPECT_NE(Slurp(m_folder.Text("big.zip")).find("PK\x06\x06"), std::string::npos); // really zip64
    EXPECT_TRUE(Text(zip64, "f") == content);
}

TEST_F(Zips, SizeIsTheOneStated) {
    File("d/f", "12345");
    KCStFileReadFromZip zip(Zip("-r a.zip d"));
    uint64_t size = 7;
    EXPECT_EQ(zip.GetEntrySize("d/f", size), 0);
    EXPECT_EQ(size, 5u);
    EXPECT_EQ(zip.GetEntrySize("f", size), kNotReadable);
    EXPECT_EQ(size, 0u);
}

TEST_F(Zips, EmptyEntryMissingEntryAndEmptyNameAreNotReadable) {
    File("d/empty", "");
    File("d/f", "x");
    KCStFileReadFromZip zip(Zip("-r a.zip d"));
    for (const char* name : {"d/empty", "missing", "", "d/", "D/F"}) {
        std::string text = "old";
        EXPECT_EQ(zip.ReadToStdString(name, text), kNotReadable) << name;
        EXPECT_EQ(text, "");
    }
    for (const char* name : {"empty", "missing", ""}) {
        KCStMemObj block;
        EXPECT_EQ(zip.ReadToKCStMemObj(name, block), kNotReadable) << name;
    }
}

TEST_F(Zips, IterationSkipsFoldersAndEnds) {
    File("d/a", "1");
    File("d/e/b", "2");
    File("c", "");
    KCStZipFileIterator iterator(Zip("-r a.zip d c"));
    KCFixedString<255> leaf;
    Names names;
    while (iterator.GetNextItemFromZip(leaf))
        names.emplace_back(leaf.c_str());
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (Names{"a", "b", "c"}));
    leaf = "old";
    EXPECT_FALSE(iterator.GetNextItemFromZip(leaf));
    EXPECT_EQ(leaf, "");
}

TEST_F(Zips, NameIsCutBeforeItsLeafIsTaken) {
    const std::string folder(200, 'd');
    File(folder + "/" + std::string(100, 'f'), "x");
    EXPECT_EQ(Leaves(Zip("-rD a.zip " + folder)), (Names{std::string(54, 'f')})); // 255 less the folder and its '/'
}

TEST_F(Zips, FirstOfDuplicateNamesCounts) {
    File("aa", "first");
    File("ab", "second");
    Zip("-0 a.zip aa ab");
    std::string bytes = Slurp(m_folder.Text("a.zip"));
    for (size_t at = 0; (at = bytes.find("ab", at)) != std::string::npos;)
        bytes.replace(at, 2, "aa");
    const KCStPath archive = m_folder.File("a.zip", bytes);
    EXPECT_EQ(Leaves(archive), (Names{"aa", "aa"}));
    EXPECT_EQ(Text(archive, "aa"), "first");
}

TEST_F(Zips, TraversalNamesAreOnlyNames) {
    File("x", "outside");
    std::filesystem::create_directory(m_folder.Text("d"));
    const std::string command = "cd '" + m_folder.Text("d") + "' && zip -q ../a.zip ../x";
    ASSERT_EQ(std::system(command.c_str()), 0);
    const KCStPath archive = m_folder.Path("a.zip");
    EXPECT_EQ(Text(archive, "../x"), "outside");
    EXPECT_EQ(Leaves(archive), (Names{"x"}));
    EXPECT_EQ(m_folder.Count(), 3u); // reading made nothing
}

TEST_F(Zips, NamesInUtf8) {
    const std::string name = "\xC3\x9C"
                             "bung \xF0\x9D\x84\x9E.txt";
    File(name, "x");
    const KCStPath archive = Zip("a.zip '" + name + "'");
    EXPECT_EQ(Leaves(archive), (Names{name}));
    EXPECT_EQ(Text(archive, name.c_str()), "x");
}

TEST_F(Zips, EncryptedEntryIsNotReadable) {
    File("f", "secret");
    const KCStPath archive = Zip("-P pass a.zip f");
    std::string text;
    EXPECT_EQ(ReadText(archive, "f", text), kNotReadable);
    EXPECT_EQ(text, "");
}

TEST_F(Zips, SizeLimitIsTheLargestThatIsRead) {
    File("f", "12345");
    KCStFileReadFromZip zip(Zip("a.zip f"));
    std::string text;
    zip.SetSizeLimit(5);
    EXPECT_EQ(zip.ReadToStdString("f", text), 0);
    zip.SetSizeLimit(4);
    EXPECT_EQ(zip.ReadToStdString("f", text), kNotReadable);
    KCStMemObj block;
    EXPECT_EQ(zip.ReadToKCStMemObj("f", block), kNotReadable);
    EXPECT_EQ(KCStFileReadFromZip::kDefaultSizeLimit, uint64_t{1} << 30);
}

TEST_F(Zips, ManyZerosPackedTightAreStillBelieved) {
    File("f", "");
    constexpr size_t kSize = size_t{70} << 20; // beyond what is taken at once
    std::filesystem::resize_file(m_folder.Text("f"), kSize);
    KCStFileReadFromZip zip(Zip("-9 a.zip f"));
    KCStMemObj block;
    EXPECT_EQ(zip.ReadToKCStMemObj("f", block), 0);
    EXPECT_EQ(block.GetSize(), kSize);
}

TEST_F(Zips, StatedSizeThatCannotBeIsALie) {
    File("f", "12345");
    for (const char* how : {"-0", "-9"}) {
        std::filesystem::remove(m_folder.Text("a.zip"));
        Zip(std::string(how) + " a.zip f");
        std::string bytes = Slurp(m_folder.Text("a.zip"));
        const std::string five("\x05\0\0\0", 4);
        for (const size_t at : {bytes.find("PK\x03\x04") + 22, bytes.find("PK\x01\x02") + 24}) {
            ASSERT_EQ(bytes.substr(at, 4), five);
            bytes.replace(at, 4, std::string("\0\0\0\x3F", 4)); // nearly the limit of 1 GiB
        }
        std::string text;
        EXPECT_EQ(ReadText(m_folder.File("a.zip", bytes), "f", text), kNotReadable);
        EXPECT_LT(text.capacity(), 1000u); // no memory was taken for it
    }
}

TEST_F(Zips, WhatIsNoArchiveIsNotValid) {
    const std::pair<KCStPath, int32_t> cases[] = {{m_folder.Path("missing"), -1002},
                                                  {m_folder.File("text", "no archive at all"), -1},
                                                  {m_folder.Path(), -1},
                                                  {KCStPath(), -4003}};
    for (const auto& [path, code] : cases) {
        KCStFileReadFromZip zip(path);
        EXPECT_FALSE(zip);
        EXPECT_EQ(zip.GetOpenResult(), code);
        std::string text;
        KCStMemObj block;
        uint64_t size = 0;
        EXPECT_EQ(zip.ReadToStdString("f", text), kNotReadable);
        EXPECT_EQ(zip.ReadToKCStMemObj("f", block), kNotReadable);
        EXPECT_EQ(zip.GetEntrySize("f", size), kNotReadable);
        KCStZipFileIterator iterator(path);
        EXPECT_FALSE(iterator);
        KCFixedString<255> leaf;
        EXPECT_FALSE(iterator.GetNextItemFromZip(leaf));
    }
}

TEST_F(Zips, ArchiveWithoutEntriesIsValidAndStays) {
    const KCStPath archive = m_folder.File("none.zip", "PK\5\6" + std::string(18, '\0'));
    {
        KCStZipFileIterator iterator(archive);
        EXPECT_TRUE(iterator);
        KCFixedString<255> leaf("old");
        EXPECT_FALSE(iterator.GetNextItemFromZip(leaf));
        EXPECT_EQ(leaf, "");
        std::string text;
        EXPECT_EQ(ReadText(archive, "f", text), kNotReadable);
    }
    EXPECT_EQ(archive.GetFileSize(), 22u);
}

TEST_F(Zips, PipeIsNoArchiveAndHoldsNobodyUp) {
    ASSERT_EQ(::mkfifo(m_folder.Text("pipe").c_str(), 0600), 0);
    EXPECT_EQ(KCStFileReadFromZip(m_folder.Path("pipe")).GetOpenResult(), -1);
}

TEST_F(Zips, ArchiveIsSharedLikeAFileThatIsRead) {
    File("f", "x");
    const KCStPath archive = Zip("a.zip f");
    {
        const KCStFileReadFromZip one(archive);
        const KCStZipFileIterator two(archive);
        EXPECT_TRUE(one.IsValid() && two.IsValid());
        EXPECT_EQ(KCStFileWrite(archive).GetOpenResult(), -2014);
    }
    const KCStFileWrite writer(archive);
    EXPECT_EQ(KCStFileReadFromZip(archive).GetOpenResult(), -2014);
}

TEST_F(Zips, ReadingChangesNothing) {
    File("f", "x");
    const KCStPath archive = Zip("a.zip f");
    const std::string before = Slurp(m_folder.Text("a.zip"));
    Text(archive, "f");
    Leaves(archive);
    EXPECT_TRUE(Slurp(m_folder.Text("a.zip")) == before);
}

// What an archive that was damaged may give: the content as it was, or an error with nothing.
void ExpectExactOrError(const KCStPath& archive, const std::string& content, const std::string& where) {
    KCStFileReadFromZip zip(archive);
    std::string text = "old";
    const int32_t result = zip.ReadToStdString("f.txt", text);
    EXPECT_TRUE(result == 0 ? text == content : result == kNotReadable && text.empty()) << where;
    KCStMemObj block;
    const int32_t blockResult = zip.ReadToKCStMemObj("f.txt", block);
    EXPECT_TRUE(blockResult == 0 ? block.GetText() == content : block.IsEmpty()) << where;
    KCStZipFileIterator iterator(archive);
    KCFixedString<255> leaf;
    for (int steps = 0; iterator.GetNextItemFromZip(leaf); ++steps)
        ASSERT_LT(steps, 100000) << where;
}

class DamagedZips : public Zips {
  protected:
    const std::string m_content = "abcabcabcabcabcabcabcabc, and the end";
    std::string MakeSmall(const std::string& how) {
        std::filesystem::remove(m_folder.Text("a.zip"));
        File("f.txt", m_content);
        Zip(how + " a.zip f.txt");
        return Slurp(m_folder.Text("a.zip"));
    }
};

TEST_F(DamagedZips, TruncatedAtEveryByte) {
    for (const char* how : {"-0X", "-9X", "-fz"}) {
        const std::string whole = MakeSmall(how);
        for (size_t size = 0; size < whole.size(); ++size)
            ExpectExactOrError(m_folder.File("cut.zip", whole.substr(0, size)), m_content,
                               std::string(how) + " cut at " + std::to_string(size));
        ExpectExactOrError(m_folder.File("cut.zip", whole), m_content, how);
        EXPECT_EQ(Text(m_folder.Path("cut.zip"), "f.txt"), m_content);
    }
}

TEST_F(DamagedZips, OneFlippedBitOrByteAnywhere) {
    constexpr unsigned kFlips[] = {0x01, 0x02, 0x04, 0x08, 0x10, 0x20, 0x40, 0x80, 0xFF};
    for (const char* how : {"-0X", "-9X", "-fz"}) {
        const std::string whole = MakeSmall(how);
        std::fstream bytes(m_folder.Text("a.zip"), std::ios::binary | std::ios::in | std::ios::out);
        const auto put = [&](size_t at, unsigned value) {
            bytes.seekp(static_cast<std::streamoff>(at)).put(static_cast<char>(value)).flush();
        };
        for (size_t at = 0; at < whole.size(); ++at) {
            const auto byte = static_cast<unsigned char>(whole[at]);
            for (const unsigned flip : kFlips) {
                put(at, byte ^ flip);
                ExpectExactOrError(m_folder.Path("a.zip"), m_content, how + std::to_string(at));
            }
            put(at, byte);
        }
        EXPECT_EQ(Text(m_folder.Path("a.zip"), "f.txt"), m_content);
    }
}

} // namespace
