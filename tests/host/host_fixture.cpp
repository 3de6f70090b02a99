#include "host_fixture.h"

#include <sndfile.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iterator>
#include <numbers>

namespace kvTest {

const std::string HostTest::kStrip = KORVO_TEST_STRIP;
const std::string HostTest::kTestPlugins = KORVO_TEST_PLUGINS;

HostTest::HostTest() {
    std::string pattern = testing::TempDir() + "korvo-host-test.XXXXXX";
    m_folder = mkdtemp(pattern.data());
}

HostTest::~HostTest() { std::filesystem::remove_all(m_folder); }

std::string HostTest::WriteText(const std::string& name, const std::string& text) const {
    std::ofstream(Path(name), std::ios::binary) << text;
    return Path(name);
}

std::string HostTest::WriteSound(const std::string& name, const sSOUND& sound) const {
    SF_INFO info = {};
    info.samplerate = sound.sampleRateHz;
    info.channels = sound.numChannels;
    info.format = SF_FORMAT_WAV | SF_FORMAT_FLOAT;
    SNDFILE* const file = sf_open(Path(name).c_str(), SFM_WRITE, &info);
    sf_write_float(file, sound.samples.data(), static_cast<sf_count_t>(sound.samples.size()));
    sf_close(file);
    return Path(name);
}

std::string HostTest::WriteSine(const std::string& name, double seconds, int numChannels) const {
    sSOUND sound;
    sound.numChannels = numChannels;
    const auto numFrames = static_cast<int>(seconds * sound.sampleRateHz);
    for (int frame = 0; frame < numFrames; ++frame) {
        const double phase = 2.0 * std::numbers::pi * 1000.0 * frame / sound.sampleRateHz;
        sound.samples.insert(sound.samples.end(), static_cast<size_t>(numChannels),
                             static_cast<float>(0.5 * std::sin(phase)));
    }
    return WriteSound(name, sound);
}

std::vector<std::string> HostTest::FilesInFolder() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(m_folder))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

sPROGRAM_RUN HostTest::Host(std::vector<std::string> arguments, sPROGRAM_SETTINGS settings) const {
    arguments.insert(arguments.begin(), KORVO_TEST_HOST);
    if (settings.folder.empty())
        settings.folder = m_folder.string();
    return RunProgram(arguments, settings);
}

void HostTest::ExpectRefusal(const std::vector<std::string>& arguments, const std::string& line,
                             const sPROGRAM_SETTINGS& settings) const {
    const std::vector<std::string> filesBefore = FilesInFolder();
    const sPROGRAM_RUN run = Host(arguments, settings);
    EXPECT_EQ(run.error, "korvo-host: " + line + "\n");
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(FilesInFolder(), filesBefore);
}

std::string HostTest::ReadBytes(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

sSOUND HostTest::ReadSound(const std::string& path) {
    sSOUND sound;
    SF_INFO info = {};
    SNDFILE* const file = sf_open(path.c_str(), SFM_READ, &info);
    if (file == nullptr) {
        ADD_FAILURE() << path << ": " << sf_strerror(nullptr);
        return sound;
    }
    sound.sampleRateHz = info.samplerate;
    sound.numChannels = info.channels;
    sound.samples.resize(static_cast<size_t>(info.frames * info.channels));
    sf_read_float(file, sound.samples.data(), static_cast<sf_count_t>(sound.samples.size()));
    sf_close(file);
    return sound;
}

double HostTest::Level(const sSOUND& sound, double fromSeconds, double toSeconds) {
    const auto at = [&](double seconds) {
        const auto sample =
            static_cast<size_t>(seconds * sound.sampleRateHz) * static_cast<size_t>(sound.numChannels);
        return std::min(sample, sound.samples.size());
    };
    double sum = 0.0;
    for (size_t i = at(fromSeconds); i < at(toSeconds); ++i)
        sum += static_cast<double>(sound.samples[i]) * static_cast<double>(sound.samples[i]);
    return 10.0 * std::log10(sum / static_cast<double>(at(toSeconds) - at(fromSeconds)));
}

} // namespace kvTest
