// Looking at all plug-ins of a folder, each in a process of its own: one that crashes, ends its process or never
// answers is reported, and the scan goes on.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320::kvHost {

/// What a look at one shared object found.
struct sSCANNED_PLUGIN {
    std::string file; // without its folder
    std::string name;
    std::string maker;
    std::string numParams;
    std::string problem; // why it cannot be used; empty for one that can
};

/// Looks at every .so file of the folder, by name. Throws KCHostFailure for a folder that cannot be read. A plug-in
/// has `timeoutSeconds` to load and to be created.
std::vector<sSCANNED_PLUGIN> ScanPlugins(const std::string& folder, int timeoutSeconds);

/// The findings as a table; one line that says so where there are none.
std::string ScanTable(const std::string& folder, const std::vector<sSCANNED_PLUGIN>& plugins);

} // namespace kvKorvoV12_9_0_320::kvHost
