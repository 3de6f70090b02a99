// Symbolic links, followed step by step.

#include <string>

#include <korvolib/utilities/fm/disk_object.h>
#include <korvolib/utilities/fm/path.h>
#include <korvolib/utilities/fm/path_internal.h>

namespace kvKorvoV12_9_0_320::FM {

namespace {

constexpr int kMaxLinks = 40; // as many as Linux follows

int32_t ReadOneLink(const std::string& link, std::string& target) {
    constexpr size_t kLongestTarget = 4096; // a link's own limit on Linux
    target.resize(kLongestTarget + 1);
    size_t length = 0;
    const int error = Uninterrupted(
        [&] { return CurrentPlatform().ReadLink(link.c_str(), target.data(), target.size(), length); });
    if (error != 0)
        return TranslateSystemError(error);
    target.resize(length);
    return length > kLongestTarget ? kErr_Generic : kErr_NoErr;
}

// A relative target counts from the folder that holds the link.
std::string TargetSeenFrom(const std::string& link, const std::string& target) {
    if (!target.empty() && target.front() == kSeparator)
        return target;
    return JoinedText(ParentText(link), target);
}

int32_t FollowLinks(std::string_view text, KTPathType*& out) {
    std::string path(WithoutTrailingSeparators(text));
    std::string target;
    for (int followed = 0; followed <= kMaxLinks; ++followed) {
        sObjectInfo info;
        const int32_t found = InfoOfPath(path.c_str(), false, info);
        const bool isMissingTarget = found == kErr_FileNotFound && followed > 0;
        if (found != kErr_NoErr && !isMissingTarget)
            return found;
        if (isMissingTarget || info.kind != KEObjectKind::Link)
            return MakePathRef(path, out);
        const int32_t read = ReadOneLink(path, target);
        if (read != kErr_NoErr)
            return read;
        path = WithoutTrailingSeparators(TargetSeenFrom(path, target));
    }
    return kErr_Generic;
}

} // namespace

int32_t ResolveFileSystemLink(KTPathType* path, KTPathType*& out) noexcept {
    out = nullptr;
    if (path == nullptr)
        return kErr_NullArgument;
    return WithoutThrowing([&] { return FollowLinks(TextOf(*path), out); });
}

int32_t ResolveFileSystemLink(const KCStPath& path, KCStPath& out) noexcept {
    KTPathType* resolved = nullptr;
    const int32_t result = ResolveFileSystemLink(path.GetPathRef(), resolved);
    out.TakeOver(resolved);
    return result;
}

} // namespace kvKorvoV12_9_0_320::FM
