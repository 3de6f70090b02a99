#include "render.h"

#include <algorithm>
#include <cstdio>
#include <deque>
#include <filesystem>
#include <optional>
#include <vector>

#include "audio_buffers.h"
#include "callback_log.h"
#include "control_table.h"
#include "failure.h"
#include "film.h"
#include "hosted_plugin.h"
#include "interruption.h"
#include "level_meter.h"
#include "level_plot.h"
#include "midi_player.h"
#include "parameter_text.h"
#include "picture_file.h"
#include "progress_bar.h"
#include "session_player.h"
#include "sound_file.h"
#include "text.h"
#include "text_table.h"

namespace kvKorvoV12_9_0_320::kvHost {
namespace {

constexpr double kLevelsPerSecond = 20.0;

std::string EventTable(const std::vector<sPLAYED_EVENT>& events) {
    KCTextTable table(
        {{"at s", true}, {"played at s", true}, {"line", true}, {"event"}, {"effect"}, {"history"}, {"state"}});
    for (const sPLAYED_EVENT& event : events)
        table.AddRow({NumberText(event.atSeconds), FixedText(event.playedSeconds, 4), std::to_string(event.line),
                      event.what, event.effect, event.history, event.state});
    return table.ToText();
}

std::string MidiTable(const std::vector<sPLAYED_MIDI>& events) {
    KCTextTable table({{"at s", true}, {"played at s", true}, {"event"}, {"effect"}});
    for (const sPLAYED_MIDI& event : events)
        table.AddRow({FixedText(event.atSeconds, 4), FixedText(event.playedSeconds, 4), event.what, event.effect});
    return table.ToText();
}

class KCRendering {
  public:
    explicit KCRendering(const sRENDER_OPTIONS& options)
        : m_options(options), m_plugin(options.plugin), m_in(options.in),
          m_session(options.session.empty() ? sSESSION() : ReadSessionFile(options.session)),
          m_midiEvents(options.midi.empty() ? std::vector<sTIMED_MIDI_EVENT>() : ReadMidiFile(options.midi)),
          m_player(m_plugin.GetAlgorithm(), m_session, m_in.GetFormat().sampleRateHz, options.undoLevel),
          m_midi(m_plugin.GetAlgorithm(), m_player.GetAutomation(), m_midiEvents, m_in.GetFormat().sampleRateHz,
                 !options.table.empty()),
          m_outFile(options.out), m_out(m_outFile, m_in.GetFormat()),
          m_buffers(m_in.GetFormat().numChannels, options.blockFrames),
          m_before(m_in.GetFormat().numChannels, WindowFrames()),
          m_after(m_in.GetFormat().numChannels, WindowFrames()) {
        if (!options.table.empty())
            m_table.emplace(options.table);
        for (const std::string& plot : options.plots)
            m_plots.emplace_back(plot);
        if (!options.film.empty())
            StartFilm();
        if (!options.learn.empty())
            StartLearning();
        if (!options.callbacks.empty())
            StartLog();
    }

    void Run() {
        Prepare();
        Process();
        m_out.Finish();
        if (m_table)
            m_table->Write(Table());
        if (m_log)
            m_logFile->Write(m_log->ToText());
        WritePlots();
        KeepAll();
    }

    std::string Summary() const {
        const double seconds = static_cast<double>(m_in.GetNumFrames()) / m_in.GetFormat().sampleRateHz;
        std::string summary = m_options.out + ": " + FixedText(seconds, 2) + " s, " +
                              std::to_string(m_in.GetFormat().sampleRateHz) + " Hz, " +
                              (m_in.GetFormat().numChannels == 1 ? "mono, " : "stereo, ") +
                              std::to_string(m_player.GetPlayed().size()) + " events";
        if (!m_options.midi.empty())
            summary += ", " + std::to_string(m_midi.GetNumPlayed()) + " MIDI events";
        if (m_log)
            summary += ", " + std::to_string(m_log->GetNumCallbacks()) + " callbacks";
        if (m_film)
            summary += ", " + std::to_string(m_film->GetNumPictures()) + " pictures";
        if (m_player.GetNumLeft() > 0)
            summary += ", " + std::to_string(m_player.GetNumLeft()) + " after the end of the sound";
        if (m_midi.GetNumLeft() > 0)
            summary += ", " + std::to_string(m_midi.GetNumLeft()) + " of MIDI after the end of the sound";
        if (m_plugin.GetRunner().GetNumRepairedPieces() > 0)
            summary += ", samples that are not finite replaced in " +
                       std::to_string(m_plugin.GetRunner().GetNumRepairedPieces()) + " blocks";
        return summary;
    }

