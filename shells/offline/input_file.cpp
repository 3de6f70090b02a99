#include "input_file.h"

#include <cerrno>

#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/fm/open_file.h>
#include <korvolib/utilities/fm/zip.h>

#include "failure.h"
#include "file_problem.h"
#include "text.h"

namespace kvKorvoV12_9_0_320::kvHost {
namespace {

// Where the archive's name ends, before the '!'; npos where the name has no such place.
size_t ArchiveLength(const std::string& name) {
    for (size_t mark = name.find('!'); mark != std::string::npos; mark = name.find('!', mark + 1))
        if (HasEnding(std::string_view(name).substr(0, mark), ".zip"))
            return mark;
    return std::string::npos;
}

[[noreturn]] void FailTooLarge(const std::string& name, size_t limit, std::string_view what) {
    throw KCHostFailure(name + ": larger than " + std::string(what) + " may be (" + std::to_string(limit >> 20) +
                        " MiB)");
}

} // namespace

bool NamesZipEntry(const std::string& name) {
    return ArchiveLength(name) != std::string::npos && !FM::KCStPath(name.c_str()).IsExist();
}

std::string ReadZipEntry(const std::string& name, size_t limit, std::string_view what) {
    const size_t length = ArchiveLength(name);
    const std::string archive = name.substr(0, length);
    const std::string entry = name.substr(length + 1);
    const FM::KCStPath path(archive.c_str());
    if (!path.IsExist())
        throw KCHostFailure(archive + ": no such archive");
    FM::KCStFileReadFromZip zip(path);
    if (zip.GetOpenResult() != kErr_NoErr)
        throw KCHostFailure(archive + ": not a zip archive that can be read");
    const KCFixedString<255> entryName(entry.c_str());
    uint64_t size = 0;
    if (entry != entryName.c_str() || zip.GetEntrySize(entryName, size) != kErr_NoErr)
        throw KCHostFailure(name + ": the archive has no such entry");
    if (size > limit)
        FailTooLarge(name, limit, what);
    zip.SetSizeLimit(limit);
    std::string contents;
    if (zip.ReadToStdString(entryName, contents) != kErr_NoErr)
        throw KCHostFailure(name + ": the entry is empty or damaged");
    return contents;
}

std::string ReadInput(const std::string& name, size_t limit, std::string_view what) {
    if (NamesZipEntry(name))
        return ReadZipEntry(name, limit, what);
    const FM::KCStPath path(name.c_str());
    const std::string cannot = name + ": cannot be read: ";
    if (path.IsFolder())
        throw KCHostFailure(cannot + "it is a folder");
    if (path.GetFileSize() > limit)
        FailTooLarge(name, limit, what);
    std::string contents;
    errno = 0;
    if (const int32_t result = FM::ReadTheWholeFile(path, contents); result != kErr_NoErr)
        throw KCHostFailure(cannot + FileProblem(result));
    if (contents.size() > limit)
        FailTooLarge(name, limit, what);
    return contents;
}

} // namespace kvKorvoV12_9_0_320::kvHost
