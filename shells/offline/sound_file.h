// Sound files of one or two channels, read and written in blocks of interleaved samples, full scale at 1.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <korvolib/version.h>

#include "output_file.h"

namespace kvKorvoV12_9_0_320::kvHost {

struct sSOUND_FORMAT {
    int32_t sampleRateHz = 0;
    uint32_t numChannels = 0; // 1 or 2
};

/// Reads any format that libsndfile knows, from a file or from an entry of an archive (input_file.h), which is
/// unpacked into memory.
class KCSoundReader {
  public:
    /// Throws KCHostFailure for a file that is missing, is no sound, or has more than two channels.
    explicit KCSoundReader(const std::string& path);
    ~KCSoundReader();

    const sSOUND_FORMAT& GetFormat() const { return m_format; }
    int64_t GetNumFrames() const { return m_numFrames; }

    /// The next frames; fewer than asked for only at the end. Throws where the file breaks off or does not decode.
    int64_t Read(float* interleaved, int64_t numFrames);

  private:
    struct sOpen;
    std::string m_path;
    std::unique_ptr<sOpen> m_open;
    sSOUND_FORMAT m_format;
    int64_t m_numFrames = 0;
    int64_t m_numRead = 0;
};

/// Writes .wav and .aiff with 32-bit float samples, which no level can clip, and .flac with 24 bits, which clips at
/// full scale. The same samples give the same bytes on any day.
class KCSoundWriter {
  public:
    /// Throws KCHostFailure for another kind of file, and for a format that the file cannot hold.
    KCSoundWriter(KCOutputFile& file, const sSOUND_FORMAT& format);
    ~KCSoundWriter();

    void Write(const float* interleaved, int64_t numFrames);
    /// Completes the file's contents; nothing can be written after it. The file is not kept by this.
    void Finish();

  private:
    struct sOpen;
    KCOutputFile& m_file;
    std::unique_ptr<sOpen> m_open;
};

} // namespace kvKorvoV12_9_0_320::kvHost