  private:
    void StartFilm() {
        try {
            m_player.OpenWindow();
        } catch (const KCHostFailure& failure) {
            throw KCHostFailure(m_options.plugin + ": " + failure.what());
        }
        m_film.emplace(m_options.film);
    }

    void StartLearning() {
        const KCAlgorithmLock lock(m_plugin.GetAlgorithm());
        const KCHostAutomation& automation = m_player.GetAutomation();
        try {
            const size_t control = automation.FindControl(m_options.learn);
            automation.RefuseDeafControl(control);
            automation.Learn(control);
        } catch (const KCHostFailure& failure) {
            throw KCHostFailure(m_options.plugin + ": " + failure.what());
        }
    }

    void StartLog() {
        m_logFile.emplace(m_options.callbacks);
        m_log.emplace(m_plugin.GetRunner());
    }

    // The first picture shows the window as it opens.
    void Film() {
        if (m_film && m_player.GetWindow()->NeedsRedraw())
            m_film->Add(m_player.GetWindow()->DrawFile(".png", 1.0));
    }

    int64_t WindowFrames() const { return static_cast<int64_t>(m_in.GetFormat().sampleRateHz / kLevelsPerSecond); }

    void Prepare() {
        const sPROCESS_SETUP setup{static_cast<double>(m_in.GetFormat().sampleRateHz), m_options.blockFrames,
                                   m_in.GetFormat().numChannels};
        if (const int32_t result = m_plugin.GetRunner().Prepare(setup); result != kErr_NoErr)
            throw KCHostFailure(m_options.plugin + ": the plug-in cannot process " +
                                std::to_string(setup.numChannels) + " channels at " +
                                NumberText(setup.sampleRateHz) + " Hz: error " + std::to_string(result));
    }

    // The input, then as much silence as it takes for the delayed end to come out.
    void Process() {
        const int64_t latency = m_plugin.GetRunner().GetLatencyFrames();
        const int64_t total = m_in.GetNumFrames() + latency;
        KCProgressBar progress(total);
        for (int64_t frame = 0; frame < total; frame += m_options.blockFrames) {
            ThrowIfInterrupted();
            const int64_t numFrames = std::min<int64_t>(m_options.blockFrames, total - frame);
            Play(frame, numFrames);
            DeliverChanges();
            Film();
            ReadBlock(numFrames);
            m_buffers.Process(m_plugin.GetRunner(), numFrames);
            WriteBlock(std::clamp<int64_t>(latency - frame, 0, numFrames), numFrames);
            progress.Show(frame + numFrames);
        }
    }

    // What the session has had to do by now goes before what MIDI brings in the block that begins.
    void Play(int64_t frame, int64_t numFrames) {
        if (m_log)
            m_log->SetTime(static_cast<double>(frame) / m_in.GetFormat().sampleRateHz);
        m_player.PlayUpTo(frame);
        m_midi.PlayBlock(frame, numFrames);
    }

    // However many events fall on one block, all of them reach it: between two blocks the audio side is ours, and
    // an empty block makes room in the queue for what waits.
    void DeliverChanges() {
        KCPluginRunner& runner = m_plugin.GetRunner();
        runner.DoIdle();
        for (size_t numWaiting = runner.GetQueue().GetNumWaiting(), before = numWaiting + 1;
             numWaiting > 0 && numWaiting < before; numWaiting = runner.GetQueue().GetNumWaiting()) {
            before = numWaiting;
            m_buffers.Process(runner, 0);
            runner.DoIdle();
        }
    }

