#include "session.h"

#include <algorithm>
#include <sstream>

#include <yaml-cpp/eventhandler.h>
#include <yaml-cpp/yaml.h>

#include "failure.h"
#include "input_file.h"
#include "session_fields_internal.h"
#include "session_kinds_internal.h"
#include "text.h"

namespace kvKorvoV12_9_0_320::kvHost {
namespace {

// Where a `set` or a `control` moves to.
template <class Set>
void ReadGoal(const KCEventFields& fields, std::string_view key, Set& set) {
    if (fields.Has("state") + fields.Has("value") + fields.Has("text") != 1)
        fields.Fail(key, InApostrophes(key) + " needs one of 'state', 'value' and 'text'");
    if (fields.Has("state")) {
        set.by = sSET_PARAM::KEBy::State;
        set.number = fields.Number("state", 0.0, 1000.0);
    } else if (fields.Has("value")) {
        set.by = sSET_PARAM::KEBy::RealWorld;
        set.number = fields.Number("value");
    } else {
        set.by = sSET_PARAM::KEBy::Text;
        set.text = fields.Text("text");
    }
}

SessionAction ReadSet(const KCEventFields& fields) {
    sSET_PARAM set;
    set.param = fields.Text("set");
    set.isGesture = fields.Flag("gesture");
    ReadGoal(fields, "set", set);
    return set;
}

SessionAction ReadControl(const KCEventFields& fields) {
    sSET_CONTROL set;
    set.controlName = fields.Text("control");
    ReadGoal(fields, "control", set);
    return set;
}

SessionAction ReadStep(const KCEventFields& fields) {
    sSTEP_PARAM step{fields.Text("step"), fields.WholeNumber("by", -1000, 1000), fields.Flag("gesture")};
    if (step.by == 0)
        fields.Fail("by", "'by' must not be 0: it says how many steps, and which way");
    return step;
}

SessionAction ReadLink(const KCEventFields& fields) {
    const int32_t group = fields.WholeNumber("link", INT32_MIN, INT32_MAX);
    if (!fields.Has("enabled"))
        fields.Fail("link", "'link' needs 'enabled', true or false");
    return sENABLE_LINK{group, fields.Flag("enabled")};
}

SessionAction ReadSetup(const KCEventFields& fields) {
    return sSWITCH_SETUP{fields.Choice("setup", {"A", "B"}) == 0 ? kPluginSetup_A : kPluginSetup_B};
}

SessionAction ReadCopySetup(const KCEventFields& fields) {
    if (fields.Choice("copy setup", {"A to B", "B to A"}) == 0)
        return sCOPY_SETUP{kPluginSetup_A, kPluginSetup_B};
    return sCOPY_SETUP{kPluginSetup_B, kPluginSetup_A};
}

SessionAction ReadDo(const KCEventFields& fields) {
    return sUSE_HISTORY{
        static_cast<sUSE_HISTORY::KEWhat>(fields.Choice("do", {kHistoryWords.begin(), kHistoryWords.end()}))};
}

const sSESSION_KINDS& EventKinds() {
    static const sSESSION_KINDS kinds = {"the event",
                                         {"at"},
                                         {{"set", {"state", "value", "text", "gesture"}, ReadSet},
                                          {"step", {"by", "gesture"}, ReadStep},
                                          {"link", {"enabled"}, ReadLink},
                                          {"setup", {}, ReadSetup},
                                          {"copy setup", {}, ReadCopySetup},
                                          {"do", {}, ReadDo},
                                          {"mouse", {}, ReadMouse},
                                          {"wheel", {}, ReadWheel},
                                          {"key", {}, ReadKey},
                                          {"type", {}, ReadType},
                                          {"menu", {}, ReadMenu},
                                          {"touch", {}, ReadTouch},
                                          {"hover", {}, ReadHover},
                                          {"control", {"state", "value", "text"}, ReadControl},
                                          {"touch control", {}, ReadTouchControl},
                                          {"release control", {}, ReadReleaseControl},
                                          {"midi", {}, ReadMidi},
                                          {"learn", {}, ReadLearn},
                                          {"detach", {}, ReadDetach}}};
    return kinds;
}

sSESSION_EVENT ReadEvent(const YAML::Node& node, const std::string& fileName) {
    const KCEventFields fields(node, fileName);
    const sSESSION_KIND& kind = FindKind(fields, EventKinds());
    return {fields.Number("at", 0.0, kLongestSession), fields.GetLine(), kind.read(fields)};
}

void RefuseDisorder(const sSESSION& session, const sSESSION_EVENT& next) {
    if (session.events.empty() || session.events.back().atSeconds <= next.atSeconds)
        return;
    const sSESSION_EVENT& last = session.events.back();
    throw KCHostFailure(SessionComplaint(session.fileName, next.line,
                                         "events must stand in the order of their times, but " +
                                             NumberText(next.atSeconds) + " follows " + NumberText(last.atSeconds) +
                                             " of line " + std::to_string(last.line)));
}

// Notes where documents begin, and nothing else.
class KCDocumentCounter : public YAML::EventHandler {
  public:
    void OnDocumentStart(const YAML::Mark& mark) override { m_lastLine = mark.line + 1; }
    void OnDocumentEnd() override {}
    void OnNull(const YAML::Mark&, YAML::anchor_t) override {}
    void OnAlias(const YAML::Mark&, YAML::anchor_t) override {}
    void OnScalar(const YAML::Mark&, const std::string&, YAML::anchor_t, const std::string&) override {}
    void OnSequenceStart(const YAML::Mark&, const std::string&, YAML::anchor_t,
                         YAML::EmitterStyle::value) override {}
    void OnSequenceEnd() override {}
    void OnMapStart(const YAML::Mark&, const std::string&, YAML::anchor_t, YAML::EmitterStyle::value) override {}
    void OnMapEnd() override {}

