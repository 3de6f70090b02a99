// KCGraphicStreamToYAML: a stream as YAML text, to be read by people and compared in tests.
//
//   KCGraphicStreamToYAML yaml;
//   if (yaml.ExecStream(writer) == kErr_NoErr)
//       std::fwrite(yaml.GetText().data(), 1, yaml.GetText().size(), stdout);
//
// Every record stands under its name with its offset, size and checksum; the records of a stream nest under
// "contents", those of a frame under "frame children". Behind the last one stand the counters: every executed
// command but the ends of frames was either emitted or skipped. No dump contains an address. When a walk fails, the
// text is still well-formed and ends with the error and where it occurred. Slow, as text is: not for the drawing
// path.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

#include <korvolib/export.h>
#include <korvolib/graphicstream/engine_base.h>

namespace kvKorvoV12_9_0_320::kvGS {

class KORVO_API KCGraphicStreamToYAML final : public KCGraphicStreamEngineBase {
  public:
    KCGraphicStreamToYAML() noexcept;
    ~KCGraphicStreamToYAML() override;
    KCGraphicStreamToYAML(const KCGraphicStreamToYAML&) = delete;
    KCGraphicStreamToYAML& operator=(const KCGraphicStreamToYAML&) = delete;

    /// Shows these checksums instead of computing them: one for each record that is shown, those of unknown codes
    /// included, in their order (they may come from an earlier run). They have to live until the walk ends; an
    /// empty list computes them again.
    void SetChecksums(std::span<const uint64_t> checksums) noexcept { m_checksums = checksums; }

    /// The YAML of the last walk. Valid until the next one.
    std::string_view GetText() const noexcept;
    /// What the last walk has to complain of: "not enough checksums\n", counters that do not add up.
    const KCFixedString<255>& GetReport() const noexcept { return m_report; }

    size_t GetEmitsCount() const noexcept { return m_count_emits; }
    /// Records without a text of their own: ends of streams, records to be ignored, unknown codes.
    size_t GetSkipsCount() const noexcept { return m_count_skips; }
    /// Records emitted without their data, since it stands behind a pointer that is not followed.
    size_t GetMissingCount() const noexcept { return m_count_missing; }

  protected:
    int32_t ExecStart() override;
    void ExecMissingEnd(uint32_t openCommand) override;
    int32_t ExecFinish(int32_t result) override;

    int32_t ExecIllegalGraphicStreamCommand(KCGSRecord<SGSHeader> command) override;
    int32_t ExecIgnoreStreamCommand(KCGSRecord<SGSHeader> command) override;
    int32_t ExecNone(KCGSRecord<SGSHeader> command) override;
    int32_t ExecAny(KCGSRecord<SGSHeader> command) override;
    int32_t ExecStreamSignature(KCGSRecord<SGSHeader> command) override;
    int32_t ExecBeginStream(KCGSRecord<SGSStream> command) override;
    int32_t ExecStreamFormat(KCGSRecord<SGSStreamFormat> command) override;
    int32_t ExecEndStream(KCGSRecord<SGSHeader> command) override;
    int32_t ExecResourcesBaseURL(KCGSRecord<SGSHeader> command) override;
    int32_t ExecBeginFrame(KCGSRecord<SGSFrame> command) override;
    int32_t ExecEndFrame(KCGSRecord<SGSHeader> command) override;
    int32_t ExecRotateFrame(KCGSRecord<SGSRotateFrame> command) override;
    int32_t ExecDrawImage(KCGSRecord<SGSDrawImage> command) override;
    int32_t ExecDrawImageMultipleClips(KCGSRecord<SGSDrawImageMultipleClips> command) override;
    int32_t ExecDrawText(KCGSRecord<SGSDrawText> command) override;
    int32_t ExecDrawOval(KCGSRecord<SGSDrawOval> command) override;
    int32_t ExecDrawVertices(KCGSRecord<SGSDrawVertices> command) override;
    int32_t ExecClipVertices(KCGSRecord<SGSClipVertices> command) override;
    int32_t ExecClipRect(KCGSRecord<SGSClipRect> command) override;
    int32_t ExecClipMultipleRects(KCGSRecord<SGSClipMultipleRects> command) override;
    int32_t ExecDataHere(KCGSRecord<SGSDataHere> command) override;
    int32_t ExecDataPtr(KCGSRecord<SGSDataPtr> command) override;
    int32_t ExecFont(KCGSRecord<SGSFont> command) override;
    int32_t ExecRemark(KCGSRecord<SGSHeader> command) override;
    int32_t ExecMetaData(KCGSRecord<SGSMetaData> command) override;
    int32_t ExecUnknown(KCGSRecord<SGSHeader> command) override;

  private:
    class Text;

    template <class Record>
    Text& Begin(const KCGSRecord<Record>& command);
    int32_t End();
    int32_t EmitBare(const KCGSRecord<SGSHeader>& command);
    int32_t EmitText(const KCGSRecord<SGSHeader>& command);
    template <class Record>
    void EmitData(Text& text, const Record& data, std::span<const uint8_t> bytes);
    uint64_t NextChecksum(std::span<const uint8_t> record);
    void EmitCounters();

    std::unique_ptr<Text> m_text;
    std::span<const uint64_t> m_checksums;
    size_t m_nextChecksum = 0;
    size_t m_count_emits = 0;
    size_t m_count_skips = 0;
    size_t m_count_missing = 0;
    KCFixedString<255> m_report;
};

} // namespace kvKorvoV12_9_0_320::kvGS
