#include <korvolib/control/automation_manager.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include <korvolib/control/automation_test_internal.h>
#include <korvolib/utilities/fm/fm_test_internal.h>

namespace {

using namespace kvTest;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::string Controls(std::initializer_list<const char*> names) {
    std::string text = "<Control_List>";
    for (const char* name : names)
        text.append("<cCONTROLLER Name='").append(name).append("'/>");
    return text.append("</Control_List>");
}

std::string Order(std::initializer_list<const char*> names, const char* attributes = "") {
    std::string text = "<ControlOrder_List ";
    text.append(attributes).append(">");
    for (const char* name : names)
        text.append("<ControlOrder Name='").append(name).append("'/>");
    return text.append("</ControlOrder_List>");
}

// The user's logs are in a folder of the test's own.
class AutomationOrderTest : public testing::Test {
  protected:
    AutomationOrderTest() { ::setenv("XDG_STATE_HOME", m_folder.Text().c_str(), 1); }
    ~AutomationOrderTest() override { ::unsetenv("XDG_STATE_HOME"); }
    int32_t Read(const std::string& content) {
        std::string text = "<GUI>";
        text.append(content).append("</GUI>");
        algorithm.SetDescription("GUIXML", text.c_str());
        return algorithm.FinishCreate();
    }
    std::string Dump(const char* name = "KorvoLib_ControlDump.txt") const {
        std::ifstream file(std::filesystem::path(m_folder.Text()) / "KorvoLib" / "Logs" / name);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    HostedAlgorithm algorithm{ManyParams(20)};

  private:
    TempFolder m_folder;
};

TEST_F(AutomationOrderTest, ControlsInTheRequestedOrderLeaveNoFile) {
    EXPECT_EQ(Read(Controls({"A", "B"}) + Order({"A", "B"})), kErr_NoErr);
    EXPECT_TRUE(algorithm.Manager().IsInRequestedOrder());
    EXPECT_EQ(Dump(), "");
}

TEST_F(AutomationOrderTest, AnotherOrderIsWrittenDownForWhoeverBuildsThePlugIn) {
    EXPECT_EQ(Read(Controls({"B", "A"}) + Order({"A", "B"})), kErr_NoErr);
    EXPECT_EQ(Dump(), "ControlDump\n"
                      "Requested Control Order:\nA\nB\n"
                      "Actual Control Order:\nB\nA\n"
                      "Inconsistency Observed:\n"
                      "Requested Control Order is different from Actual Control Order\n"
                      "Must be fixed in GUI.xml\n");
    EXPECT_STREQ(algorithm.GetAutomationControl(0)->GetNamePtr(), "B"); // noticed, not changed
}

TEST_F(AutomationOrderTest, AMissingControlIsAnotherOrder) {
    EXPECT_EQ(Read(Controls({"A"}) + Order({"A", "B"})), kErr_NoErr);
    EXPECT_THAT(Dump(), HasSubstr("Must be fixed"));
}

TEST_F(AutomationOrderTest, AnIgnoredOrderSaysSo) {
    EXPECT_EQ(Read(Controls({"B", "A"}) + Order({"A", "B"}, "IgnoreControlOrder='true'")), kErr_NoErr);
    EXPECT_TRUE(algorithm.Manager().IsControlOrderIgnored());
    EXPECT_THAT(Dump(), HasSubstr("Actual Control Order:\nB\nA\nControl Order is ignored.\n"));
    EXPECT_EQ(Dump().find("Inconsistency"), std::string::npos);
}

TEST_F(AutomationOrderTest, MasterBypassMayStandAnywhere) {
    EXPECT_EQ(Read(Controls({"A", "Master Bypass", "B"}) + Order({"Master Bypass", "A", "B"})), kErr_NoErr);
    EXPECT_EQ(Dump(), "");
}

TEST_F(AutomationOrderTest, TheFileBearsThePlugInsNameWithoutWhatFilesCannot) {
    EXPECT_EQ(Read(Controls({"A"})), kErr_NoErr);
    algorithm.GetKeyValues().SetText("PluginName", "../EQ\n3");
    EXPECT_EQ(algorithm.Manager().DumpAutomationControlOrder(), kErr_NoErr);
    EXPECT_EQ(Dump("KorvoLib_ControlDump.txt"),
              "ControlDump\nRequested Control Order:\nActual Control Order:\nA\n");
    algorithm.GetKeyValues().SetText("PluginName", "E/Q");
    EXPECT_EQ(algorithm.Manager().DumpAutomationControlOrder(), kErr_NoErr);
    EXPECT_THAT(Dump("E_Q_ControlDump.txt"), HasSubstr("Actual"));
}

// ---- Page tables
// --------------------------------------------------------------------------------------------------------

class AutomationPagesTest : public testing::Test {
  protected:
    AutomationPagesTest() {
        algorithm.AddParam(ToggleParam("Mode", 3));
        EXPECT_EQ(algorithm.FinishCreate(), kErr_NoErr);
        EXPECT_EQ(algorithm.Manager().AddControlsForParams(), kErr_NoErr);
    }
    HostedAlgorithm algorithm{ManyParams(16)};
    KCAutomationManager::Problems problems;
};

TEST_F(AutomationPagesTest, TheDefaultTablesHoldEveryControlInOrder) {
    KCXMLElement root;
    ASSERT_EQ(root.SetName("GUI"), kErr_NoErr);
    ASSERT_EQ(algorithm.Manager().WriteDefaultPageTablesToXML(root), kErr_NoErr);
    const KCXMLElement* const table = root.FindChild("PTLayout")->FindChild("PgTL")->FindChild("PageTable");
    EXPECT_STREQ(table->GetAttribute("name"), "PageTable 1");
    EXPECT_STREQ(table->GetAttribute("pgsz"), "8");
    EXPECT_STREQ(table->GetAttribute("num"), "3");
    const KCXMLElement* const page = table->FindChild("Page");
    EXPECT_EQ(page->GetChildCount(), 8u);
    EXPECT_STREQ(page->GetFirstChild()->GetAttribute("Name"), "P0");
    EXPECT_EQ(table->FindChild("DiscCtrls")->GetChildCount(), 1u);
    EXPECT_STREQ(table->FindChild("DiscCtrls")->GetFirstChild()->GetAttribute("num"), "3");
    ASSERT_EQ(algorithm.Manager().ReadFromXML(root, problems), kErr_NoErr);
    ASSERT_EQ(algorithm.Manager().GetPageTables().size(), 3u);
    const sPAGE_TABLE& read = algorithm.Manager().GetPageTables()[1];
    EXPECT_STREQ(read.name.c_str(), "PageTable 2");
    EXPECT_EQ(read.pageSize, 16);
    EXPECT_FALSE(read.isCustom);
    ASSERT_EQ(read.pages.size(), 2u);
    EXPECT_THAT(read.pages[1], ElementsAre(16u));
}

TEST_F(AutomationPagesTest, ASavedPageFindsItsControlsByNameOrNumber) {
    algorithm.GetAutomationControl(5)->SetCtrlID(77);
    const KCXMLElement page = Parsed("<Page><cCONTROLLER Name='P2'/><cCONTROLLER CtrlID='77'/>"
                                     "<cCONTROLLER Name='Gone'/><cCONTROLLER/></Page>");
    std::vector<size_t> controls = {1, 2, 3};
    EXPECT_EQ(algorithm.Manager().ReadXMLControlsListForSavedPageTable(page, controls, problems),
              kErr_BadDescription);
    EXPECT_THAT(controls, ElementsAre(2u, 5u, kNoControl, kNoControl));
    EXPECT_EQ(problems.size(), 2u);
}

TEST_F(AutomationPagesTest, CustomTablesAreKnownAsSuch) {
    ASSERT_EQ(
        algorithm.Manager().ReadFromXML(
            Parsed("<GUI><PTLayout><PgTL><PageTable name='Mine' type='Custom' pgsz='0'/></PgTL></PTLayout></GUI>"),
            problems),
        kErr_NoErr);
    EXPECT_TRUE(algorithm.Manager().GetPageTables()[0].isCustom);
    EXPECT_EQ(problems.size(), 1u); // a page of no controls
}

// ---- Presets
// --------------------------------------------------------------------------------------------------------------

TEST_F(AutomationPagesTest, AttachmentsComeBackFromAPresetByName) {
    KCAutomationManager& manager = algorithm.Manager();
    manager.AttachMIDIToLearnMode(4, 7, 3);
    manager.GetAutomationControl(3)->SetMIDIMapping({1.5, 2.5, 3.0, kvMIDI::kMidiTakeOver_PickUp});
    manager.GetAutomationControl(4)->SetMIDIGroup(2);
    KCXMLElement preset;
    ASSERT_EQ(preset.SetName("Preset"), kErr_NoErr);
    ASSERT_EQ(manager.SaveControlsToPreset(preset), kErr_NoErr);
    const auto saved = manager.GetMIDIAttachments();
    manager.ClearMidiControlsAttachment();
    manager.AttachMIDIToLearnMode(4, 9, 8);
    EXPECT_EQ(manager.LoadControlsFromPreset(preset, problems), kErr_NoErr);
    EXPECT_EQ(manager.GetMIDIAttachments(), saved);
    EXPECT_EQ(manager.GetAutomationControl(4)->GetMIDIGroup(), 2);
    ASSERT_EQ(manager.SaveControlsToPreset(preset), kErr_NoErr);
    EXPECT_EQ(preset.GetChildCount(), 1u); // in place of the one before
}

TEST_F(AutomationPagesTest, APresetWithoutTheElementChangesNothing) {
    KCAutomationManager& manager = algorithm.Manager();
    manager.AttachMIDIToLearnMode(4, 7, 3);
    EXPECT_EQ(manager.LoadControlsFromPreset(Parsed("<Preset/>"), problems), kErr_NoErr);
    EXPECT_EQ(manager.GetMIDIAttachments().size(), 1u);
    EXPECT_EQ(
        manager.LoadControlsFromPreset(
            Parsed("<Preset><AutomationControls><Control Name='X'/><Control><MIDI/></Control></AutomationControls>"
                   "</Preset>"),
            problems),
        kErr_BadDescription);
    EXPECT_EQ(problems.size(), 2u);
    EXPECT_THAT(manager.GetMIDIAttachments(), IsEmpty());
}

} // namespace