    void ReadBlock(int64_t numFrames) {
        float* const interleaved = m_buffers.GetInterleaved();
        const int64_t numRead = m_in.Read(interleaved, numFrames);
        m_before.Add(interleaved, numRead);
        std::fill(interleaved + numRead * m_in.GetFormat().numChannels,
                  interleaved + numFrames * m_in.GetFormat().numChannels, 0.0f);
    }

    void WriteBlock(int64_t firstFrame, int64_t endFrame) {
        const float* const interleaved = m_buffers.GetInterleaved() + firstFrame * m_in.GetFormat().numChannels;
        m_out.Write(interleaved, endFrame - firstFrame);
        m_after.Add(interleaved, endFrame - firstFrame);
    }

    std::string Table() const {
        const bool isA = m_plugin.GetAlgorithm().GetActiveSetup() == kPluginSetup_A;
        return std::string(m_plugin.GetName()) +
               ", parameters after the render (active setup: " + (isA ? "A" : "B") + ")\n\n" +
               ParameterTableWithValues(m_plugin.GetAlgorithm()) + LinkGroupTable(m_plugin.GetAlgorithm()) +
               "\nEvents\n\n" + EventTable(m_player.GetPlayed()) + "\n" + m_player.GetHistory().ToText() +
               (m_options.midi.empty() ? "" : MidiPart());
    }

    std::string MidiPart() const {
        return "\nMIDI\n\n" + MidiTable(m_midi.GetPlayed()) + "\nControls after the render\n\n" +
               ControlTable(m_plugin.GetAlgorithm());
    }

    void WritePlots() {
        kvGS::KCGraphicStreamBinaryWriter writer;
        RecordLevelPlot(Plot(), writer);
        for (KCOutputFile& plot : m_plots)
            plot.Write(PictureFileContents(plot.GetPath(), writer, {}));
    }

    sLEVEL_PLOT Plot() const {
        sLEVEL_PLOT plot;
        plot.title = std::filesystem::path(m_options.in).filename().string() + " through " + m_plugin.GetName();
        plot.windowSeconds = static_cast<double>(m_before.GetWindowFrames()) / m_in.GetFormat().sampleRateHz;
        plot.before = m_before.GetLevels();
        plot.after = m_after.GetLevels();
        for (const sPLAYED_EVENT& event : m_player.GetPlayed())
            plot.events.push_back({event.playedSeconds, event.what});
        return plot;
    }

    void KeepAll() {
        if (m_table)
            m_table->Keep();
        for (KCOutputFile& plot : m_plots)
            plot.Keep();
        if (m_logFile)
            m_logFile->Keep();
        if (m_film)
            m_film->Keep();
        m_outFile.Keep();
    }

    const sRENDER_OPTIONS& m_options;
    KCHostedPlugin m_plugin;
    KCSoundReader m_in;
    sSESSION m_session;
    std::vector<sTIMED_MIDI_EVENT> m_midiEvents;
    KCSessionPlayer m_player;
    KCMidiPlayer m_midi;
    KCOutputFile m_outFile;
    KCSoundWriter m_out;
    KCAudioBuffers m_buffers;
    KCLevelMeter m_before;
    KCLevelMeter m_after;
    std::optional<KCOutputFile> m_table;
    std::deque<KCOutputFile> m_plots; // none of them can be moved
    std::optional<KCFilm> m_film;
    std::optional<KCOutputFile> m_logFile;
    std::optional<KCCallbackLog> m_log;
};

} // namespace

void Render(const sRENDER_OPTIONS& options) {
    std::vector<std::string> outputs = {options.out, options.table, options.film, options.callbacks};
    outputs.insert(outputs.end(), options.plots.begin(), options.plots.end());
    RefuseSharedOutputs(outputs);
    for (const std::string& plot : options.plots)
        RefuseUnknownPictureKind(plot, "a plot");
    KCRendering rendering(options);
    rendering.Run();
    std::printf("%s\n", rendering.Summary().c_str());
}

} // namespace kvKorvoV12_9_0_320::kvHost
