// KCAutomationManager: the ordered list of an algorithm's automation controls. The place in the list is the index
// by which a host knows a control.
//
//   1. Created by the algorithm (cALGORITHM::FinishCreate), it reads the controls from the description "GUIXML";
//      then the plug-in adds its own (cALGORITHM::CreateSpecificAutomationControls).
//   2. The host plays a value: SetControllerValue, then ExecuteAndDisposeBuffer of the chain.
//   3. A MIDI event arrives: MidiProcessControlChange does all of it: finds the controls, moves them and what is
//      linked to them, executes the chain, tells the host.
//   4. "Learn": SetMIDILearnMode of a control; the next event attaches itself.
//   5. A host saves and loads attachments: SaveControlsToPreset, LoadControlsFromPreset.
//
// Playing values and MIDI allocates nothing; finding the controls of an event costs the same with ten controls and
// with ten thousand. Hooks and host callbacks must not delete a control while it is moved.
//
// It takes no lock. Thread: [main], with the algorithm's lock held from the first call until the chain has been
// executed. Indexes past the end and unknown names: null, kNoControl, kErr_ControlIndexOutOfRange, or nothing.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <korvolib/control/automation_control.h>
#include <korvolib/control/midi_event.h>

namespace kvKorvoV12_9_0_320 {

inline constexpr size_t kNoControl = SIZE_MAX;
inline constexpr size_t kMaxAutomationControls = 65535; // names are looked up with a 16-bit counter

/// What one control hears: an entry of the list of attachments.
struct sMIDI_ATTACHMENT {
    size_t control = kNoControl;
    int32_t eventType = -1;
    int32_t controlID = -1;
    int32_t channel = 0;
    kvMIDI::sMIDI_MAPPING mapping;

    friend bool operator==(const sMIDI_ATTACHMENT&, const sMIDI_ATTACHMENT&) = default;
};

/// A layout of pages for a control surface: which control stands where. Layouts of a user's own are "Custom".
struct sPAGE_TABLE {
    KCFixedString<127> name;
    bool isCustom = false;
    int32_t pageSize = 0;                   // controls on a page
    std::vector<std::vector<size_t>> pages; // control indexes; kNoControl leaves a place empty
};

class KORVO_API KCAutomationManager {
  public:
    using BUFFER_HEADER = cALGORITHM::BUFFER_HEADER;
    using Problems = std::vector<sDESCRIPTION_PROBLEM>;
    using ControlPtr = std::unique_ptr<KCAutomationControl>;

    KCAutomationManager();
    virtual ~KCAutomationManager();
    KCAutomationManager(const KCAutomationManager&) = delete;
    KCAutomationManager& operator=(const KCAutomationManager&) = delete;

    // Does nothing here, returns 0.
    virtual int32_t MoveControl(size_t from, size_t to);
    virtual int32_t SanityCheck();

    // Life
    // -----------------------------------------------------------------------------------------------------------
    /// Binds the manager to its algorithm, once, and reads its description. 0, also for null and a second call,
    /// which do nothing; kErr_BadDescription when something in the description has no meaning: the algorithm lists
    /// what.
    int32_t Init(cALGORITHM* algorithm);
    bool IsInitialised() const noexcept { return m_isInitialised; }
    /// All controls are there: each is completed, and the order is compared with the requested one (see
    /// DumpAutomationControlOrder).
    int32_t FinishCreate();
    /// Destroys all controls. The manager stays bound. Here as in every other operation, the host is told of a
    /// release before a touched control goes; when the algorithm ends, it is not.
    void Release();
    /// A control has come into the list at `index`: it is bound to the manager's algorithm and may be found.
    void OnCreateControl(size_t index);
    cALGORITHM* GetAlgorithm() const noexcept { return m_algorithm; } // null before Init

    // The list
    // ---------------------------------------------------------------------------------------------------------
    /// Appends. kErr_NullArgument; kErr_LimitExceeded beyond kMaxAutomationControls, and the control is destroyed.
    int32_t AddNewAutomationControl(ControlPtr control);
    /// Puts it at `index`: in place of the control there, which is destroyed, or behind as many controls named
    /// "Dummy" as it takes. A control that stands in this list already stays where it is: kErr_Generic, or 0 when
    /// it is at `index`.
    int32_t AddNewAutomationControlForIndex(ControlPtr control, size_t index);
    int32_t DeleteAutomationControl(size_t index); // those behind it move up
    int32_t RenameAutomationControl(size_t index, const char* name);
    /// A control of its own for every parameter that leads none yet, in order and of its name.
    int32_t AddControlsForParams();
    KCAutomationControl* GetAutomationControl(size_t index) const noexcept {
        return index < m_controls.size() ? m_controls[index].get() : nullptr;
    }
    size_t GetNumAutomationControllers() const noexcept { return m_controls.size(); }
    /// The first whose name equals `name` byte by byte.
    KCAutomationControl* GetAutomationControlByName(const char* name) const noexcept;
    size_t GetControlIndexByName(const char* name) const noexcept;
    size_t GetControlIndex(const KCAutomationControl* control) const noexcept;
    /// The one control that this parameter leads by itself: registrations that only highlight, or that automation
    /// leaves alone, do not count. Null when two count: it could not be said whose the gesture is.
    KCAutomationControl* GetAutomationControlByLeadParamID(size_t paramIndex) const noexcept;
    void GetControlNameOfLength(size_t index, KCFixedStringBase& out, size_t maxLength) const noexcept;

