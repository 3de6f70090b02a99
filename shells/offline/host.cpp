#include "host.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <string>

#include <korvolib/utilities/fm/path.h>

#include "control_table.h"
#include "draw.h"
#include "failure.h"
#include "hosted_plugin.h"
#include "interruption.h"
#include "parameter_text.h"
#include "plugin_scan.h"
#include "render.h"

namespace kvKorvoV12_9_0_320::kvHost {
namespace {

constexpr int kExit_Failure = 2;

constexpr const char* kPluginHelp = "A plug-in's shared object, or the name of one that stands beside this program";

struct sLIST_OPTIONS {
    std::string plugin;
    int timeoutSeconds = 10;
    bool hasControls = false;
};

void List(const sLIST_OPTIONS& options) {
    // A plug-in beside the program goes before a folder that happens to have its name here.
    const std::string path = FindPlugin(options.plugin);
    if (FM::KCStPath(path.c_str()).IsFolder()) {
        if (options.hasControls)
            throw KCHostFailure(path + ": a folder, and --controls takes one plug-in");
        std::fputs(ScanTable(path, ScanPlugins(path, options.timeoutSeconds)).c_str(), stdout);
        return;
    }
    const KCHostedPlugin hosted(options.plugin);
    if (options.hasControls) {
        for (const std::string& problem : hosted.GetProblems())
            std::fprintf(stderr, "korvo-host: %s\n", problem.c_str());
        std::fputs(ControlTable(hosted.GetAlgorithm()).c_str(), stdout);
        return;
    }
    std::fputs(ParameterTable(hosted.GetAlgorithm()).c_str(), stdout);
    std::fputs(LinkGroupTable(hosted.GetAlgorithm()).c_str(), stdout);
}

// Each command sets itself up on the command line and runs when it was named.
void AddListCommand(CLI::App& app, sLIST_OPTIONS& options) {
    CLI::App* const list =
        app.add_subcommand("list", "Print a plug-in's parameters as a table, or what plug-ins a folder holds");
    list->add_option("PLUGIN", options.plugin, std::string(kPluginHelp) + "; or a folder of plug-ins")->required();
    list->add_option("--timeout", options.timeoutSeconds, "Seconds that each plug-in of a folder may take")
        ->check(CLI::Range(1, 3600))
        ->capture_default_str();
    list->add_flag("--controls", options.hasControls, "Print what a host automates, and what MIDI moves it");
    list->callback([&options] { List(options); });
}

void AddRenderCommand(CLI::App& app, sRENDER_OPTIONS& options) {
    CLI::App* const render = app.add_subcommand("render", "Render a sound file through a plug-in");
    render->add_option("PLUGIN", options.plugin, kPluginHelp)->required();
    render->add_option("--in", options.in, "The sound file to read (mono or stereo)")->required();
    render->add_option("--out", options.out, "The sound file to write (.wav, .aiff or .flac)")->required();
    render->add_option("--session", options.session, "What happens meanwhile: a YAML list of timed events");
    render->add_option("--block", options.blockFrames, "Frames processed at once")
        ->check(CLI::Range(1u, kLargestBlock))
        ->capture_default_str();
    render->add_option("--undo-level", options.undoLevel, "How many gestures of the session can be undone")
        ->check(CLI::Range(0, 65535))
        ->capture_default_str();
    render->add_option("--table", options.table,
                       "Write the parameters' final values and the events to this text file");
    render
        ->add_option("--plot", options.plots,
                     "Draw the level before and after into this file (.svg, .png, .gs or .yaml); may be repeated")
        ->allow_extra_args(false);
    render->add_option("--film", options.film,
                       "Write a picture of the plug-in's window into this folder whenever something in it changes");
    CLI::Option* const midi =
        render->add_option("--midi", options.midi, "A MIDI file to play into the plug-in's controls meanwhile");
    render
        ->add_option("--learn", options.learn,
                     "The control that the first controller of the MIDI file is attached to")
        ->needs(midi);
    render->add_option("--callbacks", options.callbacks,
                       "Write what the plug-in tells its host, touches, values and releases, to this text file");
    render->callback([&options] { Render(options); });
}

void AddDrawCommand(CLI::App& app, sDRAW_OPTIONS& options) {
    CLI::App* const draw = app.add_subcommand("draw", "Draw a plug-in's window, as a session leaves it");
    draw->add_option("PLUGIN", options.plugin, kPluginHelp)->required();
    draw->add_option("--out", options.outs, "The picture to write (.png, .svg, .gs or .yaml); may be repeated")
        ->required()
        ->allow_extra_args(false);
    draw->add_option("--session", options.session, "What happens before: a YAML list of timed events");
    draw->add_option("--scale", options.scale, "How many times its own size a .png or .svg is")
        ->check(CLI::Range(kSmallestScale, kLargestScale))
        ->capture_default_str();
    draw->callback([&options] { Draw(options); });
}

int Fail(std::string text) {
    std::replace(text.begin(), text.end(), '\n', ' ');
    std::fprintf(stderr, "korvo-host: %s\n", text.c_str());
    return kExit_Failure;
}

int ParseAndRun(int argc, const char* const* argv) {
    CLI::App app("Runs plug-ins without a display: lists their parameters, renders sound files, draws windows.",
                 "korvo-host");
    app.require_subcommand(1);
    sLIST_OPTIONS listOptions;
    sRENDER_OPTIONS renderOptions;
    sDRAW_OPTIONS drawOptions;
    AddListCommand(app, listOptions);
    AddRenderCommand(app, renderOptions);
    AddDrawCommand(app, drawOptions);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success))
            return app.exit(error); // --help
        return Fail(std::string(error.what()) + " (korvo-host --help shows what there is)");
    }
    return std::fflush(stdout) == 0 && std::ferror(stdout) == 0 ? 0 : Fail("standard output cannot be written");
}

} // namespace

int RunHost(int argc, const char* const* argv) {
    WatchForInterruption();
    try {
        return ParseAndRun(argc, argv);
    } catch (const std::exception& failure) {
        return Fail(failure.what());
    }
}

} // namespace kvKorvoV12_9_0_320::kvHost
