// A folder of its own for each test, sounds and sessions to put there, and korvo-host to run.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "run_program.h"

namespace kvTest {

struct sSOUND {
    int sampleRateHz = 44100;
    int numChannels = 1;
    std::vector<float> samples; // interleaved
};

class HostTest : public testing::Test {
  protected:
    HostTest();
    ~HostTest() override;

    std::string Path(const std::string& name) const { return (m_folder / name).string(); }
    std::string WriteText(const std::string& name, const std::string& text) const;
    std::string WriteSound(const std::string& name, const sSOUND& sound) const;
    /// A steady 1 kHz sine of half of full scale: -9.03 dB RMS.
    std::string WriteSine(const std::string& name, double seconds, int numChannels = 1) const;
    std::vector<std::string> FilesInFolder() const;

    /// korvo-host with these arguments.
    sPROGRAM_RUN Host(std::vector<std::string> arguments, sPROGRAM_SETTINGS settings = {}) const;
    /// The same, expected to fail with this one line and to leave the files of the folder as they are.
    void ExpectRefusal(const std::vector<std::string>& arguments, const std::string& line,
                       const sPROGRAM_SETTINGS& settings = {}) const;

    static std::string ReadBytes(const std::string& path);
    static sSOUND ReadSound(const std::string& path);
    /// RMS level in dB of full scale, all channels together, between two times.
    static double Level(const sSOUND& sound, double fromSeconds, double toSeconds);

    static const std::string kStrip;       // the channel strip
    static const std::string kTestPlugins; // folder of the plug-ins made for tests, with a slash at its end

  private:
    std::filesystem::path m_folder;
};

} // namespace kvTest
