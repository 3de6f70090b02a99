// The shell's contract: all that a host needs of a plug-in, and all that a plug-in must supply to be hosted.
//
// A plug-in is a shared object with one C entry point. It has two sides: the algorithm (parameters, scales, setups)
// and the processing. They meet in blocks alone: a changed parameter makes the algorithm send a block, and the
// audio side receives it before the next frames are processed. No other data crosses.
//
// Threads, one tag for every operation:
//   [main]  whoever holds the algorithm's lock; it may allocate and take time.
//   [audio] one thread at a time; wait-free: no lock, no allocation, no system call.
//   [any]   any thread at any time.
//
// Between host and plug-in stands KCPluginRunner (shells/plugin_runner.h); a plug-in derives from KCPluginAlgorithm
// (shells/plugin_algorithm.h), which is shorter than implementing this by hand.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <type_traits>

#include <korvolib/export.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320 {

class cALGORITHM;

/// What processing is prepared for.
struct sPROCESS_SETUP {
    double sampleRateHz = 48000.0;
    uint32_t maxBlockFrames = 512; // the longest block that Process will be given
    uint32_t numChannels = 2;      // 1 (mono) or 2 (left, right)
};

/// A stretch of audio, one buffer a channel, full scale at 1. in[c] and out[c] may be the same buffer.
struct sAUDIO_BLOCK {
    const float* const* in = nullptr;
    float* const* out = nullptr;
    uint32_t numChannels = 0;
    uint32_t numFrames = 0;
};

class KCPlugin {
  public:
    virtual ~KCPlugin() = default;

    /// [any] The parameter side; the same object for the whole life of the plug-in.
    virtual cALGORITHM& GetAlgorithm() noexcept = 0;

    /// [main] while nothing processes; the algorithm's sample rate has been set. May be called again with another
    /// setup. 0, or an error code: the plug-in cannot process then.
    [[nodiscard]] virtual int32_t Prepare(const sPROCESS_SETUP& setup) = 0;

    /// [audio] What the parameter side has sent to `target`; the payload is gone after the call. A block holds all
    /// that its target needs, so that a later one replaces an earlier one: where the host cannot keep up, only the
    /// newest block of a target arrives. Blocks of one target arrive in their order, those of different targets may
    /// not.
    virtual void ReceiveBlock(uint32_t target, const void* payload, size_t bytes) noexcept = 0;

    /// [audio] At most maxBlockFrames frames of exactly numChannels channels, all samples finite.
    virtual void Process(const sAUDIO_BLOCK& block) noexcept = 0;

    /// [audio], or [main] while nothing processes. Forgets past audio; smoothed values stand where they were going.
    virtual void Reset() noexcept = 0;

    /// [any] By how many frames the output is late. Whoever changes it stores it atomically; the host looks.
    virtual uint32_t GetLatencyFrames() const noexcept { return 0; }
};

/// Copies a block's contents out of its payload; false, with `contents` as it was, for any other size.
template <class Contents>
[[nodiscard]] bool ReadBlock(const void* payload, size_t bytes, Contents& contents) noexcept {
    static_assert(std::is_trivially_copyable_v<Contents>);
    if (payload == nullptr || bytes != sizeof contents)
        return false;
    std::memcpy(&contents, payload, sizeof contents);
    return true;
}

/// What the entry point returns. Version and size come first and stay first: a host reads them before anything
/// else and refuses what it does not know.
struct sPLUGIN_ENTRY {
    uint32_t version = 0; // kPluginEntryVersion
    uint32_t size = 0;    // sizeof(sPLUGIN_ENTRY)
    const char* name = nullptr;
    const char* maker = nullptr;
    KCPlugin* (*create)() noexcept = nullptr; // [main] null when it could not be made
    void (*destroy)(KCPlugin* plugin) noexcept = nullptr;
};

/// Raised with every change of sPLUGIN_ENTRY, KCPlugin or a type that they name.
inline constexpr uint32_t kPluginEntryVersion = 2;

/// The one symbol that a plug-in exports, declared
///   extern "C" KORVO_API const kvKorvo::sPLUGIN_ENTRY* KorvoPluginEntry();
inline constexpr const char* kPluginEntryPoint = "KorvoPluginEntry";
using KTPluginEntryPoint = const sPLUGIN_ENTRY* (*)();

/// The entry record of a plug-in class that is made without arguments. The texts must outlive it: literals.
///   extern "C" KORVO_API const kvKorvo::sPLUGIN_ENTRY* KorvoPluginEntry() {
///       return kvKorvo::PluginEntry<KCMyPlugin>("My Plug-in", "Maker");
///   }
template <class Plugin>
const sPLUGIN_ENTRY* PluginEntry(const char* name, const char* maker) noexcept {
    static const sPLUGIN_ENTRY entry = {kPluginEntryVersion,
                                        sizeof(sPLUGIN_ENTRY),
                                        name,
                                        maker,
                                        []() noexcept -> KCPlugin* {
                                            try {
                                                return new Plugin;
                                            } catch (...) { // a constructor's exception must not reach the host
                                                return nullptr;
                                            }
                                        },
                                        [](KCPlugin* plugin) noexcept {
                                            if (plugin == nullptr)
                                                return;
                                            try { // the hooks' last call, while they are still there
                                                static_cast<Plugin*>(plugin)->GetAlgorithm().Dispose();
                                            } catch (...) {
                                                static_cast<void>(plugin);
                                            }
                                            delete plugin;
                                        }};
    return &entry;
}

} // namespace kvKorvoV12_9_0_320
