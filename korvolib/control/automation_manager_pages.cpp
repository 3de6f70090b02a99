// Page tables: what stands where on a control surface that shows a few controls at a time.
//
//   <PTLayout> <PgTL>
//     <PageTable name="PageTable 1" type="Default" pgsz="8" num="2">
//       <Page num="1"> <cCONTROLLER Name="Gain" CtrlID="1"/> … </Page> …
//       <DiscCtrls num="1"> <cCONTROLLER Name="Mode" num="3"/> </DiscCtrls>
//     </PageTable>
//   </PgTL> </PTLayout>
//
// "pgsz" is the number of controls on a page, "num" that of pages, a page's own, or that of a control's states.

#include <korvolib/control/automation_manager.h>

#include <algorithm>
#include <cstring>

#include <korvolib/gui/attribute_writer_internal.h>
#include <korvolib/gui/description_numbers_internal.h>
#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/xml/xml_element.h>
#include <korvolib/utilities/xml/xml_text_internal.h>

namespace kvKorvoV12_9_0_320 {

using namespace GUIDescription;

namespace {

constexpr size_t kDefaultPageSizes[] = {8, 16, 32};
constexpr int32_t kLargestPage = 1024;
constexpr const char* kCustom = "Custom";

int32_t AddControlEntry(KCXMLElement& parent, const KCAutomationControl& control, int32_t numStates) {
    KCXMLElement* const entry = parent.AddChild("cCONTROLLER");
    if (entry == nullptr)
        return kErr_AllocationFailed;
    AttributeWriter writer(*entry);
    writer.Set("Name", XMLTextOf(control.GetName())).SetUnless(-1, "CtrlID", control.GetCtrlID());
    return writer.SetUnless(0, "num", numStates).GetResult();
}

} // namespace

int32_t KCAutomationManager::WriteDefaultPageTablesToXML(KCXMLElement& parent) const {
    KCXMLElement* const layout = parent.AddChild("PTLayout");
    KCXMLElement* const tables = layout == nullptr ? nullptr : layout->AddChild("PgTL");
    if (tables == nullptr)
        return kErr_AllocationFailed;
    int32_t result = kErr_NoErr, number = 0;
    for (const size_t pageSize : kDefaultPageSizes)
        if (result == kErr_NoErr)
            result = WriteDefaultPageTable(*tables, ++number, pageSize);
    return result;
}

int32_t KCAutomationManager::WriteDefaultPageTable(KCXMLElement& tables, int32_t number, size_t pageSize) const {
    KCXMLElement* const table = tables.AddChild("PageTable");
    if (table == nullptr)
        return kErr_AllocationFailed;
    KCFixedString<31> name("PageTable ");
    name << number;
    AttributeWriter writer(*table);
    writer.Set("name", name).Set("type", "Default").Set("pgsz", static_cast<int32_t>(pageSize));
    int32_t result =
        writer.Set("num", static_cast<int32_t>((m_controls.size() + pageSize - 1) / pageSize)).GetResult();
    KCXMLElement* page = nullptr;
    for (size_t index = 0; index < m_controls.size() && result == kErr_NoErr; ++index) {
        if (index % pageSize == 0) {
            page = table->AddChild("Page");
            result = page == nullptr ? kErr_AllocationFailed
                                     : page->SetAttribute("num", static_cast<int32_t>(index / pageSize + 1));
        }
        if (result == kErr_NoErr)
            result = AddControlEntry(*page, *m_controls[index], 0);
    }
    return result == kErr_NoErr ? WriteDefaultPageTablesDiscCtrlsToXML(*table) : result;
}

int32_t KCAutomationManager::WriteDefaultPageTablesDiscCtrlsToXML(KCXMLElement& table) const {
    KCXMLElement* const list = table.AddChild("DiscCtrls");
    if (list == nullptr)
        return kErr_AllocationFailed;
    int32_t count = 0;
    for (const ControlPtr& control : m_controls) {
        if (!control->IsLeadStepped())
            continue;
        const int32_t numStates = control->GetAlgorithm()->GetParamNumStates(control->GetLeadParamIndex());
        if (const int32_t result = AddControlEntry(*list, *control, numStates); result != kErr_NoErr)
            return result;
        ++count;
    }
    return list->SetAttribute("num", count);
}

size_t KCAutomationManager::FindPageEntry(const KCXMLElement& entry, const NameIndex& names) const noexcept {
    if (const char* const name = entry.GetAttribute("Name")) {
        const auto named = names.find(name);
        return named == names.end() ? kNoControl : named->second;
    }
    int32_t id = -1;
    if (entry.ReadAttribute("CtrlID", id) != KEXMLValue::Found)
        return kNoControl;
    const auto found =
        std::ranges::find(m_controls, id, [](const ControlPtr& control) { return control->GetCtrlID(); });
    return found == m_controls.end() ? kNoControl : static_cast<size_t>(found - m_controls.begin());
}

int32_t KCAutomationManager::ReadXMLControlsListForSavedPageTable(const KCXMLElement& page,
                                                                  std::vector<size_t>& controls,
                                                                  Problems& problems) const {
    return ReadPage(page, IndexNames(), controls, problems);
}

int32_t KCAutomationManager::ReadPage(const KCXMLElement& page, const NameIndex& names,
                                      std::vector<size_t>& controls, Problems& problems) const {
    controls.clear();
    int32_t result = kErr_NoErr;
    for (const KCXMLElement& entry : page.Children("cCONTROLLER")) {
        if (controls.size() == kLargestPage)
            return kErr_LimitExceeded;
        controls.push_back(FindPageEntry(entry, names));
        if (controls.back() != kNoControl)
            continue;
        AddProblem(entry, "no control is named", entry.GetAttribute("Name", entry.GetAttribute("CtrlID", "")),
                   problems);
        result = kErr_BadDescription;
    }
    return result;
}

int32_t KCAutomationManager::ReadPageTables(const KCXMLElement& layout, Problems& problems) {
    const NameIndex names = IndexNames();
    int32_t result = kErr_NoErr;
    for (const KCXMLElement& tables : layout.Children("PgTL"))
        for (const KCXMLElement& table : tables.Children("PageTable")) {
            const int32_t read = ReadPageTable(table, names, problems);
            result = result == kErr_NoErr ? read : result;
        }
    return result;
}

int32_t KCAutomationManager::ReadPageTable(const KCXMLElement& element, const NameIndex& names,
                                           Problems& problems) {
    sPAGE_TABLE table;
    table.name = element.GetAttribute("name", "");
    table.isCustom = std::strcmp(element.GetAttribute("type", ""), kCustom) == 0;
    ReadWhole(element, "pgsz", 1, kLargestPage, table.pageSize, problems);
    int32_t result = kErr_NoErr;
    for (const KCXMLElement& page : element.Children("Page")) {
        const int32_t read = ReadPage(page, names, table.pages.emplace_back(), problems);
        result = result == kErr_NoErr ? read : result;
    }
    m_pageTables.push_back(std::move(table));
    return result;
}

} // namespace kvKorvoV12_9_0_320
