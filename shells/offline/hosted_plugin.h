// A plug-in as the host holds it: found, loaded, created, ready to be prepared.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <shells/plugin_loader.h>
#include <shells/plugin_runner.h>

namespace kvKorvoV12_9_0_320::kvHost {

class KCHostedPlugin {
  public:
    /// `plugin` is a path, or the bare name of a plug-in that stands beside this program (FindPlugin). Throws
    /// KCHostFailure when it cannot be loaded or created.
    explicit KCHostedPlugin(const std::string& plugin);

    const char* GetName() const { return m_loader.GetEntry()->name; }
    /// What is wrong with its descriptions or doubtful in them, a line for each: "GUIXML:12: no parameter is named
    /// \"Gian\"".
    std::vector<std::string> GetProblems() const;
    const char* GetMaker() const { return m_loader.GetEntry()->maker; }
    cALGORITHM& GetAlgorithm() const { return m_runner->GetAlgorithm(); }
    KCPluginRunner& GetRunner() const { return *m_runner; }

  private:
    KCPluginLoader m_loader;
    std::unique_ptr<KCPluginRunner> m_runner; // goes before the plug-in that it drives
};

/// The path itself where there is such a file; for a name without a folder otherwise NAME.so in the program's
/// folder, or in the folders beside it where libraries and plug-ins stand; the path itself where nothing is found.
std::string FindPlugin(const std::string& plugin);

} // namespace kvKorvoV12_9_0_320::kvHost
