#include "parameter_text.h"

#include <algorithm>

#include <korvolib/alg/param_text.h>

#include "text.h"
#include "text_table.h"

namespace kvKorvoV12_9_0_320::kvHost {
namespace {

std::vector<sTABLE_COLUMN> Columns() {
    return {{"index", true}, {"name"}, {"scale"}, {"range"}, {"units"}, {"default", true}, {"steps", true}};
}

std::vector<std::string> Cells(const cALGORITHM& algorithm, size_t index) {
    const sCONTROL_PARAM& param = *algorithm.GetParam(index);
    return {std::to_string(index),
            param.GetName().c_str(),
            param.GetScaleType().c_str(),
            RangeText(param),
            param.GetUnitsString().c_str(),
            ValueText(param, param.StateToRealWorld(param.GetInitialState())),
            param.IsDiscrete() ? std::to_string(param.GetNumStates()) : "-"};
}

const char* StateText(const sLINK_GROUP_INFO& info) {
    return info.isAlwaysActive ? "always active" : info.isEnabled ? "enabled" : "disabled";
}

// Law, state and members.
std::vector<std::string> LinkCells(const cALGORITHM& algorithm, const sLINK_GROUP_INFO& info) {
    std::vector<std::string> names;
    for (const size_t member : info.members)
        names.emplace_back(algorithm.GetParamName(member).c_str());
    return {algorithm.GetLinkGroups()->GetLawName(info.law).c_str(), StateText(info), JoinedText(names, ", ")};
}

} // namespace

std::string ValueText(const KCParam_Base& param, double realWorld) {
    KCFixedString<127> text;
    FormatValueText(param, realWorld, text);
    return text.c_str();
}

double LastState(const KCParam_Base& param) {
    if (!param.IsDiscrete())
        return 1000.0;
    return std::clamp((param.GetNumStates() - 1) * param.GetStateStep(), 0.0, 1000.0);
}

std::string RangeText(const KCParam_Base& param) {
    if (param.GetScaleFunction() == nullptr)
        return {};
    return ValueText(param, param.StateToRealWorld(0.0)) + " … " +
           ValueText(param, param.StateToRealWorld(LastState(param)));
}

std::string ParameterTable(const cALGORITHM& algorithm) {
    const KCAlgorithmLock lock(algorithm);
    KCTextTable table(Columns());
    for (size_t index = 0; index < algorithm.GetNumParams(); ++index)
        table.AddRow(Cells(algorithm, index));
    return table.ToText();
}

std::string LinkGroupTable(const cALGORITHM& algorithm) {
    const KCAlgorithmLock lock(algorithm);
    const KCLinkGroups* const groups = algorithm.GetLinkGroups();
    if (groups == nullptr || groups->IsEmpty())
        return {};
    KCTextTable table({{"link group", true}, {"law"}, {"state"}, {"members"}});
    for (const auto& [number, info] : groups->GetLinkGroupInfo()) {
        std::vector<std::string> cells = LinkCells(algorithm, info);
        cells.insert(cells.begin(), std::to_string(number));
        table.AddRow(std::move(cells));
    }
    std::string text("\n");
    return text += table.ToText();
}

std::string LinkGroupText(const cALGORITHM& algorithm, int32_t group) {
    const KCLinkGroups::GroupMap& groups = algorithm.GetLinkGroups()->GetLinkGroupInfo();
    const auto found = groups.find(group);
    if (found == groups.end())
        return {};
    const std::vector<std::string> cells = LinkCells(algorithm, found->second);
    return cells[0] + ", " + cells[1] + ": " + cells[2];
}

std::string ParameterTableWithValues(const cALGORITHM& algorithm) {
    const KCAlgorithmLock lock(algorithm);
    std::vector<sTABLE_COLUMN> columns = Columns();
    columns.push_back({"setup A", true});
    columns.push_back({"setup B", true});
    KCTextTable table(columns);
    for (size_t index = 0; index < algorithm.GetNumParams(); ++index) {
        const sCONTROL_PARAM& param = *algorithm.GetParam(index);
        std::vector<std::string> cells = Cells(algorithm, index);
        cells.push_back(ValueText(param, param.GetRealWorld(kPluginSetup_A)));
        cells.push_back(ValueText(param, param.GetRealWorld(kPluginSetup_B)));
        table.AddRow(cells);
    }
    return table.ToText();
}

} // namespace kvKorvoV12_9_0_320::kvHost
