#include "hosted_plugin.h"

#include <filesystem>
#include <system_error>

#include "failure.h"

namespace kvKorvoV12_9_0_320::kvHost {

namespace fs = std::filesystem;

std::string FindPlugin(const std::string& plugin) {
    std::error_code ignored;
    if (plugin.empty() || plugin.find('/') != std::string::npos || fs::is_regular_file(plugin, ignored))
        return plugin;
    const fs::path program = fs::read_symlink("/proc/self/exe", ignored);
    const fs::path name = plugin.ends_with(".so") ? plugin : plugin + ".so";
    for (const char* const folder : {".", "../plugins", "../lib", "../lib/korvo"}) {
        const fs::path candidate = (program.parent_path() / folder / name).lexically_normal();
        if (fs::is_regular_file(candidate, ignored))
            return candidate.string();
    }
    return plugin;
}

namespace {

std::string CreateProblem(const std::vector<std::string>& problems, int32_t result) {
    return problems.empty() ? "error " + std::to_string(result) : problems.front();
}

} // namespace

KCHostedPlugin::KCHostedPlugin(const std::string& plugin) {
    KCFixedString<1023> error;
    if (m_loader.Load(FindPlugin(plugin).c_str(), error) != kErr_NoErr)
        throw KCHostFailure(error.c_str());
    m_runner = std::make_unique<KCPluginRunner>(*m_loader.GetPlugin());
    if (const int32_t result = m_runner->Create(); result != kErr_NoErr)
        throw KCHostFailure(plugin + ": the plug-in could not be created: " + CreateProblem(GetProblems(), result));
}

std::vector<std::string> KCHostedPlugin::GetProblems() const {
    std::vector<std::string> texts;
    for (size_t number = 0; const sDESCRIPTION_PROBLEM* problem = GetAlgorithm().GetDescriptionProblem(number);
         ++number) {
        std::string text = problem->Description.c_str();
        texts.push_back(text + ":" + std::to_string(problem->Line) + ": " + problem->Text.c_str());
    }
    return texts;
}

} // namespace kvKorvoV12_9_0_320::kvHost
