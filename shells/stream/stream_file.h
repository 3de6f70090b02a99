// What korvo-stream reads: the bytes of a file, its records one by one, and pictures by id from a folder.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include <korvolib/graphicstream/engine_base.h>
#include <korvolib/graphicstream/painter.h>
#include <korvolib/utilities/mem_obj.h>

namespace korvoStream {

/// False when the file cannot be read whole.
[[nodiscard]] bool ReadFile(const std::string& path, kvKorvo::KCStMemObj& bytes);
[[nodiscard]] bool WriteFile(const std::string& path, std::string_view bytes);

struct Record {
    uint32_t code;
    size_t offset;
    size_t size;
};

/// Lists the records of a stream up to the first that does not hold together.
class RecordLister final : public kvKorvo::kvGS::KCGraphicStreamEngineBase {
  public:
    const std::vector<Record>& GetRecords() const noexcept { return m_records; }

  protected:
    // This engine treats every command alike, one that is still to come included.
#define KORVO_STREAM_LIST(identifier, display, shortName, code, record, tail)                                      \
    int32_t Exec##identifier(kvKorvo::kvGS::KCGSRecord<kvKorvo::kvGS::record> command) override {                  \
        return Add(command.GetBytes(), command.GetOffset());                                                       \
    }
    KV_GS_COMMANDS(KORVO_STREAM_LIST)
#undef KORVO_STREAM_LIST
    int32_t ExecUnknown(kvKorvo::kvGS::KCGSRecord<kvKorvo::kvGS::SGSHeader> command) override {
        return Add(command.GetBytes(), command.GetOffset());
    }

  private:
    int32_t Add(std::span<const uint8_t> bytes, size_t offset);

    std::vector<Record> m_records;
};

/// Pictures as files of a folder, named by their id: "1001.png".
class FolderImages final : public kvKorvo::kvGS::KCGSImageProvider {
  public:
    explicit FolderImages(std::string folder) : m_folder(std::move(folder)) {}
    std::span<const uint8_t> GetImagePNG(int32_t resID) noexcept override;

  private:
    std::string m_folder;
    std::map<int32_t, kvKorvo::KCStMemObj> m_files;
};

} // namespace korvoStream
