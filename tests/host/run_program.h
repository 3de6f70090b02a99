// Runs a program as a person at a keyboard does, and keeps what it said.
#pragma once

#include <string>
#include <vector>

namespace kvTest {

struct sPROGRAM_RUN {
    std::string out;
    std::string error;
    int status = -1; // exit status; 128 + signal when one ended it
};

struct sPROGRAM_SETTINGS {
    std::vector<std::string> environment = {}; // "NAME=value", beside what this program has
    std::string folder = {};                   // where it runs; empty: here
    bool hasTerminal = false;                  // standard error is a terminal
    long fileSizeLimit = 0;                    // bytes that a file of it may hold; 0: no limit
    int signalAtFirstError = 0;                // sent when it first writes to standard error; 0: none
};

/// `arguments` begins with the program's path.
sPROGRAM_RUN RunProgram(const std::vector<std::string>& arguments, const sPROGRAM_SETTINGS& settings = {});

} // namespace kvTest
