// A file of the repository as text, for tests that hold documents to what they say.
#pragma once

#include <string>

namespace kvTest {

/// The whole file at `path`, which is relative to the repository; empty where there is none.
std::string ReadSourceFile(const std::string& path);

/// Replaces it: for tests that can write anew what they compare with, when a person asks for that.
void WriteSourceFile(const std::string& path, const std::string& text);

} // namespace kvTest
