// The YAML of record fields, on top of yaml-cpp's emitter. Numbers are handed to it as text: it would format them
// with a stream of the process's locale. Inside the graphic stream only.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

#include <yaml-cpp/emitter.h>

#include <korvolib/graphicstream/records.h>

namespace kvKorvoV12_9_0_320::kvGS {

class YamlText {
  public:
    // Groups.

    void BeginMap() { m_out << YAML::BeginMap; }
    void EndMap() { m_out << YAML::EndMap; }
    void BeginSeq() { m_out << YAML::BeginSeq; }
    void EndSeq() { m_out << YAML::EndSeq; }
    void BeginInlineSeq() { m_out << YAML::Flow << YAML::BeginSeq; }
    /// A list below a key of the open map.
    void BeginList(const char* key) {
        Key(key);
        BeginSeq();
    }

    // Fields of the open map; each returns the text, so that they chain.

    YamlText& Plain(const char* key, std::string_view value);
    YamlText& Number(const char* key, uint64_t value);
    YamlText& Number(const char* key, int64_t value);
    YamlText& Number(const char* key, float value);
    YamlText& Hex(const char* key, uint64_t value, int digits);
    YamlText& Flags(uint32_t flags);
    YamlText& Name(const char* key, uint32_t code);
    YamlText& Color(const char* key, const SGSRGBAColor& color);
    YamlText& Numbers(const char* key, std::initializer_list<float> values);
    YamlText& Rect(const char* key, const SGSRect& rect) {
        return Numbers(key, {rect.x, rect.y, rect.width, rect.height});
    }
    YamlText& Quoted(const char* key, std::string_view text);
    YamlText& Method(uint16_t method);

    /// Elements of a data record, which has been checked to hold them all.
    void Data(const char* key, uint32_t dataType, uint32_t purpose, const uint8_t* bytes, size_t size);

    /// One number of the open list.
    void Item(int32_t value) { Integral(value); }
    void Key(std::string_view key) { m_out << YAML::Key << std::string(key) << YAML::Value; }
    std::string_view GetText() const noexcept { return {m_out.c_str(), m_out.size()}; }

  private:
    template <class Integer>
    void Integral(Integer value);
    void Float(float value);
    void Component(uint32_t dataType, const uint8_t* bytes);

    YAML::Emitter m_out;
};

} // namespace kvKorvoV12_9_0_320::kvGS
