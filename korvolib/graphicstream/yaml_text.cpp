#include <korvolib/graphicstream/yaml_text_internal.h>

#include <charconv>
#include <cmath>
#include <new>

#include <yaml-cpp/binary.h>
#include <yaml-cpp/emittermanip.h>

#include <korvolib/graphicstream/converters.h>
#include <korvolib/graphicstream/float_text_internal.h>
#include <korvolib/graphicstream/text.h>

namespace kvKorvoV12_9_0_320::kvGS {

namespace {

// Which plain number a data type is made of, and how many of them make up one item of the list.
uint32_t ComponentType(uint32_t dataType) noexcept {
    switch (dataType) {
    case kRect:
    case kPoint2D:
    case kPoint3D:
        return kFloat;
    case kRGBColor:
    case kRGBAColor:
        return kUint8;
    case kResID:
        return kInt32;
    default:
        return dataType;
    }
}

bool IsNumber(uint32_t dataType) noexcept {
    switch (ComponentType(dataType)) {
    case kFloat:
    case kInt8:
    case kUint8:
    case kInt16:
    case kInt32:
        return true;
    default:
        return false;
    }
}

// Numbers that serve a purpose are grouped as the purpose groups them.
size_t ItemComponents(uint32_t dataType, uint32_t purpose) noexcept {
    const size_t own = GetDataTypeComponents(static_cast<int>(dataType));
    return own == 1 ? GetDataTypeComponents(static_cast<int>(purpose)) : own;
}

template <class Number>
Number Load(const uint8_t* bytes) noexcept {
    Number number;
    std::memcpy(&number, bytes, sizeof number);
    return number;
}

} // namespace

YamlText& YamlText::Plain(const char* key, std::string_view value) {
    Key(key);
    m_out << std::string(value);
    return *this;
}

YamlText& YamlText::Number(const char* key, uint64_t value) {
    Key(key);
    Integral(value);
    return *this;
}

YamlText& YamlText::Number(const char* key, int64_t value) {
    Key(key);
    Integral(value);
    return *this;
}

YamlText& YamlText::Number(const char* key, float value) {
    Key(key);
    Float(value);
    return *this;
}

YamlText& YamlText::Hex(const char* key, uint64_t value, int digits) {
    std::string text = "0x";
    for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4)
        text += "0123456789ABCDEF"[(value >> shift) & 15];
    return Plain(key, text);
}

YamlText& YamlText::Flags(uint32_t flags) {
    return Plain("flags", GraphicStreamDrawLineFlagsToText(flags).c_str());
}

YamlText& YamlText::Name(const char* key, uint32_t code) {
    return Plain(key, GraphicStreamCommandToText(code).c_str());
}

YamlText& YamlText::Color(const char* key, const SGSRGBAColor& color) {
    Key(key);
    m_out << YAML::Flow;
    BeginMap();
    Number("red", uint64_t{color.red}).Number("green", uint64_t{color.green});
    Number("blue", uint64_t{color.blue}).Number("alpha", uint64_t{color.alpha});
    EndMap();
    return *this;
}

YamlText& YamlText::Numbers(const char* key, std::initializer_list<float> values) {
    Key(key);
    BeginInlineSeq();
    for (const float value : values)
        Float(value);
    EndSeq();
    return *this;
}

YamlText& YamlText::Quoted(const char* key, std::string_view text) {
    KCStMemObj valid;
    if (GSAppendValidText(text, valid) != 0)
        throw std::bad_alloc();
    Key(key);
    m_out << YAML::DoubleQuoted << std::string(valid.GetText());
    return *this;
}

YamlText& YamlText::Method(uint16_t method) {
    switch (method) {
    case kWire:
        return Plain("method", "wire");
    case kSolid:
        return Plain("method", "solid");
    default:
        return Number("method", uint64_t{method});
    }
}

void YamlText::Data(const char* key, uint32_t dataType, uint32_t purpose, const uint8_t* bytes, size_t size) {
    if (dataType == kChar || dataType == kText) {
        Quoted(key, {reinterpret_cast<const char*>(bytes), size});
        return;
    }
    if (!IsNumber(dataType)) {
        Plain(key, SGSDataToText(static_cast<int>(dataType), "").c_str());
        return;
    }
    Key(key);
    if (dataType == kUint8 && purpose == kDrawImage) {
        m_out << YAML::Binary(bytes, size);
        return;
    }
    const size_t componentSize = GetDataTypeSize(static_cast<int>(ComponentType(dataType)));
    const size_t perItem = ItemComponents(dataType, purpose);
    BeginInlineSeq();
    for (size_t index = 0; index != size / componentSize; ++index) {
        if (perItem > 1 && index % perItem == 0)
            index == 0 ? BeginSeq() : (EndSeq(), BeginSeq());
        Component(ComponentType(dataType), bytes + index * componentSize);
    }
    if (perItem > 1 && size != 0)
        EndSeq();
    EndSeq();
}

template <class Integer>
void YamlText::Integral(Integer value) {
    char text[24];
    m_out << std::string(text, std::to_chars(text, text + sizeof text, value).ptr);
}

void YamlText::Float(float value) {
    // YAML 1.2, 10.2.1.4: written without the point they would be text to a reader.
    if (!std::isfinite(value)) {
        m_out << (std::isnan(value) ? ".nan" : value > 0 ? ".inf" : "-.inf");
        return;
    }
    char text[kFloatTextSize];
    const size_t length = FormatFloat(value, text);
    m_out << std::string(text, length);
}

void YamlText::Component(uint32_t dataType, const uint8_t* bytes) {
    switch (dataType) {
    case kFloat:
        return Float(Load<float>(bytes));
    case kInt8:
        return Integral(int{Load<int8_t>(bytes)});
    case kUint8:
        return Integral(int{*bytes});
    case kInt16:
        return Integral(int{Load<int16_t>(bytes)});
    default:
        return Integral(Load<int32_t>(bytes));
    }
}

} // namespace kvKorvoV12_9_0_320::kvGS
