// A file of the repository as text, for tests that hold documents to what they say.
#pragma once

#include <string>

namespace kvTest {

/// The whole file at `path`, which is relative to the repository; empty where there is none.
std::string ReadSourceFile(const std::string& path);

} // namespace kvTest
