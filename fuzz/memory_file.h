// Bytes as a file with a path, without a disk: for the targets of readers that open what they read.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include <sys/mman.h>
#include <unistd.h>

namespace kvFuzz {

class MemoryFile {
  public:
    MemoryFile(const uint8_t* data, size_t size) : m_handle(::memfd_create("fuzz", MFD_CLOEXEC)) {
        if (m_handle < 0 || ::write(m_handle, data, size) != static_cast<ssize_t>(size))
            std::abort();
    }
    ~MemoryFile() { ::close(m_handle); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    std::string Path() const { return "/proc/self/fd/" + std::to_string(m_handle); }

  private:
    int m_handle;
};

} // namespace kvFuzz
