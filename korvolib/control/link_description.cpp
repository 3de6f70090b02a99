// Link groups as a description tells of them, beside the parameters:
//
//   <LinkGroups>
//     <LinkGroup Number="1" Law="Relative" Enabled="true" AlwaysActive="false">
//       <Member Name="Left Trim"/>
//       <Member Name="Right Trim"/>
//     </LinkGroup>
//   </LinkGroups>

#include <korvolib/control/link_groups.h>
#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/xml/xml_element.h>

namespace kvKorvoV12_9_0_320 {

namespace {

class ProblemList {
  public:
    explicit ProblemList(std::vector<sDESCRIPTION_PROBLEM>& problems) : m_problems(problems) {}
    // The parts of the message follow each other.
    void Add(const KCXMLElement& element, const char* first, const char* quoted = nullptr, const char* last = "") {
        sDESCRIPTION_PROBLEM problem;
        problem.Line = element.GetLine();
        problem.Text << first;
        if (quoted != nullptr)
            problem.Text << " \"" << quoted << "\"" << last;
        m_problems.push_back(problem);
    }

  private:
    std::vector<sDESCRIPTION_PROBLEM>& m_problems;
};

bool ReadFlag(const KCXMLElement& element, const char* name, bool otherwise, ProblemList& problems) {
    bool value = otherwise;
    if (element.ReadAttribute(name, value) == KEXMLValue::Malformed)
        problems.Add(element, "a link group's flag is true or false, not", element.GetAttribute(name));
    return value;
}

size_t IndexOfName(const std::vector<sCONTROL_PARAM>& params, const char* name) {
    for (size_t index = 0; index < params.size(); ++index)
        if (params[index].GetName() == name)
            return index;
    return KCLinkGroups::kNoSource;
}

void ReadMembers(const KCXMLElement& element, int32_t number, KCLinkGroups& groups, ProblemList& problems) {
    for (const KCXMLElement& member : element.Children("Member")) {
        const char* const name = member.GetAttribute("Name", "");
        const size_t index = IndexOfName(groups.GetParams(), name);
        if (index == KCLinkGroups::kNoSource)
            problems.Add(member, "link group member: no parameter is named", name);
        else if (!groups.AddMember(number, index))
            problems.Add(member, "link group member: listed twice:", name);
    }
    if (groups.GetLinkGroupInfo().at(number).members.size() < 2)
        problems.Add(element, "a link group needs two members to link anything");
}

void ReadGroup(const KCXMLElement& element, KCLinkGroups& groups, ProblemList& problems) {
    int32_t number = 0;
    if (element.ReadAttribute("Number", number) != KEXMLValue::Found) {
        problems.Add(element, "a link group needs a whole number, not", element.GetAttribute("Number", ""));
        return;
    }
    if (groups.GetLinkGroupInfo().contains(number)) {
        problems.Add(element, "a link group of this number is there already:", element.GetAttribute("Number"));
        return;
    }
    const char* const law = element.GetAttribute("Law", "");
    const bool isEnabled = ReadFlag(element, "Enabled", true, problems);
    const bool isAlwaysActive = ReadFlag(element, "AlwaysActive", false, problems);
    if (groups.SetGroupInfo(number, 0, 0.0, KCLinkGroups::LawName(law), isEnabled, isAlwaysActive) != kErr_NoErr)
        problems.Add(element, "no link law is named", law, ": the group links nothing");
    ReadMembers(element, number, groups, problems);
}

} // namespace

void KCLinkGroups::ReadFromXML(const KCXMLElement& element, std::vector<sDESCRIPTION_PROBLEM>& problems) {
    ProblemList list(problems);
    for (const KCXMLElement& child : element.Children()) {
        if (child.HasName("LinkGroup"))
            ReadGroup(child, *this, list);
        else
            list.Add(child, "expected a LinkGroup, found", child.GetName());
    }
}

int32_t KCLinkGroups::WriteToXML(KCXMLElement& element) const {
    for (const auto& [number, info] : m_groups) {
        KCXMLElement* const group = element.AddChild("LinkGroup");
        if (group == nullptr)
            return kErr_AllocationFailed;
        int32_t result = group->SetAttribute("Number", number);
        if (const LawName law = GetLawName(info.law); !law.empty() && result == kErr_NoErr)
            result = group->SetAttribute("Law", law.c_str());
        if (result == kErr_NoErr)
            result = group->SetAttribute("Enabled", info.isEnabled);
        if (result == kErr_NoErr)
            result = group->SetAttribute("AlwaysActive", info.isAlwaysActive);
        for (const size_t member : info.members) {
            KCXMLElement* const entry = group->AddChild("Member");
            if (entry == nullptr)
                return kErr_AllocationFailed;
            if (result == kErr_NoErr)
                result = entry->SetAttribute("Name", m_params[member].GetName().c_str());
        }
        if (result != kErr_NoErr)
            return result;
    }
    return kErr_NoErr;
}

} // namespace kvKorvoV12_9_0_320
