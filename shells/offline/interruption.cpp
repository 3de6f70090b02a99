#include "interruption.h"

#include <csignal>

#include "failure.h"

namespace kvKorvoV12_9_0_320::kvHost {
namespace {

volatile std::sig_atomic_t g_isInterrupted = 0;

void Note(int) { g_isInterrupted = 1; }

} // namespace

void WatchForInterruption() {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        std::signal(signal, Note);
    std::signal(SIGXFSZ, SIG_IGN);
}

void ThrowIfInterrupted() {
    if (g_isInterrupted != 0)
        throw KCHostFailure("interrupted; nothing was written");
}

} // namespace kvKorvoV12_9_0_320::kvHost
