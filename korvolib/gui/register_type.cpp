#include <korvolib/gui/register_type.h>

#include <cstring>

namespace kvKorvoV12_9_0_320 {
namespace {

struct sTYPE_NAME {
    ERegisterType Type;
    const char* Name;
};

constexpr sTYPE_NAME kTypeNames[] = {
    {kRegister_Highlight, "Highlight"},
    {kRegister_DragVertical, "DragVertical"},
    {kRegister_DragHorizontal, "DragHorizontal"},
    {kRegister_Drag, "Drag"},
    {kRegister_Wheel, "Wheel"},
    {kRegister_Keys, "Keys"},
    {kRegister_NextOnPress, "NextOnPress"},
    {kRegister_PreviousOnPress, "PreviousOnPress"},
    {kRegister_SetOnPress, "SetOnPress"},
    {kRegister_SetOnRelease, "SetOnRelease"},
    {kRegister_Place, "Place"},
    {kRegister_ResetOnPress, "ResetOnPress"},
    {kRegister_ResetOnDoubleClick, "ResetOnDoubleClick"},
    {kRegister_Text, "Text"},
    {kRegister_Menu, "Menu"},
    {kRegister_SetOnHover, "SetOnHover"},
    {kRegister_Pinch, "Pinch"},
    {kRegister_DragAndDrop, "DragAndDrop"},
    {kRegister_Display, "Display"},
    {kRegister_Controller, "Controller"},
    {kRegister_NotByAutomation, "NotByAutomation"},
};

} // namespace

const char* RegisterTypeName(ERegisterType type) noexcept {
    for (const sTYPE_NAME& entry : kTypeNames)
        if (entry.Type == type)
            return entry.Name;
    return "";
}

bool RegisterTypeFromName(const char* name, ERegisterType& type) noexcept {
    if (name == nullptr)
        return false;
    for (const sTYPE_NAME& entry : kTypeNames)
        if (std::strcmp(entry.Name, name) == 0) {
            type = entry.Type;
            return true;
        }
    return false;
}

} // namespace kvKorvoV12_9_0_320
