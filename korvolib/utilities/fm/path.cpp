#include <korvolib/utilities/fm/path.h>

#include <utility>

#include <korvolib/utilities/fm/path_internal.h>

namespace kvKorvoV12_9_0_320::FM {

KCStPath::KCStPath(const char* utf8) noexcept {
    if (CreatePathRefFromString(utf8, m_path) != kErr_NoErr)
        m_path = nullptr;
}

KCStPath::KCStPath(const KCStPath& folder, const char* name) noexcept {
    if (CreatePathRef(folder.m_path, name, m_path) != kErr_NoErr)
        m_path = nullptr;
}

KCStPath::KCStPath(const KCStPath& other) noexcept : KUValidatable(other), m_path(other.CreatePathRefCopy()) {}

KCStPath::KCStPath(KCStPath&& other) noexcept : m_path(std::exchange(other.m_path, nullptr)) {}

KCStPath& KCStPath::operator=(const KCStPath& other) noexcept {
    if (this != &other)
        TakeOver(other.CreatePathRefCopy());
    return *this;
}

KCStPath& KCStPath::operator=(KCStPath&& other) noexcept {
    std::swap(m_path, other.m_path);
    if (this != &other)
        other.Clear();
    return *this;
}

KCStPath::~KCStPath() { Clear(); }

int32_t KCStPath::Append(const char* name) noexcept {
    KTPathType* longer = nullptr;
    const int32_t result = CreatePathRef(m_path, name, longer);
    if (result == kErr_NoErr)
        TakeOver(longer);
    return result;
}

int32_t KCStPath::ExtendLeafName(const char* text) noexcept {
    if (m_path == nullptr || text == nullptr)
        return kErr_NullArgument;
    const std::string_view added = text;
    if (added.find(kSeparator) != std::string_view::npos || TextOf(*m_path).back() == kSeparator)
        return kErr_Generic;
    KTPathType* longer = nullptr;
    const int32_t result =
        WithoutThrowing([&] { return MakePathRef(std::string(TextOf(*m_path)).append(added), longer); });
    if (result == kErr_NoErr)
        TakeOver(longer);
    return result;
}

void KCStPath::Clear() noexcept { TakeOver(nullptr); }

void KCStPath::TakeOver(KTPathType* path) noexcept {
    if (path != m_path)
        delete std::exchange(m_path, path);
}

KTPathType* KCStPath::CreatePathRefCopy() const noexcept {
    KTPathType* copy = nullptr;
    if (m_path == nullptr || MakePathRef(TextOf(*m_path), copy) != kErr_NoErr)
        return nullptr;
    return copy;
}

KCStPath KCStPath::GetParent() const noexcept {
    KCStPath parent;
    KTPathType* made = nullptr;
    if (m_path != nullptr && MakePathRef(ParentText(TextOf(*m_path)), made) == kErr_NoErr)
        parent.TakeOver(made);
    return parent;
}

KCFixedString<255> KCStPath::GetLeaf() const noexcept {
    KCFixedString<255> text;
    FM::GetLeaf(m_path, text);
    return text;
}

KCFixedString<255> KCStPath::GetBase() const noexcept {
    KCFixedString<255> text;
    FM::GetBase(m_path, text);
    return text;
}

KCFixedString<255> KCStPath::GetExtension() const noexcept {
    KCFixedString<255> text;
    FM::GetExtension(m_path, text);
    return text;
}

KCFixedString<255> KCStPath::GetParentDirectory() const noexcept {
    KCFixedString<255> text;
    FM::GetParentDirectory(m_path, text);
    return text;
}

KCFixedString<1023> KCStPath::GetPathString() const noexcept {
    KCFixedString<1023> text;
    GetPathAsString(m_path, text);
    return text;
}

KCFixedString<1023> KCStPath::GetPosixPathString() const noexcept {
    KCFixedString<1023> text;
    GetPathAsPosixString(m_path, text);
    return text;
}

KCFixedString<1023> KCStPath::GetNativePathString() const noexcept {
    KCFixedString<1023> text;
    GetNativePathAsString(m_path, text);
    return text;
}

KCFixedString<1023> KCStPath::GetRelativeDifference(const KCStPath& other) const noexcept {
    KCFixedString<1023> text;
    if (FM::GetRelativeDifference(m_path, other.m_path, text) != kErr_NoErr)
        text.clear();
    return text;
}

KCFixedString<1023> KCStPath::GetStringFromPathToLevel(unsigned level) const noexcept {
    if (m_path == nullptr)
        return {};
    PathParts parts(TextOf(*m_path));
    std::string_view part;
    for (unsigned i = 0; i < level && parts.Next(part); ++i) {
    }
    return KCFixedString<1023>(NativeOf(m_path), parts.End());
}

int32_t KCStPath::SplitPath(std::vector<KCFixedString<255>>& components) const noexcept {
    components.clear();
    if (m_path == nullptr)
        return kErr_NullArgument;
    const int32_t result = WithoutThrowing([&] {
        PathParts parts(TextOf(*m_path));
        for (std::string_view part; parts.Next(part);)
            components.emplace_back(part.data(), part.size());
        return kErr_NoErr;
    });
    if (result != kErr_NoErr)
        components.clear();
    return result;
}

bool KCStPath::IsExist() const noexcept { return DoesFileExist(m_path); }
bool KCStPath::IsFile(bool followLink) const noexcept { return FM::IsFile(m_path, followLink); }
bool KCStPath::IsFolder(bool followLink) const noexcept { return FM::IsFolder(m_path, followLink); }
bool KCStPath::IsFileSystemLink() const noexcept { return FM::IsFileSystemLink(m_path); }
bool KCStPath::IsLocked() const noexcept { return FM::IsLocked(m_path); }
bool KCStPath::IsWritable() const noexcept { return FM::IsWritable(m_path); }

KEPermitions KCStPath::GetPermissions() const noexcept {
    KEPermitions permissions = KEPermitions::None;
    return FM::GetPermissions(m_path, permissions) == kErr_NoErr ? permissions : KEPermitions::None;
}

uint64_t KCStPath::GetFileSize() const noexcept {
    uint64_t size = 0;
    return GetFileSizeFromPathRef(m_path, size) == kErr_NoErr ? size : 0;
}

int64_t KCStPath::GetFileLastWriteTime() const noexcept {
    int64_t time = 0;
    return GetFileLastWriteTimeFromPathRef(m_path, time) == kErr_NoErr ? time : 0;
}

int32_t KCStPath::ResolveFileSystemLink(KCStPath& out) const noexcept {
    KTPathType* resolved = nullptr;
    const int32_t result = FM::ResolveFileSystemLink(m_path, resolved);
    out.TakeOver(resolved);
    return result;
}

bool operator==(const KCStPath& left, const KCStPath& right) noexcept {
    return left.IsValid() && right.IsValid() ? IsSamePath(left.m_path, right.m_path)
                                             : left.IsValid() == right.IsValid();
}

} // namespace kvKorvoV12_9_0_320::FM
