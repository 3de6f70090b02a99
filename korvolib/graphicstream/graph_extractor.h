// KCGSGraphExtractor: the graphs of a stream as points: every line strip in it, with its colour, its name and the
// frame it stands in. It is how a tool or a test reads an equaliser's curve out of a window without looking at
// pixels.
//
// The name of a graph is the value of the last "MetaData" record before it in its frame. Takes memory as a vector
// does. One stream at a time, on any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include <korvolib/export.h>
#include <korvolib/graphicstream/data_operand.h>
#include <korvolib/graphicstream/engine_base.h>
#include <korvolib/utilities/geometry.h>

namespace kvKorvoV12_9_0_320::kvGS {

struct KCGSGraph {
    std::vector<KUPoint<float>> points; ///< as recorded: in the picture's drawing units
    SGSRGBAColor color;                 ///< the draw colour, or that of the first vertex
    float strokeWidth = 1;
    SGSFrame frame; ///< the innermost open one; all 0 outside of any
    KCFixedString<127> name;
    size_t streamOffset = 0; ///< of the record that draws it
};

class KORVO_API KCGSGraphExtractor final : public KCGraphicStreamEngineBase {
  public:
    KCGSGraphExtractor() noexcept = default;

    /// In the order in which they are drawn. A line strip whose points are missing or no numbers is left out. Valid
    /// until the next walk.
    const std::vector<KCGSGraph>& GetGraphs() const noexcept { return m_graphs; }

  protected:
    int32_t ExecStart() override;
    int32_t ExecIllegalGraphicStreamCommand(KCGSRecord<SGSHeader>) override { return 0; }
    int32_t ExecIgnoreStreamCommand(KCGSRecord<SGSHeader>) override { return 0; }
    int32_t ExecNone(KCGSRecord<SGSHeader>) override { return 0; }
    int32_t ExecAny(KCGSRecord<SGSHeader>) override { return 0; }
    int32_t ExecStreamSignature(KCGSRecord<SGSHeader>) override { return 0; }
    int32_t ExecBeginStream(KCGSRecord<SGSStream> command) override;
    int32_t ExecStreamFormat(KCGSRecord<SGSStreamFormat>) override { return 0; }
    int32_t ExecEndStream(KCGSRecord<SGSHeader>) override { return 0; }
    int32_t ExecResourcesBaseURL(KCGSRecord<SGSHeader>) override { return 0; }
    int32_t ExecBeginFrame(KCGSRecord<SGSFrame> command) override;
    int32_t ExecEndFrame(KCGSRecord<SGSHeader>) override { return 0; }
    int32_t ExecRotateFrame(KCGSRecord<SGSRotateFrame>) override { return 0; }
    int32_t ExecDrawImage(KCGSRecord<SGSDrawImage>) override { return 0; }
    int32_t ExecDrawImageMultipleClips(KCGSRecord<SGSDrawImageMultipleClips>) override { return 0; }
    int32_t ExecDrawText(KCGSRecord<SGSDrawText>) override { return 0; }
    int32_t ExecDrawOval(KCGSRecord<SGSDrawOval>) override { return 0; }
    int32_t ExecDrawVertices(KCGSRecord<SGSDrawVertices> command) override;
    int32_t ExecClipVertices(KCGSRecord<SGSClipVertices>) override;
    int32_t ExecClipRect(KCGSRecord<SGSClipRect>) override { return 0; }
    int32_t ExecClipMultipleRects(KCGSRecord<SGSClipMultipleRects>) override { return 0; }
    int32_t ExecDataHere(KCGSRecord<SGSDataHere> command) override;
    int32_t ExecDataPtr(KCGSRecord<SGSDataPtr> command) override;
    int32_t ExecFont(KCGSRecord<SGSFont>) override { return 0; }
    int32_t ExecRemark(KCGSRecord<SGSHeader>) override { return 0; }
    int32_t ExecMetaData(KCGSRecord<SGSMetaData> command) override;
    int32_t ExecUnknown(KCGSRecord<SGSHeader>) override { return 0; }

  private:
    int32_t Take(const KCGSDataOperand& data) noexcept;

    std::vector<KCGSGraph> m_graphs;
    KCGSDataOperand m_points;
    KCGSDataOperand m_colors;
    SGSFrame m_frames[kMaxNesting + 1];
    KCFixedString<127> m_names[kMaxNesting + 1];
};

} // namespace kvKorvoV12_9_0_320::kvGS
