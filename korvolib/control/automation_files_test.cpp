// What automation writes, where names, folders and attachments are not what one hopes for.
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
using testing::IsEmpty;

class AutomationFilesTest : public testing::Test {
  protected:
    AutomationFilesTest() { ::setenv("XDG_STATE_HOME", folder.Text().c_str(), 1); }
    ~AutomationFilesTest() override { ::unsetenv("XDG_STATE_HOME"); }
    int32_t Read(const std::string& content) {
        std::string text = "<GUI>";
        algorithm.SetDescription("GUIXML", text.append(content).append("</GUI>").c_str());
        return algorithm.FinishCreate();
    }
    std::vector<std::string> Logs() const {
        std::vector<std::string> names;
        for (const auto& entry :
             std::filesystem::directory_iterator(std::filesystem::path(folder.Text()) / "KorvoLib" / "Logs"))
            names.push_back(entry.path().filename().string());
        return names;
    }
    KCAutomationManager& manager() { return algorithm.Manager(); }
    TempFolder folder;
    HostedAlgorithm algorithm{ManyParams(4)};
    KCAutomationManager::Problems problems;
};

constexpr const char* kWrongOrder = "<Control_List><cCONTROLLER Name='A'/></Control_List>"
                                    "<ControlOrder_List><ControlOrder Name='B'/></ControlOrder_List>";

// ---- The order's file

TEST_F(AutomationFilesTest, TheLongestPlugInNameKeepsTheEndOfTheFileName) {
    EXPECT_EQ(Read(""), kErr_NoErr);
    algorithm.GetKeyValues().SetText("PluginName", std::string(127, 'n').c_str());
    EXPECT_EQ(manager().DumpAutomationControlOrder(), kErr_NoErr);
    EXPECT_THAT(Logs(), ElementsAre(testing::EndsWith("n_ControlDump.txt")));
}

TEST_F(AutomationFilesTest, AnOrderThatCannotBeWrittenHurtsNobody) {
    std::ofstream(std::filesystem::path(folder.Text()) / "KorvoLib") << "a file where a folder should be";
    EXPECT_EQ(Read(kWrongOrder), kErr_NoErr);
    EXPECT_STREQ(algorithm.GetAutomationControl(0)->GetNamePtr(), "A");
    EXPECT_FALSE(manager().IsInRequestedOrder());
    EXPECT_NE(manager().DumpAutomationControlOrder(), kErr_NoErr);
}

TEST_F(AutomationFilesTest, ARequestedOrderIsComparedByteForByte) {
    EXPECT_EQ(Read("<Control_List><cCONTROLLER Name='gain'/></Control_List>"
                   "<ControlOrder_List><ControlOrder Name='Gain'/></ControlOrder_List>"),
              kErr_NoErr);
    EXPECT_FALSE(manager().IsInRequestedOrder());
}

// ---- Presets

TEST_F(AutomationFilesTest, NamesThatXmlCannotCarryKeepTheirAttachments) {
    EXPECT_EQ(Read(""), kErr_NoErr);
    algorithm.AddControl("W\xC3", {0}); // cut in the middle of a character
    algorithm.AddControl("\x01", {1});
    algorithm.AddControl("Plain", {2});
    manager().AttachMIDIToLearnMode(4, 7, 0);
    manager().AttachMIDIToLearnMode(4, 9, 2);
    KCXMLElement preset;
    ASSERT_EQ(preset.SetName("Preset"), kErr_NoErr);
    ASSERT_EQ(manager().SaveControlsToPreset(preset), kErr_NoErr);
    const auto saved = manager().GetMIDIAttachments();
    manager().ClearMidiControlsAttachment();
    EXPECT_EQ(manager().LoadControlsFromPreset(preset, problems), kErr_NoErr);
    EXPECT_EQ(manager().GetMIDIAttachments(), saved);
    EXPECT_EQ(manager().WriteDefaultPageTablesToXML(preset), kErr_NoErr);
}

TEST_F(AutomationFilesTest, WhatNeverHappensIsNotSaved) {
    EXPECT_EQ(Read(""), kErr_NoErr);
    for (const size_t param : {0U, 1U, 2U})
        algorithm.AddControl(algorithm.GetParamName(param).c_str(), {param});
    manager().AttachMIDIToLearnMode(3, 7, 0);               // key pressure drives nothing
    manager().GetAutomationControl(1)->SetMIDIControlID(7); // no event type
    manager().AttachMIDIToLearnMode(4, 7, 2);
    KCXMLElement preset;
    ASSERT_EQ(preset.SetName("Preset"), kErr_NoErr);
    ASSERT_EQ(manager().SaveControlsToPreset(preset), kErr_NoErr);
    EXPECT_EQ(preset.FindChild("AutomationControls")->GetChildCount(), 1u);
    EXPECT_EQ(manager().LoadControlsFromPreset(preset, problems), kErr_NoErr);
    EXPECT_THAT(problems, IsEmpty());
    EXPECT_EQ(manager().GetMIDIAttachments().size(), 1u);
}

TEST_F(AutomationFilesTest, ControlsOfOneNameEachKeepTheirAttachment) {
    EXPECT_EQ(Read(""), kErr_NoErr);
    for (const size_t param : {0U, 1U, 2U})
        algorithm.AddControl("Same", {param});
    manager().AttachMIDIToLearnMode(4, 7, 0);
    manager().AttachMIDIToLearnMode(4, 8, 2);
    KCXMLElement preset;
    ASSERT_EQ(preset.SetName("Preset"), kErr_NoErr);
    ASSERT_EQ(manager().SaveControlsToPreset(preset), kErr_NoErr);
    const auto saved = manager().GetMIDIAttachments();
    manager().ClearMidiControlsAttachment();
    EXPECT_EQ(manager().LoadControlsFromPreset(preset, problems), kErr_NoErr);
    EXPECT_EQ(manager().GetMIDIAttachments(), saved);
}

// ---- Hostile descriptions

TEST_F(AutomationFilesTest, AnythingMayStandInADescription) {
    const std::string longName(300, 'n');
    EXPECT_EQ(Read("<Control_List><cCONTROLLER Name='" + longName + R"(' ID='99999999999' CtrlID='x' Lead='-1'
        AutomationType='1e9'><ParameterList/><MIDI/><LedMap><Led/><Led Value='1'/></LedMap></cCONTROLLER>
        <cCONTROLLER Name='B' Lead='2147483647'><ParameterList><Parameter Name='P0'/></ParameterList>
        </cCONTROLLER></Control_List>
        <Control_Template_List><Control_Template/></Control_Template_List>
        <Control_Template_Batch_List><Control_Template_Batch Template='' Count='1025'/>
        <Control_Template_Batch Count='-1'/></Control_Template_Batch_List>
        <SubViewRect_List><SubViewRect Template='none' Element='-5'/></SubViewRect_List>
        <ControlOrder_List IgnoreControlOrder='maybe'><ControlOrder/></ControlOrder_List>
        <PTLayout><PgTL><PageTable pgsz='-1'><Page><cCONTROLLER CtrlID='9999999999'/></Page></PageTable></PgTL>
        </PTLayout>)"),
              kErr_BadDescription);
    ASSERT_EQ(manager().GetNumAutomationControllers(), 2u);
    EXPECT_EQ(std::string(algorithm.GetAutomationControl(0)->GetNamePtr()), std::string(127, 'n'));
    EXPECT_FALSE(algorithm.GetAutomationControl(1)->HasLead());
    EXPECT_EQ(manager().SetControllerValue(1, 5.0), nullptr);
    EXPECT_FALSE(manager().IsControlOrderIgnored());
}

} // namespace
