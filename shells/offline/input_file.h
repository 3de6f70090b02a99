// What the host reads whole: a file, or an entry of a zip archive, named ARCHIVE.zip!ENTRY with the entry's whole
// path in the archive. A file that has such a name itself is a file.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320::kvHost {

/// Whether the name is that of an entry in an archive.
bool NamesZipEntry(const std::string& name);

/// The entry's contents. Throws KCHostFailure, with the name, for an archive or an entry that cannot be read, and
/// for one of more than `limit` bytes, as "larger than `what` may be".
std::string ReadZipEntry(const std::string& name, size_t limit, std::string_view what);

/// The whole of a file or of an entry; failures as above. A pipe is read to its end.
std::string ReadInput(const std::string& name, size_t limit, std::string_view what);

} // namespace kvKorvoV12_9_0_320::kvHost
