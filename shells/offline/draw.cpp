#include "draw.h"

#include <cstdio>
#include <deque>

#include "failure.h"
#include "hosted_plugin.h"
#include "output_file.h"
#include "picture_file.h"
#include "session_player.h"

namespace kvKorvoV12_9_0_320::kvHost {
namespace {

constexpr int32_t kSampleRateHz = 48000; // of the clock alone: there is no sound
constexpr uint16_t kUndoLevel = 100;

KCSessionWindow& OpenWindow(KCSessionPlayer& player, const std::string& plugin) {
    try {
        return player.OpenWindow();
    } catch (const KCHostFailure& failure) {
        throw KCHostFailure(plugin + ": " + failure.what());
    }
}

} // namespace

void Draw(const sDRAW_OPTIONS& options) {
    std::deque<KCOutputFile> files; // none of them can be moved
    RefuseSharedOutputs(options.outs);
    for (const std::string& out : options.outs)
        RefuseUnknownPictureKind(out, "a picture");
    const KCHostedPlugin plugin(options.plugin);
    const sSESSION session = options.session.empty() ? sSESSION() : ReadSessionFile(options.session);
    KCSessionPlayer player(plugin.GetAlgorithm(), session, kSampleRateHz, kUndoLevel);
    KCSessionWindow& window = OpenWindow(player, options.plugin);
    for (const std::string& problem : window.GetProblems())
        std::fprintf(stderr, "korvo-host: %s\n", problem.c_str());
    for (const std::string& out : options.outs)
        files.emplace_back(out);
    player.PlayAll();
    for (KCOutputFile& file : files)
        file.Write(window.DrawFile(file.GetPath(), options.scale));
    for (KCOutputFile& file : files)
        file.Keep();
}

} // namespace kvKorvoV12_9_0_320::kvHost
