#include "midi_file.h"

#include <smf.h>

#include <memory>

#include "failure.h"
#include "input_file.h"
#include "midi_filter.h"

namespace kvKorvoV12_9_0_320::kvHost {
namespace {

constexpr size_t kLargestMidiFile = size_t{16} << 20;

// What libsmf has to say goes to the log of GLib, which prints it. Here it is noted instead.
class KCSmfLog {
  public:
    KCSmfLog()
        : m_handler(g_log_set_handler("libsmf",
                                      static_cast<GLogLevelFlags>(G_LOG_LEVEL_MASK | G_LOG_FLAG_RECURSION), &Note,
                                      &m_hasComplained)) {}
    ~KCSmfLog() { g_log_remove_handler("libsmf", m_handler); }
    KCSmfLog(const KCSmfLog&) = delete;
    KCSmfLog& operator=(const KCSmfLog&) = delete;

    bool HasComplained() const { return m_hasComplained; }

  private:
    static void Note(const gchar*, GLogLevelFlags level, const gchar*, gpointer hasComplained) {
        if ((level & (G_LOG_LEVEL_ERROR | G_LOG_LEVEL_CRITICAL | G_LOG_LEVEL_WARNING)) != 0)
            *static_cast<bool*>(hasComplained) = true;
    }

    bool m_hasComplained = false;
    guint m_handler;
};

struct sDeleteSmf {
    // smf_delete looks for each event among all of its track, which for the largest file we read takes minutes: the
    // events go first, and their tracks are told that they have none.
    void operator()(smf_t* smf) const {
        for (int number = 1; smf_track_t* track = smf_get_track_by_number(smf, number); ++number) {
            for (guint i = 0; i < track->events_array->len; ++i) {
                auto* event = static_cast<smf_event_t*>(g_ptr_array_index(track->events_array, i));
                event->track = nullptr;
                smf_event_delete(event);
            }
            g_ptr_array_set_size(track->events_array, 0);
            track->number_of_events = 0;
        }
        smf_delete(smf);
    }
};

sTIMED_MIDI_EVENT Timed(const smf_event_t& event) {
    const uint8_t* bytes = event.midi_buffer;
    return {event.time_seconds, {bytes[0], bytes[1], event.midi_buffer_length > 2 ? bytes[2] : uint8_t{0}}};
}

} // namespace

std::vector<sTIMED_MIDI_EVENT> ParseMidiFile(std::string_view contents, const std::string& name) {
    const std::string playable = PlayableMidi(contents, name);
    const KCSmfLog log;
    const std::unique_ptr<smf_t, sDeleteSmf> smf(
        smf_load_from_memory(playable.data(), static_cast<int>(playable.size())));
    if (smf == nullptr || log.HasComplained())
        throw KCHostFailure(name + ": the MIDI file does not read");
    std::vector<sTIMED_MIDI_EVENT> events;
    smf_rewind(smf.get());
    while (const smf_event_t* event = smf_get_next_event(smf.get()))
        if (smf_event_is_metadata(event) == 0)
            events.push_back(Timed(*event));
    return events;
}

std::vector<sTIMED_MIDI_EVENT> ReadMidiFile(const std::string& path) {
    return ParseMidiFile(ReadInput(path, kLargestMidiFile, "a MIDI file"), path);
}

} // namespace kvKorvoV12_9_0_320::kvHost
