#include "session.h"

#include <algorithm>
#include <sstream>

#include <yaml-cpp/eventhandler.h>
#include <yaml-cpp/yaml.h>

#include "failure.h"
#include "input_file.h"
#include "nearest_names.h"
#include "session_fields_internal.h"
#include "text.h"

namespace kvKorvoV12_9_0_320::kvHost {
namespace {

SessionAction ReadSet(const KCEventFields& fields) {
    sSET_PARAM set;
    set.param = fields.Text("set");
    set.isGesture = fields.Flag("gesture");
    if (fields.Has("state") + fields.Has("value") + fields.Has("text") != 1)
        fields.Fail("set", "'set' needs one of 'state', 'value' and 'text'");
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

const std::vector<std::string>& HistoryWords() {
    static const std::vector<std::string> words = {"undo", "redo", "mark clean"};
    return words;
}

SessionAction ReadDo(const KCEventFields& fields) {
    return sUSE_HISTORY{static_cast<sUSE_HISTORY::KEWhat>(fields.Choice("do", HistoryWords()))};
}

// What an event may be: the key that makes it one of this kind, and the other keys that it takes besides 'at'.
struct sEVENT_KIND {
    const char* key;
    std::vector<std::string> otherKeys;
    SessionAction (*read)(const KCEventFields& fields);
};

const std::vector<sEVENT_KIND>& EventKinds() {
    static const std::vector<sEVENT_KIND> kinds = {
        {"set", {"state", "value", "text", "gesture"}, ReadSet},
        {"step", {"by", "gesture"}, ReadStep},
        {"link", {"enabled"}, ReadLink},
        {"setup", {}, ReadSetup},
        {"copy setup", {}, ReadCopySetup},
        {"do", {}, ReadDo},
    };
    return kinds;
}

std::vector<std::string> KeysOf(const sEVENT_KIND& kind) {
    std::vector<std::string> keys = {"at", kind.key};
    keys.insert(keys.end(), kind.otherKeys.begin(), kind.otherKeys.end());
    return keys;
}

bool Contains(const std::vector<std::string>& names, const std::string& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

void RefuseUnknownKeys(const KCEventFields& fields) {
    std::vector<std::string> known;
    for (const sEVENT_KIND& kind : EventKinds())
        for (std::string& key : KeysOf(kind))
            if (!Contains(known, key))
                known.push_back(std::move(key));
    for (const std::string& key : fields.GetKeys()) {
        if (Contains(known, key))
            continue;
        const std::vector<std::string> nearest = NearestNames(known, key, 1);
        fields.Fail(key, "unknown key " + Quoted(key) +
                             (nearest.empty() ? "; known are " + JoinedText(known, " and ")
                                              : "; did you mean '" + nearest.front() + "'?"));
    }
}

const sEVENT_KIND& FindKind(const KCEventFields& fields) {
    const sEVENT_KIND* found = nullptr;
    std::vector<std::string> names;
    for (const sEVENT_KIND& kind : EventKinds()) {
        names.push_back(InApostrophes(kind.key));
        if (!fields.Has(kind.key))
            continue;
        if (found != nullptr)
            fields.Fail(kind.key, "an event does one thing, not both " + InApostrophes(found->key) + " and " +
                                      InApostrophes(kind.key));
        found = &kind;
    }
    if (found == nullptr)
        fields.Fail("", "the event says nothing to do: it needs one of " + JoinedText(names, " and "));
    return *found;
}

sSESSION_EVENT ReadEvent(const YAML::Node& node, const std::string& fileName) {
    const KCEventFields fields(node, fileName);
    RefuseUnknownKeys(fields);
    const sEVENT_KIND& kind = FindKind(fields);
    for (const std::string& key : fields.GetKeys())
        if (!Contains(KeysOf(kind), key))
            fields.Fail(key, InApostrophes(key) + " does not belong to a " + InApostrophes(kind.key) +
                                 " event, which takes " + JoinedText(KeysOf(kind), " and "));
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

struct sActionText {
    std::string operator()(const sSET_PARAM& set) const {
        const char* const unit = set.by == sSET_PARAM::KEBy::State ? " to state " : " to ";
        const bool isText = set.by == sSET_PARAM::KEBy::Text;
        return "set " + set.param + unit + (isText ? Quoted(set.text) : NumberText(set.number)) +
               Hand(set.isGesture);
    }
    std::string operator()(const sSTEP_PARAM& step) const {
        return "step " + step.param + " by " + (step.by > 0 ? "+" : "") + std::to_string(step.by) +
               Hand(step.isGesture);
    }
    std::string operator()(const sENABLE_LINK& link) const {
        return (link.isEnabled ? "enable link group " : "disable link group ") + std::to_string(link.group);
    }
    std::string operator()(const sSWITCH_SETUP& change) const {
        return std::string("setup ") + Letter(change.setup);
    }
    std::string operator()(const sCOPY_SETUP& copy) const {
        return std::string("copy setup ") + Letter(copy.from) + " to " + Letter(copy.to);
    }
    std::string operator()(const sUSE_HISTORY& use) const { return HistoryWords()[static_cast<size_t>(use.what)]; }
    static const char* Hand(bool isGesture) { return isGesture ? ", by hand" : ""; }
    static char Letter(EPluginSetup setup) { return setup == kPluginSetup_A ? 'A' : 'B'; }
};

} // namespace

std::string SessionComplaint(const std::string& fileName, int line, std::string_view text) {
    return fileName + ":" + std::to_string(std::max(line, 1)) + ": " + std::string(text);
}

std::string DescribeAction(const SessionAction& action) { return std::visit(sActionText(), action); }

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
    return session;
}

sSESSION ReadSessionFile(const std::string& path) {
    return ReadSession(ReadInput(path, kLargestSessionFile, "a session"), path);
}

} // namespace kvKorvoV12_9_0_320::kvHost
