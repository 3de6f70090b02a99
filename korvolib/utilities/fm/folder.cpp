#include <korvolib/utilities/fm/folder.h>

#include <algorithm>
#include <memory>
#include <new>

#include <korvolib/utilities/fm/folder_internal.h>

namespace kvKorvoV12_9_0_320::FM {

namespace {

constexpr int kDeepestNesting = 128;

bool ComesBefore(const KCStPath& left, const KCStPath& right) noexcept {
    return ComesBeforeByName(left.GetPathRef(), right.GetPathRef());
}

// The next item that the filter accepts; no path at the end.
int32_t NextAccepted(FolderRun& run, KCStPath& item, const FileFilterFunctor& filter) noexcept {
    for (;;) {
        KTPathType* next = nullptr;
        const int32_t result = run.Next(next);
        item.TakeOver(next);
        if (result != kErr_NoErr || next == nullptr)
            return result;
        if (filter(item)) {
            next->listedKind = KEObjectKind::Unknown; // from now on the path may outlive what was seen
            return kErr_NoErr;
        }
    }
}

int32_t ListAll(const KCStPath& folder, std::vector<KCStPath>& items, const FileFilterFunctor& filter) {
    FolderRun run;
    int32_t result = run.Open(folder.GetPathRef());
    while (result == kErr_NoErr) {
        KCStPath item;
        result = NextAccepted(run, item, filter);
        if (result == kErr_NoErr && !item)
            return kErr_NoErr;
        if (result == kErr_NoErr)
            items.push_back(std::move(item));
    }
    return result;
}

template <class Body>
int32_t OrEmpty(std::vector<KCStPath>& items, Body body) noexcept {
    items.clear();
    const int32_t result = WithoutThrowing(body);
    if (result != kErr_NoErr)
        items.clear();
    return result;
}

// NOLINTNEXTLINE(misc-no-recursion): its depth is limited
int32_t FillTree(sFolderTreeItem& parent, const FileFilterFunctor& filter, int depth) {
    if (depth > kDeepestNesting)
        return kErr_LimitExceeded;
    const KCStFolderIterator folder(parent.path);
    std::vector<KCStPath> items;
    int32_t result = folder.GetFilePathVectorFromFolderWithSettingsFile(items, filter);
    parent.children.resize(items.size());
    for (size_t i = 0; i < items.size() && result == kErr_NoErr; ++i) {
        sFolderTreeItem& child = parent.children[i];
        child.path = std::move(items[i]);
        child.isFolder = child.path.IsFolder();
        if (child.isFolder && !child.path.IsFileSystemLink())
            result = FillTree(child, filter, depth + 1);
    }
    return result;
}

// NOLINTNEXTLINE(misc-no-recursion): as deep as the tree, whose depth is limited
void NumberItems(sFolderTreeItem& parent, std::vector<sFolderTreeItem*>& list, const FileFilterFunctor& filter) {
    for (sFolderTreeItem& child : parent.children) {
        child.id = -1;
        if (filter(child.path)) {
            child.id = static_cast<int32_t>(list.size());
            list.push_back(&child);
        }
        NumberItems(child, list, filter);
    }
}

} // namespace

int32_t FindFirstFolderItem(KTPathType* folder, void*& iterator, KTPathType*& first) noexcept {
    iterator = nullptr;
    first = nullptr;
    std::unique_ptr<FolderRun> run(new (std::nothrow) FolderRun);
    if (run == nullptr)
        return kErr_AllocationFailed;
    const int32_t result = run->Open(folder);
    if (result != kErr_NoErr)
        return result;
    iterator = run.release();
    return FindNextFolderItem(iterator, first);
}

int32_t FindFirstFolderItem(const KCStPath& folder, void*& iterator, KTPathType*& first) noexcept {
    return FindFirstFolderItem(folder.GetPathRef(), iterator, first);
}

int32_t FindNextFolderItem(void*& iterator, KTPathType*& next) noexcept {
    next = nullptr;
    if (iterator == nullptr)
        return kErr_NullArgument;
    const int32_t result = static_cast<FolderRun*>(iterator)->Next(next);
    if (next == nullptr)
        DisposeFolderIterator(iterator);
    else
        next->listedKind = KEObjectKind::Unknown;
    return result;
}

int32_t DisposeFolderIterator(void*& iterator) noexcept {
    delete static_cast<FolderRun*>(iterator);
    iterator = nullptr;
    return kErr_NoErr;
}

KCStFolderIterator::KCStFolderIterator(const KCStPath& folder) noexcept : m_folder(folder) {
    auto* run = new (std::nothrow) FolderRun;
    m_iteration = run;
    m_openResult = run == nullptr ? kErr_AllocationFailed : run->Open(m_folder.GetPathRef());
}

KCStFolderIterator::~KCStFolderIterator() { DisposeFolderIterator(m_iteration); }

int32_t KCStFolderIterator::GetNextFolderItem(KCStPath& item, const FileFilterFunctor& filter) noexcept {
    item.Clear();
    if (m_openResult != kErr_NoErr)
        return m_openResult;
    return NextAccepted(*static_cast<FolderRun*>(m_iteration), item, filter);
}

bool KCStFolderIterator::IsFolderEmpty(const FileFilterFunctor& filter) const noexcept {
    FolderRun run;
    KCStPath item;
    return run.Open(m_folder.GetPathRef()) != kErr_NoErr || NextAccepted(run, item, filter) != kErr_NoErr || !item;
}

int32_t KCStFolderIterator::GetFilePathVectorFromFolder(std::vector<KCStPath>& items,
                                                        const FileFilterFunctor& filter) const noexcept {
    return OrEmpty(items, [&] { return ListAll(m_folder, items, filter); });
}

int32_t KCStFolderIterator::GetFilePathVectorFromFolderSortByName(std::vector<KCStPath>& items,
                                                                  const FileFilterFunctor& filter) const noexcept {
    return OrEmpty(items, [&] {
        const int32_t result = ListAll(m_folder, items, filter);
        std::sort(items.begin(), items.end(), ComesBefore);
        return result;
    });
}

int32_t
KCStFolderIterator::GetFilePathVectorFromFolderWithSettingsFile(std::vector<KCStPath>& items,
                                                                const FileFilterFunctor& filter) const noexcept {
    return OrEmpty(items, [&] {
        const int32_t result = ListAll(m_folder, items, filter);
        return result != kErr_NoErr ? result : OrderItemsInFolder(items, EveryThing());
    });
}

int32_t KCStFolderIterator::GetFolderTree(sFolderTreeItem& tree, const FileFilterFunctor& filter) const noexcept {
    tree = {};
    int32_t result = m_openResult;
    if (result == kErr_NoErr) {
        result = WithoutThrowing([&] {
            tree.path = m_folder;
            tree.isFolder = true;
            return FillTree(tree, filter, 1);
        });
    }
    if (result != kErr_NoErr)
        tree = {};
    return result;
}

int32_t KCStFolderIterator::SetIDsAndGetFlatFolderList(sFolderTreeItem& tree, std::vector<sFolderTreeItem*>& list,
                                                       const FileFilterFunctor& filter) noexcept {
    list.clear();
    const int32_t result = WithoutThrowing([&] {
        NumberItems(tree, list, filter);
        return kErr_NoErr;
    });
    if (result != kErr_NoErr)
        list.clear();
    return result;
}

} // namespace kvKorvoV12_9_0_320::FM
