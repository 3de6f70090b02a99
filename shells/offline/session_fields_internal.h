// One event of a session as it stands in the file: its keys and their values, each read with a check and complained
// about with its line.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <yaml-cpp/yaml.h>

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

    /// As true or false; false where there is no such key.
    bool Flag(std::string_view key) const;

    /// Complains at the line of the key, or of the event where there is no such key.
    [[noreturn]] void Fail(std::string_view key, const std::string& text) const;

  private:
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
