#include <korvolib/utilities/fm/path_ref.h>

#include <memory>
#include <new>

#include <korvolib/utilities/fm/path.h>
#include <korvolib/utilities/fm/path_internal.h>
#include <korvolib/utilities/fm/well_known_folders.h>

namespace kvKorvoV12_9_0_320::FM {

namespace {

using BoostPath = boost::filesystem::path;

// Fills a fixed string with what Boost says of the path. The path's own characters are bytes to Boost here: no
// conversion, and so no locale, is involved.
template <size_t N, class Decompose>
const char* Decomposed(KTPathType* path, KCFixedString<N>& out, Decompose decompose) noexcept {
    out.clear();
    if (path == nullptr)
        return out.c_str();
    const int32_t result = WithoutThrowing([&] {
        const BoostPath part = decompose(path->path);
        out.assign(part.c_str(), part.native().size());
        return kErr_NoErr;
    });
    if (result != kErr_NoErr)
        out.clear();
    return out.c_str();
}

const char* WholeText(KTPathType* path, KCFixedString<1023>& out) noexcept {
    out.clear();
    if (path != nullptr)
        out.assign(NativeOf(path), TextOf(*path).size());
    return out.c_str();
}

} // namespace

std::string JoinedText(std::string_view folder, std::string_view name) {
    while (!name.empty() && name.front() == kSeparator)
        name.remove_prefix(1);
    std::string joined;
    joined.reserve(folder.size() + 1 + name.size());
    joined = folder;
    if (!name.empty() && !folder.empty() && folder.back() != kSeparator)
        joined += kSeparator;
    joined += name;
    return joined;
}

int32_t MakePathRef(std::string_view text, KTPathType*& out) noexcept {
    out = nullptr;
    text = WithoutTrailingSeparators(text);
    if (text.empty())
        return kErr_FileNotFound;
    return WithoutThrowing([&] {
        auto made = std::make_unique<KTPathType>();
        made->path = BoostPath(std::string(text));
        out = made.release();
        return kErr_NoErr;
    });
}

std::string_view ParentText(std::string_view text) noexcept {
    text = WithoutTrailingSeparators(text);
    const size_t last = text.find_last_of(kSeparator);
    if (last == std::string_view::npos || text.size() == 1)
        return {};
    return WithoutTrailingSeparators(text.substr(0, last == 0 ? 1 : last));
}

bool PathParts::Next(std::string_view& part) noexcept {
    if (m_position == 0 && !m_text.empty() && m_text.front() == kSeparator) {
        part = m_text.substr(0, 1);
        m_position = 1;
        return true;
    }
    const size_t begin = m_text.find_first_not_of(kSeparator, m_position);
    if (begin == std::string_view::npos)
        return false;
    const size_t end = m_text.find(kSeparator, begin);
    m_position = end == std::string_view::npos ? m_text.size() : end;
    part = m_text.substr(begin, m_position - begin);
    return true;
}

int32_t CreatePathRef(KTPathType* folder, const char* name, KTPathType*& out) noexcept {
    out = nullptr;
    if (folder == nullptr || name == nullptr)
        return kErr_NullArgument;
    return WithoutThrowing([&] { return MakePathRef(JoinedText(TextOf(*folder), name), out); });
}

int32_t CreatePathRefFromString(const char* utf8, KTPathType*& out, bool normalize) noexcept {
    out = nullptr;
    if (utf8 == nullptr)
        return kErr_NullArgument;
    if (!normalize)
        return MakePathRef(utf8, out);
    return WithoutThrowing([&] {
        std::string text;
        const int32_t result = NormalizedText(utf8, text);
        return result != kErr_NoErr ? result : MakePathRef(text, out);
    });
}

int32_t CreatePathRefToCacheFile(const char* name, KTPathType*& out) noexcept {
    out = nullptr;
    if (name == nullptr)
        return kErr_NullArgument;
    KTPathType* caches = nullptr;
    int32_t result = CreateSystemFolderPathRef(KEFoldersDomain::User, KESystemFolders::Caches, caches);
    if (result != kErr_NoErr)
        return result;
    KTPathType* ours = nullptr;
    result = CreatePathRef(caches, "KorvoLib", ours);
    if (result == kErr_NoErr)
        result = CreatePathRef(ours, name, out);
    DisposePathRef(ours);
    DisposePathRef(caches);
    return result;
}

int32_t DisposePathRef(KTPathType*& path) noexcept {
    if (path == nullptr)
        return kErr_NullArgument;
    delete path;
    path = nullptr;
    return kErr_NoErr;
}

const char* GetPathAsString(KTPathType* path, KCFixedString<1023>& out) noexcept { return WholeText(path, out); }
const char* GetPathAsPosixString(KTPathType* path, KCFixedString<1023>& out) noexcept {
    return WholeText(path, out);
}
const char* GetNativePathAsString(KTPathType* path, KCFixedString<1023>& out) noexcept {
    return WholeText(path, out);
}

const char* GetLeaf(KTPathType* path, KCFixedString<255>& out) noexcept {
    return Decomposed(path, out, [](const BoostPath& whole) { return whole.filename(); });
}

const char* GetBase(KTPathType* path, KCFixedString<255>& out) noexcept {
    return Decomposed(path, out, [](const BoostPath& whole) { return whole.stem(); });
}

const char* GetExtension(KTPathType* path, KCFixedString<255>& out) noexcept {
    return Decomposed(path, out, [](const BoostPath& whole) {
        const BoostPath extension = whole.extension();
        return BoostPath(extension.empty() ? "" : extension.c_str() + 1); // behind its dot
    });
}

const char* GetParentDirectory(KTPathType* path, KCFixedString<255>& out) noexcept {
    return Decomposed(path, out, [](const BoostPath& whole) { return whole.parent_path().filename(); });
}

bool IsSamePath(KTPathType* left, KTPathType* right) noexcept {
    if (left == nullptr || right == nullptr)
        return false;
    PathParts ofLeft(TextOf(*left));
    PathParts ofRight(TextOf(*right));
    for (;;) {
        std::string_view a;
        std::string_view b;
        const bool isMore = ofLeft.Next(a);
        if (isMore != ofRight.Next(b) || a != b)
            return false;
        if (!isMore)
            return true;
    }
}

bool IsSameFile(KTPathType* left, KTPathType* right) noexcept {
    sObjectInfo a;
    sObjectInfo b;
    if (left == nullptr || right == nullptr || InfoOfPath(NativeOf(left), true, a) != kErr_NoErr ||
        InfoOfPath(NativeOf(right), true, b) != kErr_NoErr)
        return false;
    return a.device == b.device && a.object == b.object;
}

bool IsSameExtension(const char* left, const char* right) noexcept {
    if (left == nullptr || *left == '\0')
        return false;
    return KCFixedString<15>(left).case_insensitive_compare(KCFixedString<15>(right)) == 0;
}

// The forms that take a path object.

const char* GetPathAsString(const KCStPath& path, KCFixedString<1023>& out) noexcept {
    return GetPathAsString(path.GetPathRef(), out);
}
const char* GetPathAsPosixString(const KCStPath& path, KCFixedString<1023>& out) noexcept {
    return GetPathAsPosixString(path.GetPathRef(), out);
}
const char* GetNativePathAsString(const KCStPath& path, KCFixedString<1023>& out) noexcept {
    return GetNativePathAsString(path.GetPathRef(), out);
}
const char* GetLeaf(const KCStPath& path, KCFixedString<255>& out) noexcept {
    return GetLeaf(path.GetPathRef(), out);
}
const char* GetBase(const KCStPath& path, KCFixedString<255>& out) noexcept {
    return GetBase(path.GetPathRef(), out);
}
const char* GetExtension(const KCStPath& path, KCFixedString<255>& out) noexcept {
    return GetExtension(path.GetPathRef(), out);
}
const char* GetParentDirectory(const KCStPath& path, KCFixedString<255>& out) noexcept {
    return GetParentDirectory(path.GetPathRef(), out);
}
int32_t GetRelativeDifference(const KCStPath& from, const KCStPath& to, KCFixedString<1023>& out) noexcept {
    return GetRelativeDifference(from.GetPathRef(), to.GetPathRef(), out);
}
bool IsSamePath(const KCStPath& left, const KCStPath& right) noexcept {
    return IsSamePath(left.GetPathRef(), right.GetPathRef());
}
bool IsSameFile(const KCStPath& left, const KCStPath& right) noexcept {
    return IsSameFile(left.GetPathRef(), right.GetPathRef());
}

} // namespace kvKorvoV12_9_0_320::FM
