// Whole files, by path: one open, one read of the stated size, one close.

#include <algorithm>
#include <new>
#include <string>

#include <korvolib/utilities/fm/open_file_internal.h>
#include <korvolib/utilities/fm/path.h>
#include <korvolib/utilities/fm/path_internal.h>
#include <korvolib/utilities/fm/replace_file.h>

namespace kvKorvoV12_9_0_320::FM {

namespace {

void Empty(std::string& out) { out.clear(); }
void Empty(KCStMemObj& out) { out.Clear(); }

template <class Out>
int32_t ReadWhole(KTPathType* path, Out& out) noexcept {
    Empty(out);
    if (path == nullptr)
        return kErr_NullArgument;
    sOpenHow how;
    how.read = true;
    int handle = -1;
    sObjectInfo info;
    int32_t result = OpenHandle(NativeOf(path), how, KESharing::Nobody, handle, info);
    if (result != kErr_NoErr)
        return result;
    result = ReadToEnd(handle, info.kind == KEObjectKind::File ? info.size : 0, out);
    CloseHandle(handle);
    if (result != kErr_NoErr)
        Empty(out);
    return result;
}

} // namespace

int32_t ReadToEnd(int handle, uint64_t stated, std::string& out) noexcept {
    if (stated > out.max_size())
        return kErr_AllocationFailed;
    const auto resize = [&](size_t size) noexcept {
        return WithoutThrowing([&] {
            out.resize(size);
            return kErr_NoErr;
        });
    };
    return ReadToEnd(handle, stated, resize, [&] { return out.data(); });
}

int32_t ReadToEnd(int handle, uint64_t stated, KCStMemObj& out) noexcept {
    return ReadToEnd(
        handle, stated, [&](size_t size) noexcept { return out.IsEmpty() ? out.Allocate(size) : out.Resize(size); },
        [&] { return static_cast<char*>(out.GetData()); });
}

int32_t ReadTheWholeFile(KTPathType* path, std::string& out) noexcept { return ReadWhole(path, out); }
int32_t ReadTheWholeFile(const KCStPath& path, std::string& out) noexcept {
    return ReadWhole(path.GetPathRef(), out);
}

int32_t ReadFileToKCStMemObj(KTPathType* path, KCStMemObj& out) noexcept { return ReadWhole(path, out); }
int32_t ReadFileToKCStMemObj(const KCStPath& path, KCStMemObj& out) noexcept {
    return ReadWhole(path.GetPathRef(), out);
}

int32_t GetDataPtrFromBinFile(KTPathType* path, std::unique_ptr<uint8_t[]>& data, size_t& size) noexcept {
    data.reset();
    size = 0;
    KCStMemObj block;
    const int32_t result = ReadWhole(path, block);
    if (result != kErr_NoErr || block.IsEmpty())
        return result;
    data.reset(new (std::nothrow) uint8_t[block.GetSize()]);
    if (data == nullptr)
        return kErr_AllocationFailed;
    size = block.GetSize();
    std::copy_n(block.GetBytes().data(), size, data.get());
    return kErr_NoErr;
}

int32_t GetDataPtrFromBinFile(const KCStPath& path, std::unique_ptr<uint8_t[]>& data, size_t& size) noexcept {
    return GetDataPtrFromBinFile(path.GetPathRef(), data, size);
}

int32_t WriteFileFromKCStMemObj(KTPathType* path, const KCStMemObj& from) noexcept {
    return ReplaceFile(path, from.GetData(), from.GetSize());
}

int32_t WriteFileFromKCStMemObj(const KCStPath& path, const KCStMemObj& from) noexcept {
    return WriteFileFromKCStMemObj(path.GetPathRef(), from);
}

} // namespace kvKorvoV12_9_0_320::FM