    // Host
    // ---------------------------------------------------------------------------------------------------------
    int32_t GetControlAutomationInfo(size_t index, sCONTROL_AUTOMATION_INFO& info) const;
    int32_t SetAutomationRefCons(size_t index, int64_t refCon1, int64_t refCon2) noexcept;
    int64_t GetAutomationRefCon1(size_t index) const noexcept; // 0 past the end
    int64_t GetAutomationRefCon2(size_t index) const noexcept;
    int32_t GetAutomationRefCons(size_t index, int64_t& refCon1, int64_t& refCon2) const noexcept;
    /// The chain to be executed; null also when nothing changed. Nothing is echoed to the host.
    BUFFER_HEADER* SetControllerValue(size_t index, double value);
    int32_t TranslateController(size_t index, double value, KCFixedStringBase& text, double& realWorld) const;
    /// The gesture of a control, as the host sees it. False where nothing was sent.
    bool Touch(size_t index);
    bool ReleaseTouch(size_t index);
    /// Tells the host the value of the control that the parameter leads.
    void NotifyParamValue(size_t paramIndex, double value);
    /// Calls the host with selector 0 (execute), then 4 (dispose), once each; without a host the blocks just go
    /// back. The chain is null afterwards.
    void ExecuteAndDisposeBuffer(BUFFER_HEADER*& buffer);

    // MIDI
    // ---------------------------------------------------------------------------------------------------------
    /// Everything that the event means to the controls. Always 0.
    int32_t MidiProcessControlChange(const kvMIDI::KorvoMidiEvent& event);
    /// The control ID of every control becomes -1.
    void ClearMidiControlsAttachment() noexcept;
    int32_t DetachControlFromMIDI(size_t index) noexcept; // one control, mapping and learn mode included
    /// Attaches a control that has no control ID, and ends its learn mode. Notes are for stepped leads only: others
    /// stay as they are, as attached ones do.
    void AttachMIDIToLearnMode(int32_t eventType, int32_t controlID, size_t index);
    /// The first control in learn mode, or kNoControl.
    size_t WhichControlInMIDILearn() const noexcept;
    /// Fills `indexes` with the controls that an event of this type and ID drives, in list order; how many there
    /// are, which may be more than there is room for.
    size_t GetMIDIEventControls(int32_t eventType, int32_t controlID, std::span<size_t> indexes) const noexcept;
    /// The first control that the event drives, and the next one after a control of the same event; kNoControl at
    /// the end. A look into a table.
    size_t FirstMIDIEventControl(const kvMIDI::KorvoMidiEvent& event) const noexcept {
        return AsIndex(MidiIndex().first[event.GetStatus() >> 4][event.GetData1() & 0x7F]);
    }
    size_t NextMIDIEventControl(size_t index) const noexcept {
        const sMIDI_INDEX& midi = MidiIndex();
        return index < midi.next.size() ? AsIndex(midi.next[index]) : kNoControl;
    }
    /// All controls of that control's MIDI group take over what it hears, with its mapping; how many did.
    size_t SyncronizeMidiGroup(size_t index) noexcept;
    int32_t ControlLedStateFromMap(size_t index, int32_t value) const noexcept; // -1 without one
    /// Controls with a control ID, in list order.
    std::vector<sMIDI_ATTACHMENT> GetMIDIAttachments() const;
    /// A control's attachment has changed: called by the control.
    void OnMidiAttachmentChanged() noexcept { m_isMidiIndexStale = true; }

    // Presets
    // --------------------------------------------------------------------------------------------------------
    /// Adds <AutomationControls><Control Name="…" Index="…"><MIDI …/></Control>…</AutomationControls>, in place of
    /// one that is there: the controls that hear something.
    int32_t SaveControlsToPreset(KCXMLElement& preset) const;
    /// Takes the attachments over, by name; controls that the element does not name are detached. Without the
    /// element everything stays. What has no meaning is reported and left out.
    int32_t LoadControlsFromPreset(const KCXMLElement& preset, Problems& problems);

    // The description: what has no meaning is reported with its line, and left out
    // ------------------------------------
    /// The root element of "GUIXML".
    int32_t ReadFromXML(const KCXMLElement& root, Problems& problems);
    int32_t ReadXMLControlsList(const KCXMLElement& list, Problems& problems);
    int32_t ReadXMLControl(const KCXMLElement& element, Problems& problems);
    int32_t ReadXMLControlOrderList(const KCXMLElement& list, Problems& problems);
    /// One set of a template's controls for every sub-view that names the template. Names get the element's number,
    /// from 1; parameters are those of the "Array" of that number, or as many "Stride" further on.
    int32_t LinkSubViewControlsWithControlsTemplate(const KCXMLElement& root, Problems& problems);
    /// Names of "ControlOrder" elements, and of those of the list.
    const std::vector<KCFixedString<127>>& GetRequestedOrder() const noexcept { return m_requestedOrder; }
    bool IsControlOrderIgnored() const noexcept { return m_isOrderIgnored; }
    /// Whether the controls stand in the requested order; true where none is requested. "Master Bypass" is left out
    /// on both sides: a host may bring it, and where it stands is then not the plug-in's.
    bool IsInRequestedOrder() const;
    /// Both orders as text, and whether they differ.
    void PrintAutomationControlOrder(std::string& text) const;
    /// That text as NAME_ControlDump.txt in the folder where the user's programs keep logs, KorvoLib/Logs. NAME is
    /// the plug-in's ("PluginName" of the algorithm's key values), otherwise "KorvoLib". 0 or an error of FM.
    int32_t DumpAutomationControlOrder() const;

