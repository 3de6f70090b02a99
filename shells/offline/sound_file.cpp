#include "sound_file.h"

#include <sndfile.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

#include <korvolib/utilities/fm/path.h>

#include "failure.h"
#include "input_file.h"
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

// ---- libsndfile's own calls, on bytes in memory and on an output file
// ---------------------------------------------

namespace {

constexpr size_t kLargestUnpackedSound = size_t{1} << 30; // bytes

struct sMEMORY_FILE {
    std::string bytes;
    sf_count_t position = 0;
};

sf_count_t SizeOf(const sMEMORY_FILE& file) { return static_cast<sf_count_t>(file.bytes.size()); }

// Where libsndfile goes: -1 for a place before the beginning.
sf_count_t Target(sf_count_t offset, int whence, sf_count_t position, sf_count_t size) {
    const sf_count_t base = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? position : size;
    return offset < -base ? -1 : base + offset;
}

sf_count_t MemorySize(void* file) { return SizeOf(*static_cast<sMEMORY_FILE*>(file)); }
sf_count_t MemoryTell(void* file) { return static_cast<sMEMORY_FILE*>(file)->position; }
sf_count_t MemoryWrite(const void*, sf_count_t, void*) { return 0; }

sf_count_t MemorySeek(sf_count_t offset, int whence, void* user) {
    auto& file = *static_cast<sMEMORY_FILE*>(user);
    const sf_count_t target = Target(offset, whence, file.position, SizeOf(file));
    if (target >= 0)
        file.position = target;
    return target;
}

sf_count_t MemoryRead(void* buffer, sf_count_t count, void* user) {
    auto& file = *static_cast<sMEMORY_FILE*>(user);
    const sf_count_t numRead = std::clamp<sf_count_t>(SizeOf(file) - file.position, 0, count);
    std::memcpy(buffer, file.bytes.data() + std::min(file.position, SizeOf(file)), static_cast<size_t>(numRead));
    file.position += numRead;
    return numRead;
}

sf_count_t OutputSize(void* file) { return static_cast<KCOutputFile*>(file)->GetSize(); }
sf_count_t OutputTell(void* file) { return static_cast<KCOutputFile*>(file)->GetPosition(); }
sf_count_t OutputRead(void*, sf_count_t, void*) { return 0; }

sf_count_t OutputSeek(sf_count_t offset, int whence, void* user) {
    auto& file = *static_cast<KCOutputFile*>(user);
    const sf_count_t target = Target(offset, whence, file.GetPosition(), file.GetSize());
    if (target >= 0)
        file.Seek(target);
    return target;
}

sf_count_t OutputWrite(const void* bytes, sf_count_t count, void* user) {
    auto& file = *static_cast<KCOutputFile*>(user);
    return file.TryWrite({static_cast<const char*>(bytes), static_cast<size_t>(count)}) ? count : 0;
}

SF_VIRTUAL_IO g_memoryCalls = {MemorySize, MemorySeek, MemoryRead, MemoryWrite, MemoryTell};
SF_VIRTUAL_IO g_outputCalls = {OutputSize, OutputSeek, OutputRead, OutputWrite, OutputTell};

void RefuseWhatIsNoFile(const std::string& path) {
    const FM::KCStPath whole(path.c_str());
    if (!whole.IsExist())
        throw KCHostFailure(path + ": no such sound file");
    if (!whole.IsFile())
        throw KCHostFailure(path + ": not a sound file: it is not a regular file");
}

} // namespace

// ---- Reading
// ------------------------------------------------------------------------------------------------------

struct KCSoundReader::sOpen {
    sMEMORY_FILE memory; // of an entry of an archive
    SNDFILE* file = nullptr;
    ~sOpen() { sf_close(file); }
};

KCSoundReader::KCSoundReader(const std::string& path) : m_path(path), m_open(std::make_unique<sOpen>()) {
    SF_INFO info = {};
    if (NamesZipEntry(path)) {
        m_open->memory.bytes = ReadZipEntry(path, kLargestUnpackedSound, "a sound in an archive");
        m_open->file = sf_open_virtual(&g_memoryCalls, SFM_READ, &info, &m_open->memory);
    } else {
        RefuseWhatIsNoFile(path);
        m_open->file = sf_open(path.c_str(), SFM_READ, &info);
    }
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

// ---- Writing
// ------------------------------------------------------------------------------------------------------

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
    m_open->file = sf_open_virtual(&g_outputCalls, SFM_WRITE, &info, &m_file);
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
    const int problem = sf_close(m_open->file);
    m_open->file = nullptr;
    if (problem != SF_ERR_NO_ERROR)
        m_file.Fail(sf_error_number(problem));
}

} // namespace kvKorvoV12_9_0_320::kvHost
