#include "run_program.h"

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>

namespace kvTest {
namespace {

struct sPIPE {
    int readEnd = -1;
    int writeEnd = -1;
};

sPIPE MakePipe(bool isTerminal) {
    sPIPE made;
    int ends[2] = {-1, -1};
    if (isTerminal) {
        if (openpty(&made.readEnd, &made.writeEnd, nullptr, nullptr, nullptr) != 0)
            return {};
        fcntl(made.readEnd, F_SETFD, FD_CLOEXEC);
        return made;
    }
    if (pipe2(ends, O_CLOEXEC) != 0)
        return {};
    return {ends[0], ends[1]};
}

[[noreturn]] void Become(const std::vector<std::string>& arguments, const sPROGRAM_SETTINGS& settings, int out,
                         int error) {
    dup2(out, STDOUT_FILENO);
    dup2(error, STDERR_FILENO);
    for (const std::string& variable : settings.environment)
        putenv(const_cast<char*>(variable.c_str()));
    if (!settings.folder.empty() && chdir(settings.folder.c_str()) != 0)
        _exit(126);
    if (settings.fileSizeLimit > 0) {
        const rlimit limit{static_cast<rlim_t>(settings.fileSizeLimit),
                           static_cast<rlim_t>(settings.fileSizeLimit)};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    std::vector<char*> argv;
    for (const std::string& argument : arguments)
        argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    execv(argv[0], argv.data());
    _exit(127);
}

// Both at once: a program that fills one pipe while the other is waited for would stand still.
void Collect(int outEnd, int errorEnd, pid_t child, int signalAtFirstError, sPROGRAM_RUN& run) {
    pollfd ends[2] = {{outEnd, POLLIN, 0}, {errorEnd, POLLIN, 0}};
    std::string* const texts[2] = {&run.out, &run.error};
    for (int open = 2; open > 0;) {
        if (poll(ends, 2, -1) < 0 && errno != EINTR)
            return;
        for (int i = 0; i < 2; ++i) {
            if (ends[i].fd < 0 || ends[i].revents == 0)
                continue;
            char piece[4096];
            const ssize_t numRead = read(ends[i].fd, piece, sizeof piece);
            if (numRead > 0) {
                if (signalAtFirstError != 0 && i == 1 && run.error.empty())
                    kill(child, signalAtFirstError);
                texts[i]->append(piece, static_cast<size_t>(numRead));
                continue;
            }
            ends[i].fd = -1; // closed; a terminal says so by an error
            --open;
        }
    }
}

} // namespace

sPROGRAM_RUN RunProgram(const std::vector<std::string>& arguments, const sPROGRAM_SETTINGS& settings) {
    sPROGRAM_RUN run;
    const sPIPE out = MakePipe(false);
    const sPIPE error = MakePipe(settings.hasTerminal);
    const pid_t child = fork();
    if (child == 0)
        Become(arguments, settings, out.writeEnd, error.writeEnd);
    close(out.writeEnd);
    close(error.writeEnd);
    Collect(out.readEnd, error.readEnd, child, settings.signalAtFirstError, run);
    close(out.readEnd);
    close(error.readEnd);
    int status = 0;
    while (child > 0 && waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return run;
}

} // namespace kvTest