    // Page tables
    // ------------------------------------------------------------------------------------------------------
    /// Those of the description.
    const std::vector<sPAGE_TABLE>& GetPageTables() const noexcept { return m_pageTables; }
    /// Adds a "PTLayout" with tables of 8, 16 and 32 controls a page, in list order; the first is "PageTable 1".
    int32_t WriteDefaultPageTablesToXML(KCXMLElement& parent) const;
    /// Adds the "DiscCtrls" of a table: the stepped controls, with their number of states.
    int32_t WriteDefaultPageTablesDiscCtrlsToXML(KCXMLElement& table) const;
    /// The controls of a saved page, in order: every "cCONTROLLER" by its "Name", or its "CtrlID" where there is no
    /// name. A control that is no longer there is reported and leaves its place empty.
    int32_t ReadXMLControlsListForSavedPageTable(const KCXMLElement& page, std::vector<size_t>& controls,
                                                 Problems& problems) const;

  private:
    // Which controls hear what: the first of each list, by the event's upper status half and data 1, and the next
    // of the same event for every control. A pitch bend has no number, so that its row is the same all along. Made
    // anew when an attachment has changed, without allocating.
    static constexpr size_t kNumStatusHalves = 16, kNumDataValues = 128;
    static constexpr int32_t kNobody = -1; // becomes kNoControl as an index
    struct sMIDI_INDEX {
        std::array<std::array<int32_t, kNumDataValues>, kNumStatusHalves> first;
        std::vector<int32_t> next; // one for each control
        int32_t learning = kNobody;
        uint32_t generation = 0; // another one each time it is made
    };

    void RebuildMidiIndex() const noexcept;
    const sMIDI_INDEX& MidiIndex() const noexcept {
        if (m_isMidiIndexStale)
            RebuildMidiIndex();
        return m_midiIndex;
    }
    static size_t AsIndex(int32_t entry) noexcept { return static_cast<size_t>(entry); }
    int32_t PlaceNew(ControlPtr control, size_t index);
    void DestroyControls() noexcept;
    bool IsOwn(const KCAutomationControl* control) const noexcept { return control->m_manager == this; }

    size_t FirstBehind(size_t index, const kvMIDI::KorvoMidiEvent& event) const noexcept;
    void Learn(const kvMIDI::KorvoMidiEvent& event, KCAutomationControl& control);
    void Drive(const kvMIDI::KorvoMidiEvent& event, KCAutomationControl& control);
    void MoveByMidi(KCAutomationControl& control, double value);

    int32_t ReadDescription(const char* xml, Problems& problems);
    int32_t AddReadControl(ControlPtr control, const KCXMLElement& element, Problems& problems);
    int32_t ReadTemplateBatches(const KCXMLElement& root, Problems& problems);
    int32_t AddFromTemplate(const KCXMLElement& controlTemplate, size_t element, size_t stride, Problems& problems);
    std::vector<KCFixedString<127>> GetActualOrder() const;
    // The first control of each name. For readers of lists that may be long; valid until a control is renamed.
    using NameIndex = std::unordered_map<std::string_view, size_t>;
    NameIndex IndexNames() const;
    size_t FindPageEntry(const KCXMLElement& entry, const NameIndex& names) const noexcept;
    KCAutomationControl* FindPresetEntry(const KCXMLElement& entry, const NameIndex& names) const noexcept;
    int32_t ReadPage(const KCXMLElement& page, const NameIndex& names, std::vector<size_t>& controls,
                     Problems& problems) const;
    int32_t ReadPageTables(const KCXMLElement& layout, Problems& problems);
    int32_t ReadPageTable(const KCXMLElement& element, const NameIndex& names, Problems& problems);
    int32_t WriteDefaultPageTable(KCXMLElement& tables, int32_t number, size_t pageSize) const;

    cALGORITHM* m_algorithm = nullptr;
    std::vector<ControlPtr> m_controls;
    bool m_isInitialised = false;
    bool m_isOrderIgnored = false;
    std::vector<KCFixedString<127>> m_requestedOrder;
    std::vector<sPAGE_TABLE> m_pageTables;
    std::set<KCFixedString<127>> m_readNames; // of the description's controls; empty once it is read
    mutable sMIDI_INDEX m_midiIndex;
    mutable bool m_isMidiIndexStale = true;
};

} // namespace kvKorvoV12_9_0_320
