#include "plugin_scan.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <exception>

#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/fm/folder.h>

#include "failure.h"
#include "file_problem.h"
#include "hosted_plugin.h"
#include "interruption.h"
#include "text.h"
#include "text_table.h"

namespace kvKorvoV12_9_0_320::kvHost {
namespace {

// What the child tells: four texts, each ended by a NUL.
std::string Answer(const sSCANNED_PLUGIN& plugin) {
    std::string answer;
    for (const std::string& text : {plugin.name, plugin.maker, plugin.numParams, plugin.problem})
        answer.append(text.c_str(), text.size() + 1);
    return answer;
}

bool TakeText(std::string_view& answer, std::string& text) {
    const size_t end = answer.find('\0');
    if (end == std::string_view::npos)
        return false;
    text = answer.substr(0, end);
    answer.remove_prefix(end + 1);
    return true;
}

bool ReadAnswer(std::string_view answer, sSCANNED_PLUGIN& plugin) {
    return TakeText(answer, plugin.name) && TakeText(answer, plugin.maker) && TakeText(answer, plugin.numParams) &&
           TakeText(answer, plugin.problem);
}

// ---- In the child
// -------------------------------------------------------------------------------------------------

void WriteAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = write(descriptor, bytes.data(), bytes.size());
        if (written <= 0)
            return;
        bytes.remove_prefix(static_cast<size_t>(written));
    }
}

// What the plug-in prints is not ours, and where it crashes no core is wanted.
void KeepQuiet() {
    const int nowhere = open("/dev/null", O_RDWR | O_CLOEXEC);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        dup2(nowhere, stream);
    const rlimit none = {0, 0};
    setrlimit(RLIMIT_CORE, &none);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        std::signal(signal, SIG_DFL);
}

[[noreturn]] void LookAt(const std::string& path, int answerEnd) {
    KeepQuiet();
    sSCANNED_PLUGIN found;
    try {
        const KCHostedPlugin hosted(path);
        found.name = hosted.GetName();
        found.maker = hosted.GetMaker();
        found.numParams = std::to_string(hosted.GetAlgorithm().GetNumParams());
    } catch (const std::exception& failure) {
        found = {};
        found.problem = failure.what();
        if (const std::string prefix = path + ": "; found.problem.starts_with(prefix))
            found.problem.erase(0, prefix.size());
    }
    WriteAll(answerEnd, Answer(found));
    _exit(0);
}

// ---- In the host
// --------------------------------------------------------------------------------------------------

// All that the child tells until it ends; false when it takes too long, and when somebody interrupts.
bool Collect(int answerEnd, int timeoutSeconds, std::string& answer) {
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + std::chrono::seconds(timeoutSeconds);
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now()).count();
        pollfd waiting = {answerEnd, POLLIN, 0};
        const int ready = left > 0 ? poll(&waiting, 1, static_cast<int>(left)) : 0;
        if (ready <= 0)
            return false;
        char piece[4096];
        const ssize_t numRead = read(answerEnd, piece, sizeof piece);
        if (numRead <= 0)
            return true;
        answer.append(piece, static_cast<size_t>(numRead));
    }
}

int WaitFor(pid_t child) {
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}

std::string SignalName(int signal) {
    const char* const name = sigabbrev_np(signal);
    return name != nullptr ? std::string("SIG") + name : "signal " + std::to_string(signal);
}

void Judge(int status, const std::string& answer, sSCANNED_PLUGIN& plugin) {
    const bool isWhole = ReadAnswer(answer, plugin);
    if (WIFSIGNALED(status))
        plugin.problem = "it crashes (" + SignalName(WTERMSIG(status)) + ")";
    else if (!isWhole)
        plugin.problem = "it ends its process (exit status " + std::to_string(WEXITSTATUS(status)) + ")";
}

sSCANNED_PLUGIN Scan(const std::string& path, int timeoutSeconds) {
    sSCANNED_PLUGIN plugin;
    int ends[2] = {-1, -1};
    const pid_t child = pipe2(ends, O_CLOEXEC) == 0 ? fork() : -1;
    if (child < 0)
        throw KCHostFailure(std::string("no process for a plug-in can be started: ") + std::strerror(errno));
    if (child == 0)
        LookAt(path, ends[1]);
    close(ends[1]);
    std::string answer;
    const bool isInTime = Collect(ends[0], timeoutSeconds, answer);
    close(ends[0]);
    if (!isInTime)
        kill(child, SIGKILL);
    const int status = WaitFor(child);
    if (isInTime)
        Judge(status, answer, plugin);
    else
        plugin.problem = "it does not answer within " + std::to_string(timeoutSeconds) + " s";
    return plugin;
}

class KCSharedObjects final : public FM::FileFilterFunctor {
  public:
    bool operator()(const FM::KCStPath& path) const noexcept override {
        return path.IsFile() && path.GetExtension() == "so";
    }
};

} // namespace

std::vector<sSCANNED_PLUGIN> ScanPlugins(const std::string& folder, int timeoutSeconds) {
    std::vector<FM::KCStPath> files;
    errno = 0;
    const FM::KCStFolderIterator iterator{FM::KCStPath(folder.c_str())};
    if (const int32_t result = iterator.GetFilePathVectorFromFolderSortByName(files, KCSharedObjects());
        result != 0)
        throw KCHostFailure(folder + ": cannot be read: " + FileProblem(result));
    const std::string inFolder = folder.ends_with('/') ? folder : folder + '/';
    std::vector<sSCANNED_PLUGIN> plugins;
    for (const FM::KCStPath& file : files) {
        const std::string name = file.GetLeaf().c_str();
        plugins.push_back(Scan(std::string(inFolder).append(name), timeoutSeconds));
        plugins.back().file = name;
        ThrowIfInterrupted();
    }
    return plugins;
}

std::string ScanTable(const std::string& folder, const std::vector<sSCANNED_PLUGIN>& plugins) {
    if (plugins.empty())
        return folder + ": no plug-ins (.so)\n";
    KCTextTable table({{"file"}, {"name"}, {"maker"}, {"parameters", true}, {"problem"}});
    for (const sSCANNED_PLUGIN& plugin : plugins)
        table.AddRow({plugin.file, plugin.name, plugin.maker, plugin.numParams, plugin.problem});
    return table.ToText();
}

} // namespace kvKorvoV12_9_0_320::kvHost
