// Folders: stepping through what they hold, with filters, in an order that people can set.
//
//   KCStFolderIterator folder(plugIns);
//   std::vector<KCStPath> items;
//   if (folder.GetFilePathVectorFromFolderSortByName(items, EverythingButMacHidden()) == 0) …
//
// "." and ".." never appear. What a folder holds while it changes is the system's answer: each item that stays is
// seen once. A step costs one small allocation; a sorted listing holds all its paths. May wait for the disk; one
// thread at a time.
//
// The order file of a folder, ".korvo_order", is UTF-8 text with one item name a line. Items stand in its order,
// those it does not name after them by name, byte for byte. A name counts where it stands first; white space at
// both ends of a line, empty lines, lines that begin with '#', and lines with a NUL in them do not count.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <vector>

#include <korvolib/export.h>
#include <korvolib/utilities/fm/path.h>
#include <korvolib/utilities/strings/fixed_string.h>
#include <korvolib/utilities/validatable.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320::FM {

// The C-style layer. `first` and `next` are new references or null; at the end of the folder, and when a step
// fails, both they and the iterator are null, and nothing is left to dispose of.

[[nodiscard]] KORVO_API int32_t FindFirstFolderItem(KTPathType* folder, void*& iterator,
                                                    KTPathType*& first) noexcept;
[[nodiscard]] KORVO_API int32_t FindFirstFolderItem(const KCStPath& folder, void*& iterator,
                                                    KTPathType*& first) noexcept;
/// kErr_NullArgument for a null iterator.
[[nodiscard]] KORVO_API int32_t FindNextFolderItem(void*& iterator, KTPathType*& next) noexcept;
/// For an iteration left before its end; null does nothing.
KORVO_API int32_t DisposeFolderIterator(void*& iterator) noexcept;

// Filters: true accepts. They see the path of an item that was just listed; links count as what they name.

class KORVO_API FileFilterFunctor {
  public:
    virtual ~FileFilterFunctor() = default;
    virtual bool operator()(const KCStPath& path) const noexcept = 0;

  protected:
    FileFilterFunctor() noexcept = default;
    FileFilterFunctor(const FileFilterFunctor&) noexcept = default;
    FileFilterFunctor& operator=(const FileFilterFunctor&) noexcept = default;
};

class KORVO_API EveryThing final : public FileFilterFunctor {
  public:
    bool operator()(const KCStPath& path) const noexcept override;
};

/// What does not begin with a dot.
class KORVO_API EverythingButMacHidden final : public FileFilterFunctor {
  public:
    bool operator()(const KCStPath& path) const noexcept override;
};

class KORVO_API OnlyFiles final : public FileFilterFunctor {
  public:
    bool operator()(const KCStPath& path) const noexcept override;
};

class KORVO_API OnlyFolders final : public FileFilterFunctor {
  public:
    bool operator()(const KCStPath& path) const noexcept override;
};

/// A zip is a file with the extension "zip", in any case.
class KORVO_API FoldersOrZips final : public FileFilterFunctor {
  public:
    bool operator()(const KCStPath& path) const noexcept override;
};

class KORVO_API OnlyZips final : public FileFilterFunctor {
  public:
    bool operator()(const KCStPath& path) const noexcept override;
};

/// A folder's item with all below it.
struct sFolderTreeItem {
    KCStPath path;
    bool isFolder = false;
    int32_t id = -1; // −1 until SetIDsAndGetFlatFolderList gives one
    std::vector<sFolderTreeItem> children;
};

class KORVO_API KCStFolderIterator : public KUValidatable {
  public:
    explicit KCStFolderIterator(const KCStPath& folder) noexcept;
    ~KCStFolderIterator() override;
    KCStFolderIterator(const KCStFolderIterator&) = delete;
    KCStFolderIterator& operator=(const KCStFolderIterator&) = delete;

    /// Why the folder could be opened, 0, or not: then every call gives this.
    int32_t GetOpenResult() const noexcept { return m_openResult; }

    /// The next item that the filter accepts, in the system's order. At the end 0, and `item` holds no path.
    int32_t GetNextFolderItem(KCStPath& item, const FileFilterFunctor& filter = EveryThing()) noexcept;
    /// True if the filter accepts nothing in it, and for a folder that cannot be read.
    [[nodiscard]] bool IsFolderEmpty(const FileFilterFunctor& filter = EveryThing()) const noexcept;

    // Whole listings, whatever GetNextFolderItem has come to. `items` is empty unless the result is 0.

    /// In the system's order.
    int32_t GetFilePathVectorFromFolder(std::vector<KCStPath>& items,
                                        const FileFilterFunctor& filter = EveryThing()) const noexcept;
    /// By name, byte for byte.
    int32_t GetFilePathVectorFromFolderSortByName(std::vector<KCStPath>& items,
                                                  const FileFilterFunctor& filter = EveryThing()) const noexcept;
    /// In the order of the folder's order file; by name without one.
    int32_t
    GetFilePathVectorFromFolderWithSettingsFile(std::vector<KCStPath>& items,
                                                const FileFilterFunctor& filter = EveryThing()) const noexcept;
    /// Everything below, each folder in the order of its own order file. What the filter rejects is left out with
    /// all below it; links to folders are listed, not entered. kErr_LimitExceeded for folders nested more than 128
    /// deep.
    int32_t GetFolderTree(sFolderTreeItem& tree, const FileFilterFunctor& filter = EveryThing()) const noexcept;

    // The order file.

    /// Puts items of this folder into the order of its order file, and takes out those the filter rejects.
    int32_t OrderItemsInFolder(std::vector<KCStPath>& items,
                               const FileFilterFunctor& filter = EveryThing()) const noexcept;
    /// The names in the order file whose items the filter accepts, whether or not they exist. kErr_FileNotFound
    /// without an order file, kErr_LimitExceeded for one of more than 1 MiB.
    int32_t ParseSettingsFile(std::vector<KCFixedString<255>>& names,
                              const FileFilterFunctor& filter = EveryThing()) const noexcept;
    /// The same from a stream with the text of an order file.
    int32_t ReadItemOrderFromIstream(std::istream& stream, std::vector<KCFixedString<255>>& names,
                                     const FileFilterFunctor& filter = EveryThing()) const noexcept;

    /// Numbers the items below the tree's root that the filter accepts, from 0, each before what it holds, and
    /// lists them in that order; the others get −1. The list points into the tree.
    static int32_t SetIDsAndGetFlatFolderList(sFolderTreeItem& tree, std::vector<sFolderTreeItem*>& list,
                                              const FileFilterFunctor& filter = EveryThing()) noexcept;

  protected:
    bool IsValidSelf() const noexcept override { return m_openResult == 0; }

  private:
    KCStPath m_folder;
    void* m_iteration = nullptr;
    int32_t m_openResult = 0;
};

} // namespace kvKorvoV12_9_0_320::FM
