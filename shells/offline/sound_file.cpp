#include "sound_file.h"

#include <sndfile.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <vector>

#include "failure.h"
#include "text.h"

namespace kvKorvoV12_9_0_320::kvHost {
namespace {

struct sFILE_KIND {
    const char* ending;
    int format;
};

constexpr sFILE_KIND kFileKinds[] = {
    {".wav", SF_FORMAT_WAV | SF_FORMAT_FLOAT},
    {".aiff", SF_FORMAT_AIFF | SF_FORMAT_FLOAT},
    {".aif", SF_FORMAT_AIFF | SF_FORMAT_FLOAT},
    {".flac", SF_FORMAT_FLAC | SF_FORMAT_PCM_24},
};

int FormatByEnding(const KCOutputFile& file) {
    for (const sFILE_KIND& kind : kFileKinds)
        if (HasEnding(file.GetPath(), kind.ending))
            return kind.format;
    throw KCHostFailure(file.GetPath() + ": the name of a sound file to write must end in .wav, .aiff or .flac");
}

} // namespace

struct KCSoundReader::sOpen {
    SNDFILE* file = nullptr;
    ~sOpen() { sf_close(file); }
};

KCSoundReader::KCSoundReader(const std::string& path) : m_path(path), m_open(std::make_unique<sOpen>()) {
    std::error_code problem;
    const auto status = std::filesystem::status(path, problem);
    if (!std::filesystem::exists(status))
        throw KCHostFailure(path + ": no such sound file");
    if (!std::filesystem::is_regular_file(status))
        throw KCHostFailure(path + ": not a sound file: it is not a regular file");
    SF_INFO info = {};
    m_open->file = sf_open(path.c_str(), SFM_READ, &info);
    if (m_open->file == nullptr)
        throw KCHostFailure(path + ": not a sound file that can be read: " + sf_strerror(nullptr));
    if (info.channels < 1 || info.channels > 2)
        throw KCHostFailure(path + ": has " + std::to_string(info.channels) + " channels; 1 or 2 are expected");
    m_format = {info.samplerate, static_cast<uint32_t>(info.channels)};
    m_numFrames = info.frames;
}

KCSoundReader::~KCSoundReader() = default;

int64_t KCSoundReader::Read(float* interleaved, int64_t numFrames) {
    const int64_t numRead = sf_readf_float(m_open->file, interleaved, numFrames);
    m_numRead += numRead;
    const bool isAtEnd = numRead < numFrames;
    if (isAtEnd && (m_numRead < m_numFrames || sf_error(m_open->file) != SF_ERR_NO_ERROR))
        throw KCHostFailure(m_path + ": breaks off after " + std::to_string(m_numRead) + " of " +
                            std::to_string(m_numFrames) + " frames");
    return numRead;
}

struct KCSoundWriter::sOpen {
    SNDFILE* file = nullptr;
    ~sOpen() {
        if (file != nullptr)
            sf_close(file);
    }
};

KCSoundWriter::KCSoundWriter(KCOutputFile& file, const sSOUND_FORMAT& format)
    : m_file(file), m_open(std::make_unique<sOpen>()) {
    SF_INFO info = {};
    info.samplerate = format.sampleRateHz;
    info.channels = static_cast<int>(format.numChannels);
    info.format = FormatByEnding(file);
    if (sf_format_check(&info) == 0)
        m_file.Fail("this kind of file cannot hold " + std::to_string(info.channels) + " channels at " +
                    std::to_string(info.samplerate) + " Hz");
    m_open->file = sf_open_fd(file.GetDescriptor(), SFM_WRITE, &info, SF_FALSE);
    if (m_open->file == nullptr)
        m_file.Fail(sf_strerror(nullptr));
    // The peak chunk holds the time of writing: two runs would differ by it.
    sf_command(m_open->file, SFC_SET_ADD_PEAK_CHUNK, nullptr, SF_FALSE);
    sf_command(m_open->file, SFC_SET_CLIPPING, nullptr, SF_TRUE);
}

KCSoundWriter::~KCSoundWriter() = default;

void KCSoundWriter::Write(const float* interleaved, int64_t numFrames) {
    if (sf_writef_float(m_open->file, interleaved, numFrames) != numFrames)
        m_file.Fail(sf_strerror(m_open->file));
}

void KCSoundWriter::Finish() {
    sf_write_sync(m_open->file);
    const int problem = sf_close(m_open->file);
    m_open->file = nullptr;
    if (problem != SF_ERR_NO_ERROR)
        m_file.Fail(sf_error_number(problem));
}

} // namespace kvKorvoV12_9_0_320::kvHost
