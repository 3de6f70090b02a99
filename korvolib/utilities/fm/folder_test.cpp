#include <korvolib/utilities/fm/folder.h>

#include <algorithm>
#include <set>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/fm/fm_test_internal.h>

namespace {

using namespace kvKorvo::FM;
using kvKorvo::KCFixedString;
using Names = std::vector<std::string>;

Names NamesOf(const std::vector<KCStPath>& items) {
    Names names;
    for (const KCStPath& item : items)
        names.emplace_back(item.GetLeaf().c_str());
    return names;
}

Names Strings(const std::vector<KCFixedString<255>>& texts) {
    Names names;
    for (const auto& text : texts)
        names.emplace_back(text.c_str());
    return names;
}

class Folders : public kvTest::FmTest {
  protected:
    void Fill(const Names& names) {
        for (const std::string& name : names)
            m_folder.File(name, "");
    }
    KCStPath Folder(const std::string& name) {
        std::filesystem::create_directories(m_folder.Text(name));
        return m_folder.Path(name);
    }
    Names Sorted(const FileFilterFunctor& filter = EveryThing()) {
        std::vector<KCStPath> items;
        EXPECT_EQ(KCStFolderIterator(m_folder.Path()).GetFilePathVectorFromFolderSortByName(items, filter), 0);
        return NamesOf(items);
    }
};

TEST_F(Folders, EmptyFolderEndsAtOnceWithNullOutputs) {
    void* iterator = this;
    KTPathType* first = m_folder.Path().GetPathRef();
    EXPECT_EQ(FindFirstFolderItem(m_folder.Path(), iterator, first), 0);
    EXPECT_EQ(iterator, nullptr);
    EXPECT_EQ(first, nullptr);
}

TEST_F(Folders, EachItemIsSeenOnceAndThenTheEnd) {
    Fill({"a", "b", ".c"});
    void* iterator = nullptr;
    KTPathType* item = nullptr;
    std::multiset<std::string> seen;
    ASSERT_EQ(FindFirstFolderItem(m_folder.Path(), iterator, item), 0);
    while (item != nullptr) {
        KCStPath path;
        path.TakeOver(item);
        EXPECT_EQ(path.GetParent(), m_folder.Path());
        seen.insert(path.GetLeaf().c_str());
        ASSERT_EQ(FindNextFolderItem(iterator, item), 0);
    }
    EXPECT_EQ(iterator, nullptr);
    EXPECT_EQ(seen, (std::multiset<std::string>{"a", "b", ".c"}));
    EXPECT_EQ(FindNextFolderItem(iterator, item), kvKorvo::kErr_NullArgument);
}

TEST_F(Folders, IterationMayBeLeftBeforeItsEnd) {
    Fill({"a", "b"});
    void* iterator = nullptr;
    KTPathType* item = nullptr;
    ASSERT_EQ(FindFirstFolderItem(m_folder.Path(), iterator, item), 0);
    DisposePathRef(item);
    EXPECT_EQ(DisposeFolderIterator(iterator), 0);
    EXPECT_EQ(iterator, nullptr);
    EXPECT_EQ(DisposeFolderIterator(iterator), 0);
}

TEST_F(Folders, WhatIsNoFolderIsNotFound) {
    m_folder.File("f", "x");
    void* iterator = nullptr;
    KTPathType* item = nullptr;
    EXPECT_EQ(FindFirstFolderItem(m_folder.Path("f"), iterator, item), -1002);
    EXPECT_EQ(FindFirstFolderItem(m_folder.Path("missing"), iterator, item), -1002);
    EXPECT_EQ(FindFirstFolderItem(nullptr, iterator, item), -4003);
    EXPECT_EQ(iterator, nullptr);
}

TEST_F(Folders, RelativeAndRootFoldersGiveUsablePaths) {
    const KCStPath root("/");
    std::vector<KCStPath> items;
    ASSERT_EQ(KCStFolderIterator(root).GetFilePathVectorFromFolder(items), 0);
    EXPECT_NE(std::find(items.begin(), items.end(), KCStPath("/proc")), items.end());
    EXPECT_TRUE(KCStFolderIterator(KCStPath(".")).IsValid());
}

TEST_F(Folders, IteratorStepsAndStaysAtItsEnd) {
    Fill({"a", "b"});
    KCStFolderIterator folder(m_folder.Path());
    KCStPath item;
    int count = 0;
    while (folder.GetNextFolderItem(item) == 0 && item)
        ++count;
    EXPECT_EQ(count, 2);
    EXPECT_EQ(folder.GetNextFolderItem(item), 0);
    EXPECT_FALSE(item);
}

TEST_F(Folders, IteratorWithoutAFolderFailsEveryCall) {
    KCStFolderIterator folder(m_folder.Path("missing"));
    EXPECT_FALSE(folder);
    KCStPath item("/old");
    std::vector<KCStPath> items = {KCStPath("/old")};
    std::vector<KCFixedString<255>> names = {"old"};
    sFolderTreeItem tree;
    EXPECT_EQ(folder.GetNextFolderItem(item), -1002);
    EXPECT_FALSE(item);
    EXPECT_EQ(folder.GetFilePathVectorFromFolder(items), -1002);
    EXPECT_TRUE(items.empty());
    EXPECT_EQ(folder.GetFilePathVectorFromFolderSortByName(items), -1002);
    EXPECT_EQ(folder.GetFilePathVectorFromFolderWithSettingsFile(items), -1002);
    EXPECT_EQ(folder.GetFolderTree(tree), -1002);
    EXPECT_EQ(folder.ParseSettingsFile(names), -1002);
    EXPECT_TRUE(names.empty());
    EXPECT_TRUE(folder.IsFolderEmpty());
    EXPECT_EQ(KCStFolderIterator(KCStPath()).GetOpenResult(), -4003);
}

TEST_F(Folders, EmptyIsWhatTheFilterSays) {
    const KCStFolderIterator folder(m_folder.Path());
    EXPECT_TRUE(folder.IsFolderEmpty());
    Fill({".hidden"});
    EXPECT_FALSE(folder.IsFolderEmpty());
    EXPECT_TRUE(folder.IsFolderEmpty(EverythingButMacHidden()));
}

TEST_F(Folders, FiltersAcceptWhatTheirNamesSay) {
    Fill({"f", ".f", "a.zip", "B.ZIP"});
    Folder("d");
    Folder("folder.zip");
    std::filesystem::create_symlink("d", m_folder.Text("to-d"));
    std::filesystem::create_symlink("a.zip", m_folder.Text("to.zip"));
    std::filesystem::create_symlink("missing", m_folder.Text("x"));
    EXPECT_EQ(Sorted(), (Names{".f", "B.ZIP", "a.zip", "d", "f", "folder.zip", "to-d", "to.zip", "x"}));
    EXPECT_EQ(Sorted(EverythingButMacHidden()),
              (Names{"B.ZIP", "a.zip", "d", "f", "folder.zip", "to-d", "to.zip", "x"}));
    EXPECT_EQ(Sorted(OnlyFiles()), (Names{".f", "B.ZIP", "a.zip", "f", "to.zip"}));
    EXPECT_EQ(Sorted(OnlyFolders()), (Names{"d", "folder.zip", "to-d"}));
    EXPECT_EQ(Sorted(OnlyZips()), (Names{"B.ZIP", "a.zip", "to.zip"}));
    EXPECT_EQ(Sorted(FoldersOrZips()), (Names{"B.ZIP", "a.zip", "d", "folder.zip", "to-d", "to.zip"}));
}

TEST_F(Folders, FiltersWorkOnPathsThatWereNotListed) {
    Fill({"f"});
    EXPECT_TRUE(OnlyFiles()(m_folder.Path("f")));
    EXPECT_FALSE(OnlyFolders()(m_folder.Path("f")));
    EXPECT_FALSE(EveryThing()(KCStPath()));
    EXPECT_FALSE(OnlyZips()(KCStPath()));
    EXPECT_FALSE(EverythingButMacHidden()(KCStPath()));
}

TEST_F(Folders, ListedPathAsksTheDiskAgainLater) {
    Fill({"f"});
    KCStFolderIterator folder(m_folder.Path());
    KCStPath item;
    ASSERT_EQ(folder.GetNextFolderItem(item, OnlyFiles()), 0);
    std::filesystem::remove(m_folder.Text("f"));
    std::filesystem::create_directory(m_folder.Text("f"));
    EXPECT_FALSE(OnlyFiles()(item));
}

TEST_F(Folders, FilterOfTheCallerSeesEachItem) {
    class Longer final : public FileFilterFunctor {
      public:
        bool operator()(const KCStPath& path) const noexcept override { return path.GetLeaf().size() > 2; }
    };
    Fill({"a", "abc", "abcd"});
    EXPECT_EQ(Sorted(Longer()), (Names{"abc", "abcd"}));
}

TEST_F(Folders, SortingIsByBytes) {
    Fill({"b", "B", "a", "\xC3\xA4", "_", "aa"});
    EXPECT_EQ(Sorted(), (Names{"B", "_", "a", "aa", "b", "\xC3\xA4"}));
}

TEST_F(Folders, Utf8InEveryPosition) {
    Names expected;
    for (const std::string character : {"\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9D\x84\x9E"}) {
        for (size_t i = 0; i <= 20; ++i)
            expected.push_back(std::string(20, 'n').insert(i, character));
    }
    Fill(expected);
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(Sorted(), expected);
}

TEST_F(Folders, TenThousandFiles) {
    Names expected;
    for (int i = 0; i < 10000; ++i)
        expected.push_back("file " + std::to_string(i));
    Fill(expected);
    std::sort(expected.begin(), expected.end());
    EXPECT_TRUE(Sorted() == expected);
    EXPECT_TRUE(Sorted(OnlyFiles()) == expected);
    EXPECT_TRUE(Sorted(OnlyFolders()).empty());
}

TEST_F(Folders, OrderFileComesFirstThenNames) {
    Fill({"a", "b", "c", "d"});
    m_folder.File(".korvo_order", "\xEF\xBB\xBF# mine\r\n\n  d  \r\nmissing\nb\nd");
    std::vector<KCStPath> items;
    const KCStFolderIterator folder(m_folder.Path());
    ASSERT_EQ(folder.GetFilePathVectorFromFolderWithSettingsFile(items, EverythingButMacHidden()), 0);
    EXPECT_EQ(NamesOf(items), (Names{"d", "b", "a", "c"}));
}

TEST_F(Folders, WithoutAnOrderFileItIsByName) {
    Fill({"b", "a"});
    std::vector<KCStPath> items;
    ASSERT_EQ(KCStFolderIterator(m_folder.Path()).GetFilePathVectorFromFolderWithSettingsFile(items), 0);
    EXPECT_EQ(NamesOf(items), (Names{"a", "b"}));
}

TEST_F(Folders, GivenItemsAreOrderedAndFiltered) {
    Fill({"a", ".b", "c"});
    m_folder.File(".korvo_order", "c");
    std::vector<KCStPath> items = {m_folder.Path("a"), m_folder.Path(".b"), KCStPath(), m_folder.Path("c")};
    const KCStFolderIterator folder(m_folder.Path());
    ASSERT_EQ(folder.OrderItemsInFolder(items, EverythingButMacHidden()), 0);
    EXPECT_EQ(NamesOf(items), (Names{"c", "a"}));
}

TEST_F(Folders, OrderFileIsReadAsNames) {
    Fill({"b"});
    m_folder.File(".korvo_order", "b\n.a\n\nb\n");
    std::vector<KCFixedString<255>> names;
    const KCStFolderIterator folder(m_folder.Path());
    ASSERT_EQ(folder.ParseSettingsFile(names), 0);
    EXPECT_EQ(Strings(names), (Names{"b", ".a"}));
    ASSERT_EQ(folder.ParseSettingsFile(names, OnlyFiles()), 0);
    EXPECT_EQ(Strings(names), (Names{"b"}));
}

TEST_F(Folders, OrderIsReadFromAStream) {
    const KCStFolderIterator folder(m_folder.Path());
    std::istringstream stream("b\n#no\na");
    std::vector<KCFixedString<255>> names;
    ASSERT_EQ(folder.ReadItemOrderFromIstream(stream, names), 0);
    EXPECT_EQ(Strings(names), (Names{"b", "a"}));
    std::istringstream bad("x");
    bad.setstate(std::ios::badbit);
    EXPECT_EQ(folder.ReadItemOrderFromIstream(bad, names), -1);
    EXPECT_TRUE(names.empty());
}

TEST_F(Folders, OrderLinesWithANulAreNoNames) {
    std::istringstream stream(std::string("a\0x\n\0\nb", 7));
    std::vector<KCFixedString<255>> names;
    ASSERT_EQ(KCStFolderIterator(m_folder.Path()).ReadItemOrderFromIstream(stream, names), 0);
    EXPECT_EQ(Strings(names), (Names{"b"}));
}

TEST_F(Folders, OrderFileBeyondItsLimitIsRefused) {
    constexpr size_t kLimit = size_t{1} << 20;
    const KCStFolderIterator folder(m_folder.Path());
    std::vector<KCFixedString<255>> names;
    m_folder.File(".korvo_order", std::string(kLimit, '#'));
    EXPECT_EQ(folder.ParseSettingsFile(names), 0);
    m_folder.File(".korvo_order", std::string(kLimit + 1, '#'));
    EXPECT_EQ(folder.ParseSettingsFile(names), kvKorvo::kErr_LimitExceeded);
    std::istringstream stream(std::string(kLimit + 1, '#'));
    EXPECT_EQ(folder.ReadItemOrderFromIstream(stream, names), kvKorvo::kErr_LimitExceeded);
}

std::string Drawn(const sFolderTreeItem& tree) {
    std::string text;
    for (const sFolderTreeItem& child : tree.children) {
        text.append(child.path.GetLeaf().c_str());
        if (child.isFolder)
            text.append("(").append(Drawn(child)).append(")");
        text.append(" ");
    }
    return text;
}

TEST_F(Folders, TreeHoldsEverythingInOrder) {
    Folder("d/e");
    Fill({"d/e/1", "d/2", "d/1", "a"});
    m_folder.File("d/.korvo_order", "2\n");
    std::filesystem::create_symlink(".", m_folder.Text("loop"));
    sFolderTreeItem tree;
    ASSERT_EQ(KCStFolderIterator(m_folder.Path()).GetFolderTree(tree, EverythingButMacHidden()), 0);
    EXPECT_EQ(Drawn(tree), "a d(2 1 e(1 ) ) loop() ");
}

TEST_F(Folders, TreeLeavesOutWhatIsRejectedWithAllBelow) {
    Folder(".hidden");
    Fill({".hidden/a", "b"});
    sFolderTreeItem tree;
    ASSERT_EQ(KCStFolderIterator(m_folder.Path()).GetFolderTree(tree, EverythingButMacHidden()), 0);
    EXPECT_EQ(Drawn(tree), "b ");
}

TEST_F(Folders, TreeHasALimitedDepth) {
    std::string path = "d";
    for (int i = 1; i < 127; ++i)
        path += "/d";
    Folder(path);
    sFolderTreeItem tree;
    const KCStFolderIterator folder(m_folder.Path());
    EXPECT_EQ(folder.GetFolderTree(tree), 0);
    Folder(path + "/d");
    EXPECT_EQ(folder.GetFolderTree(tree), kvKorvo::kErr_LimitExceeded);
    EXPECT_TRUE(tree.children.empty());
}

TEST_F(Folders, IdsNumberTheAcceptedItemsFromTheTop) {
    Folder("d");
    Fill({"a", "d/1", "e"});
    sFolderTreeItem tree;
    ASSERT_EQ(KCStFolderIterator(m_folder.Path()).GetFolderTree(tree), 0);
    std::vector<sFolderTreeItem*> list;
    ASSERT_EQ(KCStFolderIterator::SetIDsAndGetFlatFolderList(tree, list, OnlyFiles()), 0);
    ASSERT_EQ(list.size(), 3u);
    Names names;
    for (size_t i = 0; i < list.size(); ++i) {
        EXPECT_EQ(list[i]->id, static_cast<int32_t>(i));
        names.emplace_back(list[i]->path.GetLeaf().c_str());
    }
    EXPECT_EQ(names, (Names{"a", "1", "e"}));
    EXPECT_EQ(tree.id, -1);
    EXPECT_EQ(tree.children[1].id, -1);
}

TEST_F(Folders, FailureInTheMiddleLeavesNothing) {
    Fill({"a", "b", "c"});
    int steps = 0;
    kvTest::FaultyPlatform platform(
        [&](const char* call, size_t) { return std::string_view(call) == "NextItem" && ++steps == 3 ? EIO : 0; });
    std::vector<KCStPath> items;
    EXPECT_EQ(KCStFolderIterator(m_folder.Path()).GetFilePathVectorFromFolder(items), -1);
    EXPECT_TRUE(items.empty());
    steps = 0;
    void* iterator = nullptr;
    KTPathType* item = nullptr;
    ASSERT_EQ(FindFirstFolderItem(m_folder.Path(), iterator, item), 0);
    DisposePathRef(item);
    ASSERT_EQ(FindNextFolderItem(iterator, item), 0);
    DisposePathRef(item);
    EXPECT_EQ(FindNextFolderItem(iterator, item), -1);
    EXPECT_EQ(iterator, nullptr);
    EXPECT_EQ(item, nullptr);
}

} // namespace
