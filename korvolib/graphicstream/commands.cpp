#include <korvolib/graphicstream/commands.h>

#include <array>
#include <iterator>
#include <string_view>

namespace kvKorvoV12_9_0_320::kvGS {

namespace {

#define KV_GS_CODE(identifier, ...) k##identifier,
constexpr uint32_t kCodes[] = {KV_GS_COMMANDS(KV_GS_CODE) KV_GS_NAMES(KV_GS_CODE)};
#undef KV_GS_CODE
constexpr size_t kNumNames = std::size(kCodes);

using NameTable = std::array<SGSName, kNumNames + 1>;

NameTable MakeNames() noexcept {
    NameTable names;
    size_t count = 0;
    const auto add = [&](uint32_t code, const char* displayName, const char* shortName) {
        names[count].code = code;
        names[count].displayName = displayName;
        names[count].shortName = shortName;
        ++count;
    };
#define KV_GS_ADD(identifier, display, shortName, code, record, tail) add(k##identifier, display, shortName);
    KV_GS_COMMANDS(KV_GS_ADD)
#undef KV_GS_ADD
#define KV_GS_ADD(identifier, display, code) add(k##identifier, display, "");
    KV_GS_NAMES(KV_GS_ADD)
#undef KV_GS_ADD
    return names;
}

// Reached through a function, so that another file's initialisation finds it filled; named here once more, so that
// it is filled when the library is loaded.
const NameTable& Names() noexcept {
    static const NameTable names = MakeNames();
    return names;
}
[[maybe_unused]] const NameTable& filledAtLoad = Names();

struct FlagName {
    uint32_t flag;
    std::string_view name;
};
constexpr FlagName kFlagNames[] = {
    {kColorsInData, "ColorsInData"}, {eDrawInXORMode, "eDrawInXORMode"}, {kAntialias, "Antialias"}};
constexpr std::string_view kSeparator = " | ";

uint32_t FlagFromText(std::string_view part) noexcept {
    for (const FlagName& entry : kFlagNames) {
        if (part == entry.name)
            return entry.flag;
    }
    uint64_t number = 0;
    for (const char c : part) {
        if (c < '0' || c > '9' || number > UINT32_MAX)
            return 0;
        number = number * 10 + static_cast<uint64_t>(c - '0');
    }
    return number > UINT32_MAX ? 0 : static_cast<uint32_t>(number);
}

} // namespace

const SGSName* GetGraphicStreamNames() noexcept { return Names().data(); }

KCFixedString<63> GraphicStreamCommandToText(uint32_t code, int form) noexcept {
    for (const SGSName* entry = GetGraphicStreamNames(); entry->code != 0; ++entry) {
        if (entry->code == code)
            return form == kShortName && !entry->shortName.empty() ? entry->shortName : entry->displayName;
    }
    KCFixedString<63> unknown("Unknown GraphicStreamCommand ");
    unknown << code;
    return unknown;
}

uint32_t GraphicStreamTextToCommand(const char* text) noexcept {
    if (text == nullptr || *text == '\0')
        return kIllegalGraphicStreamCommand;
    for (const SGSName* entry = GetGraphicStreamNames(); entry->code != 0; ++entry) {
        if (entry->displayName == text || entry->shortName == text)
            return entry->code;
    }
    return kIllegalGraphicStreamCommand;
}

uint32_t CloseCommandFromOpenCommand(uint32_t openCommand) noexcept {
    switch (openCommand) {
    case kBeginStream:
        return kEndStream;
    case kBeginFrame:
        return kEndFrame;
    default:
        return kNone;
    }
}

KCFixedString<63> GraphicStreamDrawLineFlagsToText(uint32_t flags) noexcept {
    if (flags == kNoAntialias)
        return KCFixedString<63>("NoAntialias");
    KCFixedString<63> text;
    for (const FlagName& entry : kFlagNames) {
        if ((flags & entry.flag) == 0)
            continue;
        text << (text.empty() ? std::string_view() : kSeparator) << entry.name;
        flags &= ~entry.flag;
    }
    if (flags != 0)
        text << (text.empty() ? std::string_view() : kSeparator) << flags;
    return text;
}

uint32_t GraphicStreamTextToDrawLineFlags(const char* text) noexcept {
    uint32_t flags = 0;
    std::string_view rest(text == nullptr ? "" : text);
    while (!rest.empty()) {
        const size_t end = rest.find(kSeparator);
        flags |= FlagFromText(rest.substr(0, end));
        rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + kSeparator.size());
    }
    return flags;
}

bool DataTypeToPurposeMatch(int dataType, int purpose) noexcept {
    const auto type = static_cast<uint32_t>(dataType);
    const auto wanted = static_cast<uint32_t>(purpose);
    if (type == wanted)
        return true;
    switch (wanted) {
    case kAny:
    case kNone:
        return true;
    case kPoint2D:
    case kPoint3D:
        return type == kInt16 || type == kFloat;
    case kRGBColor:
    case kRGBAColor:
    case kDrawImage:
        return type == kUint8;
    case kRect:
        return type == kInt32 || type == kFloat;
    case kClipRectangles:
        return type == kRect;
    case kResID:
        return type == kInt32;
    case kText:
        return type == kChar;
    default:
        return false;
    }
}

} // namespace kvKorvoV12_9_0_320::kvGS
