#include <korvolib/graphicstream/graph_extractor.h>

#include <utility>

#include <korvolib/utilities/error_codes.h>

namespace kvKorvoV12_9_0_320::kvGS {

int32_t KCGSGraphExtractor::ExecStart() {
    m_graphs.clear();
    m_points = m_colors = KCGSDataOperand();
    m_frames[0] = SGSFrame();
    m_names[0].clear();
    return kErr_NoErr;
}

int32_t KCGSGraphExtractor::ExecBeginStream(KCGSRecord<SGSStream>) {
    m_frames[GetDepth()] = SGSFrame();
    m_names[GetDepth()].clear();
    return kErr_NoErr;
}

int32_t KCGSGraphExtractor::ExecBeginFrame(KCGSRecord<SGSFrame> command) {
    m_frames[GetDepth()] = command.Read();
    m_names[GetDepth()].clear();
    return kErr_NoErr;
}

int32_t KCGSGraphExtractor::ExecMetaData(KCGSRecord<SGSMetaData> command) {
    const std::string_view value = command.GetTailText().substr(command.Read().nameSize);
    m_names[GetDepth()].assign(value.data(), value.size());
    return kErr_NoErr;
}

int32_t KCGSGraphExtractor::ExecDataHere(KCGSRecord<SGSDataHere> command) { return Take(KCGSDataOperand(command)); }

int32_t KCGSGraphExtractor::ExecDataPtr(KCGSRecord<SGSDataPtr> command) {
    return Take(KCGSDataOperand(command, GetPointers()));
}

int32_t KCGSGraphExtractor::Take(const KCGSDataOperand& data) noexcept {
    if (data.IsUsable() && data.IsPoints())
        m_points = data;
    else if (data.IsUsable() && data.IsColors())
        m_colors = data;
    return kErr_NoErr;
}

int32_t KCGSGraphExtractor::ExecClipVertices(KCGSRecord<SGSClipVertices>) {
    m_points = KCGSDataOperand();
    return kErr_NoErr;
}

int32_t KCGSGraphExtractor::ExecDrawVertices(KCGSRecord<SGSDrawVertices> command) {
    const SGSDrawVertices vertices = command.Read();
    const KCGSDataOperand points = std::exchange(m_points, KCGSDataOperand());
    const KCGSDataOperand colors = std::exchange(m_colors, KCGSDataOperand());
    KCGSGraph graph;
    if (vertices.kind != kLineStrip || !points.ReadPoints(vertices.numVertices, graph.points))
        return kErr_NoErr;
    const bool colored = (vertices.flags & kColorsInData) != 0 && colors.GetNumColors() != 0;
    graph.color = colored ? colors.GetColor(0) : vertices.drawColor;
    graph.strokeWidth = vertices.strokeWidth;
    graph.frame = m_frames[GetDepth()];
    graph.name = m_names[GetDepth()];
    graph.streamOffset = command.GetOffset();
    m_graphs.push_back(std::move(graph));
    return kErr_NoErr;
}

} // namespace kvKorvoV12_9_0_320::kvGS