    int GetLastLine() const { return m_lastLine; }

  private:
    int m_lastLine = 0;
};

// Asked for two documents and no more: where a text goes on with what cannot begin one, the parser finds another
// document there for ever.
void RefuseSecondDocument(const std::string& text, const std::string& fileName) {
    std::istringstream stream(text);
    YAML::Parser parser(stream);
    KCDocumentCounter counter;
    if (parser.HandleNextDocument(counter) && parser.HandleNextDocument(counter))
        throw KCHostFailure(SessionComplaint(fileName, counter.GetLastLine(),
                                             "a session is one YAML document, and here begins another"));
}

YAML::Node LoadOneDocument(const std::string& text, const std::string& fileName) {
    try {
        RefuseSecondDocument(text, fileName);
        return YAML::Load(text);
    } catch (const YAML::Exception& problem) {
        throw KCHostFailure(SessionComplaint(fileName, problem.mark.line + 1, "not YAML: " + problem.msg));
    }
}

} // namespace

std::string SessionComplaint(const std::string& fileName, int line, std::string_view text) {
    return fileName + ":" + std::to_string(std::max(line, 1)) + ": " + std::string(text);
}

sSESSION ReadSession(std::string_view text, const std::string& fileName) {
    const YAML::Node list = LoadOneDocument(std::string(text), fileName);
    sSESSION session{fileName, {}};
    if (list.IsNull())
        return session;
    if (!list.IsSequence())
        throw KCHostFailure(SessionComplaint(fileName, list.Mark().line + 1,
                                             "a session is a list of events, each beginning with '- at:'"));
    for (const YAML::Node& node : list) {
        sSESSION_EVENT event = ReadEvent(node, fileName);
        RefuseDisorder(session, event);
        session.events.push_back(std::move(event));
    }
    RefuseImpossibleHand(session);
    return session;
}

sSESSION ReadSessionFile(const std::string& path) {
    return ReadSession(ReadInput(path, kLargestSessionFile, "a session"), path);
}

} // namespace kvKorvoV12_9_0_320::kvHost
