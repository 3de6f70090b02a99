#include <korvolib/utilities/fm/folder.h>
#include <korvolib/utilities/fm/folder_internal.h>

namespace kvKorvoV12_9_0_320::FM {

namespace {

// What the listing said, where it said something final: a link is what it names, and only the disk knows that.
bool IsKind(const KCStPath& path, KEObjectKind kind) noexcept {
    if (!path)
        return false;
    const KEObjectKind listed = path.GetPathRef()->listedKind;
    if (listed != KEObjectKind::Unknown && listed != KEObjectKind::Link)
        return listed == kind;
    return kind == KEObjectKind::Folder ? path.IsFolder() : path.IsFile();
}

bool IsZip(const KCStPath& path) noexcept {
    return path && IsSameExtension(path.GetExtension().c_str(), "zip") && IsKind(path, KEObjectKind::File);
}

} // namespace

bool EveryThing::operator()(const KCStPath& path) const noexcept { return path.IsValid(); }

bool EverythingButMacHidden::operator()(const KCStPath& path) const noexcept {
    return path && !NameOf(path.GetPathRef()).starts_with('.');
}

bool OnlyFiles::operator()(const KCStPath& path) const noexcept { return IsKind(path, KEObjectKind::File); }

bool OnlyFolders::operator()(const KCStPath& path) const noexcept { return IsKind(path, KEObjectKind::Folder); }

bool FoldersOrZips::operator()(const KCStPath& path) const noexcept {
    return IsKind(path, KEObjectKind::Folder) || IsZip(path);
}

bool OnlyZips::operator()(const KCStPath& path) const noexcept { return IsZip(path); }

} // namespace kvKorvoV12_9_0_320::FM
