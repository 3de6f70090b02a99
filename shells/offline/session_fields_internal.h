// One event of a session as it stands in the file: its keys and their values, each read with a check and complained
// about with its line.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <yaml-cpp/yaml.h>

#include <korvolib/utilities/geometry.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320::kvHost {

class KCEventFields {
  public:
    /// Throws unless `node` is a mapping of distinct plain keys. `fileName` must outlive this.
    KCEventFields(const YAML::Node& node, const std::string& fileName);

    bool Has(std::string_view key) const { return Find(key) != nullptr; }
    int GetLine() const { return m_line; }
    std::vector<std::string> GetKeys() const;

    /// The value of a key as text of 1 … 127 bytes.
    std::string Text(std::string_view key) const;
    /// As a finite number within the limits.
    double Number(std::string_view key, double lowest, double highest) const;
    /// As a finite number.
    double Number(std::string_view key) const;
    /// As a whole number within the limits.
    int32_t WholeNumber(std::string_view key, int32_t lowest, int32_t highest) const;
    /// As one of the choices: its position among them.
    size_t Choice(std::string_view key, const std::vector<std::string>& choices) const;

    /// As one number in brackets for each axis, both within ±`furthest`.
    KUPoint<double> Pair(std::string_view key, double furthest) const;
    bool IsList(std::string_view key) const;
    bool IsMap(std::string_view key) const;
    /// The texts of a list; of a single text, that one.
    std::vector<std::string> Texts(std::string_view key, const std::string& expected) const;
    /// Complains unless the key stands without a value.
    void Nothing(std::string_view key) const;
    /// The value as fields of its own: a mapping, or one word that stands for a key without a value. `expected`
    /// ends the complaint about anything else.
    KCEventFields Part(std::string_view key, const std::string& expected) const;

    /// As true or false; false where there is no such key.
    bool Flag(std::string_view key) const;

    /// Complains at the line of the key, or of the event where there is no such key.
    [[noreturn]] void Fail(std::string_view key, const std::string& text) const;

  private:
    KCEventFields(const std::string& fileName, int line) : m_fileName(fileName), m_line(line) {}
    void AddFieldsOf(const YAML::Node& map);

    struct sFIELD {
        std::string key;
        YAML::Node value;
        int line;
    };
    const sFIELD* Find(std::string_view key) const;
    const std::string& Scalar(std::string_view key, const std::string& expected) const;

    const std::string& m_fileName;
    int m_line;
    std::vector<sFIELD> m_fields;
};

} // namespace kvKorvoV12_9_0_320::kvHost
