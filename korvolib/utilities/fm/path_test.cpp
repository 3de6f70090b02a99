#include <korvolib/utilities/fm/path.h>

#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/fm/fm_test_internal.h>
#include <tests/support/german_locale.h>

namespace {

using namespace kvKorvo::FM;
using kvKorvo::KCFixedString;

std::string Text(const KCStPath& path) { return path.GetPathString().c_str(); }

TEST(Path, ExamplesOfTheHeaderHold) {
    KCStPath session(KCStPath("/home/ada"), "Mixes");
    ASSERT_EQ(session.Append("Friday.session"), 0);
    EXPECT_EQ(Text(session), "/home/ada/Mixes/Friday.session");
    EXPECT_FALSE(session.IsExist());
}

TEST(Path, LeafBaseAndExtension) {
    const KCStPath path("/sounds/name.txt");
    EXPECT_EQ(path.GetLeaf(), "name.txt");
    EXPECT_EQ(path.GetBase(), "name");
    EXPECT_EQ(path.GetExtension(), "txt");
    EXPECT_EQ(path.GetParentDirectory(), "sounds");
}

TEST(Path, ExtensionIsWhatFollowsTheLastDot) {
    EXPECT_EQ(KCStPath("a.b.c").GetExtension(), "c");
    EXPECT_EQ(KCStPath("a.b.c").GetBase(), "a.b");
    EXPECT_EQ(KCStPath("noext").GetExtension(), "");
    EXPECT_EQ(KCStPath("folder.d/noext").GetExtension(), "");
    EXPECT_EQ(KCStPath("ends.").GetExtension(), "");
    EXPECT_EQ(KCStPath("ends.").GetBase(), "ends");
}

TEST(Path, HiddenNameIsAllExtension) {
    EXPECT_EQ(KCStPath(".hidden").GetExtension(), "hidden");
    EXPECT_EQ(KCStPath(".hidden").GetBase(), "");
}

TEST(Path, DotsAreNamesWithoutExtension) {
    EXPECT_EQ(KCStPath("..").GetExtension(), "");
    EXPECT_EQ(KCStPath("..").GetBase(), "..");
    EXPECT_EQ(KCStPath("a/.").GetLeaf(), ".");
}

TEST(Path, TrailingSeparatorsAreIgnored) {
    const KCStPath path("/a/b.c//");
    EXPECT_EQ(Text(path), "/a/b.c");
    EXPECT_EQ(path.GetLeaf(), "b.c");
    EXPECT_EQ(path.GetExtension(), "c");
    EXPECT_EQ(path.GetParentDirectory(), "a");
}

TEST(Path, RootIsItsOwnLeafAndHasNoParent) {
    const KCStPath root("///");
    EXPECT_EQ(Text(root), "/");
    EXPECT_EQ(root.GetLeaf(), "/");
    EXPECT_FALSE(root.GetParent());
    EXPECT_EQ(root.GetParentDirectory(), "");
}

TEST(Path, ParentGoesUpUntilTheTextEnds) {
    KCStPath path("/a//b/c");
    std::vector<std::string> seen;
    for (; path; path = path.GetParent())
        seen.push_back(Text(path));
    EXPECT_EQ(seen, (std::vector<std::string>{"/a//b/c", "/a//b", "/a", "/"}));
    EXPECT_FALSE(KCStPath("alone").GetParent());
}

TEST(Path, NothingIsNoPath) {
    for (const KCStPath& none : {KCStPath(), KCStPath(""), KCStPath(static_cast<const char*>(nullptr)),
                                 KCStPath(KCStPath(), "name"), KCStPath(KCStPath("a"), nullptr)}) {
        EXPECT_FALSE(none);
        EXPECT_EQ(none.GetPathRef(), nullptr);
        EXPECT_EQ(none.GetPathString(), "");
        EXPECT_EQ(none.GetLeaf(), "");
        EXPECT_EQ(none.GetStringFromPathToLevel(3), "");
        EXPECT_FALSE(none.GetParent());
        EXPECT_FALSE(none.IsExist());
        EXPECT_EQ(none.GetFileSize(), 0u);
        EXPECT_EQ(none.CreatePathRefCopy(), nullptr);
    }
}

TEST(Path, ChangesOfNoPathAreRefused) {
    KCStPath none;
    EXPECT_EQ(none.Append("a"), kvKorvo::kErr_NullArgument);
    EXPECT_EQ(none.ExtendLeafName("a"), kvKorvo::kErr_NullArgument);
    std::vector<KCFixedString<255>> components = {"old"};
    EXPECT_EQ(none.SplitPath(components), kvKorvo::kErr_NullArgument);
    EXPECT_TRUE(components.empty());
}

TEST(Path, AppendStaysInside) {
    KCStPath path("/a");
    ASSERT_EQ(path.Append("/etc/passwd"), 0);
    EXPECT_EQ(Text(path), "/a/etc/passwd");
    ASSERT_EQ(path.Append("///"), 0);
    ASSERT_EQ(path.Append(""), 0);
    EXPECT_EQ(Text(path), "/a/etc/passwd");
    EXPECT_EQ(path.Append(nullptr), kvKorvo::kErr_NullArgument);
    EXPECT_EQ(Text(path), "/a/etc/passwd");
}

TEST(Path, AppendToTheRootAndWithSeveralComponents) {
    KCStPath path("/");
    ASSERT_EQ(path.Append("a/b/"), 0);
    EXPECT_EQ(Text(path), "/a/b");
}

TEST(Path, ExtendLeafNameAddsToItsEnd) {
    KCStPath path("/a/mix/");
    ASSERT_EQ(path.ExtendLeafName(".session"), 0);
    EXPECT_EQ(Text(path), "/a/mix.session");
    EXPECT_EQ(path.ExtendLeafName("/x"), kvKorvo::kErr_Generic);
    EXPECT_EQ(path.ExtendLeafName(nullptr), kvKorvo::kErr_NullArgument);
    EXPECT_EQ(Text(path), "/a/mix.session");
    EXPECT_EQ(KCStPath("/").ExtendLeafName("x"), kvKorvo::kErr_Generic);
}

TEST(Path, CopiesAreTheirOwn) {
    const KCStPath original("/a");
    KCStPath copy(original);
    ASSERT_EQ(copy.Append("b"), 0);
    EXPECT_EQ(Text(original), "/a");
    copy = original;
    EXPECT_EQ(copy, original);
    EXPECT_NE(copy.GetPathRef(), original.GetPathRef());
    const KCStPath& same = copy;
    copy = same;
    EXPECT_EQ(copy, original);
}

TEST(Path, MovesLeaveNothing) {
    KCStPath from("/a");
    KCStPath to("/b");
    to = std::move(from);
    EXPECT_EQ(Text(to), "/a");
    EXPECT_FALSE(from); // NOLINT(bugprone-use-after-move,clang-analyzer-cplusplus.Move): stated result
    KCStPath& same = to;
    to = std::move(same);
    EXPECT_EQ(Text(to), "/a");
}

TEST(Path, TakeOverAdoptsAndCopyHandsOut) {
    KCStPath path("/old");
    KTPathType* reference = nullptr;
    ASSERT_EQ(CreatePathRefFromString("/new", reference), 0);
    path.TakeOver(reference);
    EXPECT_EQ(path.GetPathRef(), reference);
    path.TakeOver(reference); // its own already
    KTPathType* copy = path.CreatePathRefCopy();
    path.Clear();
    EXPECT_FALSE(path);
    KCFixedString<1023> text;
    EXPECT_STREQ(GetPathAsString(copy, text), "/new");
    EXPECT_EQ(DisposePathRef(copy), 0);
    EXPECT_EQ(copy, nullptr);
    EXPECT_EQ(DisposePathRef(copy), kvKorvo::kErr_NullArgument);
}

TEST(Path, EqualMeansTheSameComponents) {
    EXPECT_EQ(KCStPath("/a/b"), KCStPath("/a//b/"));
    EXPECT_NE(KCStPath("/a/b"), KCStPath("a/b"));
    EXPECT_NE(KCStPath("/a/b"), KCStPath("/a/b/c"));
    EXPECT_NE(KCStPath("/a"), KCStPath("/A"));
    EXPECT_EQ(KCStPath(), KCStPath());
    EXPECT_NE(KCStPath(), KCStPath("/"));
    EXPECT_FALSE(IsSamePath(KCStPath(), KCStPath()));
}

TEST(Path, SplitAndLevelsCountTheRoot) {
    std::vector<KCFixedString<255>> components;
    const KCStPath path("//a//b.c/d");
    ASSERT_EQ(path.SplitPath(components), 0);
    EXPECT_EQ(components, (std::vector<KCFixedString<255>>{"/", "a", "b.c", "d"}));
    EXPECT_EQ(path.GetStringFromPathToLevel(0), "");
    EXPECT_EQ(path.GetStringFromPathToLevel(1), "/");
    EXPECT_EQ(path.GetStringFromPathToLevel(3), "//a//b.c");
    EXPECT_EQ(path.GetStringFromPathToLevel(4), "//a//b.c/d");
    EXPECT_EQ(path.GetStringFromPathToLevel(UINT32_MAX), "//a//b.c/d");
    EXPECT_EQ(KCStPath("a/b").GetStringFromPathToLevel(1), "a");
}

TEST(Path, RelativeDifferenceLeadsFromOneToTheOther) {
    const auto way = [](const char* from, const char* to) {
        return std::string(KCStPath(from).GetRelativeDifference(KCStPath(to)).c_str());
    };
    EXPECT_EQ(way("/a/b", "/a/b/c/d"), "c/d");
    EXPECT_EQ(way("/a/b", "/a/c/d"), "../c/d");
    EXPECT_EQ(way("/a/b/c", "/a"), "../..");
    EXPECT_EQ(way("/a", "/a/"), ".");
    EXPECT_EQ(way("a", "b"), "../b");
    EXPECT_EQ(way("/ab", "/a"), "../a");
    EXPECT_EQ(way("/a", "a"), "");
    EXPECT_EQ(way("a/../b", "c"), "");
}

TEST(Path, RelativeDifferenceReportsNull) {
    KCFixedString<1023> out("old");
    EXPECT_EQ(GetRelativeDifference(KCStPath(), KCStPath("a"), out), kvKorvo::kErr_NullArgument);
    EXPECT_EQ(out, "");
    EXPECT_EQ(GetRelativeDifference(KCStPath("/a"), KCStPath("a"), out), kvKorvo::kErr_Generic);
}

TEST(Path, ExtensionsCompareByTheirFirstFifteenCharacters) {
    EXPECT_TRUE(IsSameExtension("TXT", "txt"));
    EXPECT_FALSE(IsSameExtension("txt", "tx"));
    EXPECT_TRUE(IsSameExtension("abcdefghijklmnoX", "ABCDEFGHIJKLMNOY"));
    EXPECT_FALSE(IsSameExtension("abcdefghijklmnX", "abcdefghijklmnY"));
    EXPECT_FALSE(IsSameExtension(nullptr, "txt"));
    EXPECT_FALSE(IsSameExtension("", ""));
    EXPECT_FALSE(IsSameExtension("txt", nullptr));
}

TEST(Path, TextIsCutButThePathIsWhole) {
    const std::string longName(300, 'x');
    KCStPath path(longName.c_str());
    EXPECT_EQ(path.GetLeaf().size(), 255u);
    for (int i = 0; i < 5; ++i)
        ASSERT_EQ(path.Append(longName.c_str()), 0);
    EXPECT_EQ(path.GetPathString().size(), 1023u);
    std::vector<KCFixedString<255>> components;
    ASSERT_EQ(path.SplitPath(components), 0);
    EXPECT_EQ(components.size(), 6u);
    KCStPath other(path);
    ASSERT_EQ(other.ExtendLeafName("y"), 0);
    EXPECT_EQ(path.GetPathString(), other.GetPathString());
    EXPECT_NE(path, other);
}

TEST(Path, CreatePathRefReportsItsArguments) {
    KTPathType* out = reinterpret_cast<KTPathType*>(1);
    EXPECT_EQ(CreatePathRef(nullptr, "a", out), kvKorvo::kErr_NullArgument);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(CreatePathRef(KCStPath("/").GetPathRef(), nullptr, out), kvKorvo::kErr_NullArgument);
    EXPECT_EQ(CreatePathRefFromString(nullptr, out), kvKorvo::kErr_NullArgument);
    EXPECT_EQ(CreatePathRefFromString("", out), kvKorvo::kErr_FileNotFound);
}

TEST(Path, BytesPassThroughInAGermanHost) {
    const kvTest::GermanLocale german;
    ASSERT_TRUE(german.IsActive());
    const KCStPath path("/Musik/St\xC3\xBC"
                        "ck \xFF\xFE.wav");
    EXPECT_EQ(path.GetBase(), "St\xC3\xBC"
                              "ck \xFF\xFE");
    EXPECT_EQ(path.GetExtension(), "wav");
}

// A slow second opinion on the rules, over random text.
struct sParts {
    std::string leaf, base, extension;
};
sParts SlowParts(std::string text) {
    while (text.size() > 1 && text.back() == '/')
        text.pop_back();
    sParts parts;
    parts.leaf = text == "/" ? text : text.substr(text.rfind('/') + 1);
    const size_t dot = parts.leaf.rfind('.');
    parts.base = parts.leaf;
    if (dot != std::string::npos && parts.leaf != "." && parts.leaf != "..") {
        parts.base = parts.leaf.substr(0, dot);
        parts.extension = parts.leaf.substr(dot + 1);
    }
    return parts;
}

TEST(Path, AgreesWithASlowSecondOpinion) {
    std::mt19937 random(62);
    for (int i = 0; i < 20000; ++i) {
        std::string text;
        for (size_t n = random() % 12; text.size() <= n;)
            text += "ab./.\xC3"[random() % 6];
        while (text.starts_with("//"))
            text.erase(0, 1); // Boost takes "//name" for a machine's name
        const KCStPath path(text.c_str());
        const sParts expected = SlowParts(text);
        ASSERT_EQ(path.GetLeaf(), expected.leaf) << text;
        ASSERT_EQ(path.GetBase(), expected.base) << text;
        ASSERT_EQ(path.GetExtension(), expected.extension) << text;
    }
}

class PathText : public kvTest::FmTest {};

TEST_F(PathText, LongFormOfAnExistingPathHasNoIdleSeparators) {
    kvTest::Spit(m_folder.Text("f"), "");
    KCFixedString<1023> out;
    ASSERT_EQ(NormalizePathString((m_folder.Text() + "///f").c_str(), out), 0);
    EXPECT_EQ(out, m_folder.Text("f"));
    ASSERT_EQ(UnNormalizePathString(out.c_str(), out), 0);
    EXPECT_EQ(out, m_folder.Text("f"));
}

TEST_F(PathText, LongFormIgnoresSeparatorsAtTheEnd) {
    kvTest::Spit(m_folder.Text("f"), "");
    std::filesystem::create_symlink("missing", m_folder.Text("dangling"));
    KCFixedString<1023> out;
    ASSERT_EQ(NormalizePathString((m_folder.Text("f") + "/").c_str(), out), 0);
    EXPECT_EQ(out, m_folder.Text("f"));
    ASSERT_EQ(NormalizePathString((m_folder.Text("dangling") + "//").c_str(), out), 0);
    EXPECT_EQ(out, m_folder.Text("dangling"));
}

TEST_F(PathText, LongFormOfAMissingPathFailsAndKeepsTheOutput) {
    KCFixedString<1023> out("old");
    EXPECT_EQ(NormalizePathString(m_folder.Text("missing").c_str(), out), kvKorvo::kErr_PathNormalisationFailed);
    EXPECT_EQ(out, "old");
    EXPECT_EQ(NormalizePathString(nullptr, out), kvKorvo::kErr_NullArgument);
    EXPECT_EQ(UnNormalizePathString(nullptr, out), kvKorvo::kErr_NullArgument);
    EXPECT_EQ(out, "old");
}

TEST_F(PathText, RelativeAndEmptyTextIsTakenOver) {
    KCFixedString<1023> out("old");
    ASSERT_EQ(NormalizePathString("no//such", out), 0);
    EXPECT_EQ(out, "no//such");
    ASSERT_EQ(NormalizePathString("", out), 0);
    EXPECT_EQ(out, "");
}

TEST_F(PathText, LongFormFits260Utf16Units) {
    const auto normalize = [&](size_t units, const std::string& unit) {
        std::string path = m_folder.Text() + "/";
        std::string folder = path;
        for (size_t used = path.size(); used < units; ++used)
            path += (used % 100 == 99 ? "/" : unit);
        std::filesystem::create_directories(path);
        KCFixedString<1023> out;
        return NormalizePathString(path.c_str(), out);
    };
    EXPECT_EQ(normalize(260, "x"), 0);
    EXPECT_EQ(normalize(261, "x"), kvKorvo::kErr_PathNormalisationFailed);
    EXPECT_EQ(normalize(210, "\xC3\xA4"), 0);
    EXPECT_EQ(normalize(260, "\x80"), 0); // in no character: a unit of its own
    EXPECT_EQ(normalize(261, "\x80"), kvKorvo::kErr_PathNormalisationFailed);
}

TEST_F(PathText, CreatePathRefNormalizesOnDemand) {
    KTPathType* out = nullptr;
    EXPECT_EQ(CreatePathRefFromString(m_folder.Text("missing").c_str(), out, true),
              kvKorvo::kErr_PathNormalisationFailed);
    EXPECT_EQ(out, nullptr);
    ASSERT_EQ(CreatePathRefFromString((m_folder.Text() + "//").c_str(), out, true), 0);
    EXPECT_TRUE(IsSamePath(out, m_folder.Path().GetPathRef()));
    DisposePathRef(out);
}

TEST_F(PathText, CreatePathRefNormalizesTheWholeText) {
    const std::string longText(1500, 'a');
    KTPathType* out = nullptr;
    ASSERT_EQ(CreatePathRefFromString(longText.c_str(), out, true), 0);
    EXPECT_TRUE(IsSamePath(out, KCStPath(longText.c_str()).GetPathRef()));
    DisposePathRef(out);
}

} // namespace
