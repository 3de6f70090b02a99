#include <korvolib/graphicstream/to_yaml.h>

#include <cstring>

#include <korvolib/graphicstream/yaml_text_internal.h>
#include <korvolib/utilities/error_codes.h>

namespace kvKorvoV12_9_0_320::kvGS {

// Keeps yaml-cpp out of the header.
class KCGraphicStreamToYAML::Text : public YamlText {};

KCGraphicStreamToYAML::KCGraphicStreamToYAML() noexcept = default;
KCGraphicStreamToYAML::~KCGraphicStreamToYAML() = default;

std::string_view KCGraphicStreamToYAML::GetText() const noexcept {
    return m_text == nullptr ? std::string_view() : m_text->GetText();
}

int32_t KCGraphicStreamToYAML::ExecStart() {
    m_text = std::make_unique<Text>();
    m_nextChecksum = 0;
    m_count_emits = 0;
    m_count_skips = 0;
    m_count_missing = 0;
    m_report.clear();
    m_text->BeginSeq();
    return kErr_NoErr;
}

void KCGraphicStreamToYAML::ExecMissingEnd(uint32_t) {
    m_text->EndSeq();
    End();
}

int32_t KCGraphicStreamToYAML::ExecFinish(int32_t result) {
    if (result != kErr_NoErr) {
        m_text->BeginMap();
        m_text->Number("error", int64_t{result}).Number("stream_offset", uint64_t{GetErrorOffset()});
        m_text->EndMap();
    }
    EmitCounters();
    m_text->EndSeq();
    return result;
}

void KCGraphicStreamToYAML::EmitCounters() {
    const uint64_t shown = m_count_emits + m_count_skips;
    const uint64_t executed = GetExecCommandsCount() - GetEndFramesCount();
    m_text->BeginMap();
    m_text->Number("KCGraphicStreamToYAML.m_ExecCommands_count", uint64_t{GetExecCommandsCount()})
        .Number("KCGraphicStreamToYAML.m_count_emits", uint64_t{m_count_emits})
        .Number("KCGraphicStreamToYAML.m_count_skips", uint64_t{m_count_skips})
        .Number("KCGraphicStreamToYAML.m_count_missing", uint64_t{m_count_missing})
        .Number("m_count_emits+m_count_skips", shown)
        .Number("m_ExecCommands_count (without end frames)", executed);
    m_text->EndMap();
    if (shown != executed)
        m_report << "m_count_emits+m_count_skips " << shown << ", m_ExecCommands_count (without end frames) "
                 << executed << '\n';
}

// Opens the map of a record and writes what every record has.
template <class Record>
KCGraphicStreamToYAML::Text& KCGraphicStreamToYAML::Begin(const KCGSRecord<Record>& command) {
    SGSHeader header;
    std::memcpy(&header, command.GetBytes().data(), sizeof header);
    ++m_count_emits;
    m_text->BeginMap();
    m_text->Key(GraphicStreamCommandToText(header.code, kShortName).c_str());
    m_text->BeginMap();
    m_text->Number("stream_offset", uint64_t{command.GetOffset()})
        .Number("size", uint64_t{header.size})
        .Hex("checksum", NextChecksum(command.GetBytes()), 16);
    return *m_text;
}

int32_t KCGraphicStreamToYAML::End() {
    m_text->EndMap();
    m_text->EndMap();
    return kErr_NoErr;
}

uint64_t KCGraphicStreamToYAML::NextChecksum(std::span<const uint8_t> record) {
    if (m_checksums.empty())
        return GSStructChecksum(record.data(), record.size(), GetPointers());
    if (m_nextChecksum < m_checksums.size())
        return m_checksums[m_nextChecksum++];
    if (m_report.empty()) // said once
        m_report << "not enough checksums\n";
    return 0;
}

int32_t KCGraphicStreamToYAML::EmitBare(const KCGSRecord<SGSHeader>& command) {
    Begin(command);
    return End();
}

int32_t KCGraphicStreamToYAML::EmitText(const KCGSRecord<SGSHeader>& command) {
    Begin(command).Quoted("contents", command.GetTailText());
    return End();
}

int32_t KCGraphicStreamToYAML::ExecIllegalGraphicStreamCommand(KCGSRecord<SGSHeader> command) {
    return EmitBare(command);
}
int32_t KCGraphicStreamToYAML::ExecNone(KCGSRecord<SGSHeader> command) { return EmitBare(command); }
int32_t KCGraphicStreamToYAML::ExecAny(KCGSRecord<SGSHeader> command) { return EmitBare(command); }
int32_t KCGraphicStreamToYAML::ExecStreamSignature(KCGSRecord<SGSHeader> command) { return EmitBare(command); }

int32_t KCGraphicStreamToYAML::ExecIgnoreStreamCommand(KCGSRecord<SGSHeader>) {
    ++m_count_skips;
    return kErr_NoErr;
}

int32_t KCGraphicStreamToYAML::ExecUnknown(KCGSRecord<SGSHeader> command) {
    EmitBare(command);
    // Shown by its number, yet counted as skipped: what it holds is not known.
    --m_count_emits;
    ++m_count_skips;
    return kErr_NoErr;
}

int32_t KCGraphicStreamToYAML::ExecBeginStream(KCGSRecord<SGSStream> command) {
    const SGSStream stream = command.Read();
    Begin(command)
        .Number("version", uint64_t{stream.version})
        .Number("flags", uint64_t{stream.flags})
        .Number("owner", stream.owner)
        .Number("sequence", stream.sequence)
        .Numbers("logical_size", {stream.logicalSize.width, stream.logicalSize.height})
        .Number("scale", stream.scale)
        .Color("color", stream.color)
        .Quoted("name", {stream.name, strnlen(stream.name, sizeof stream.name)})
        .BeginList("contents");
    return kErr_NoErr;
}

int32_t KCGraphicStreamToYAML::ExecEndStream(KCGSRecord<SGSHeader>) {
    ++m_count_skips;
    m_text->EndSeq();
    return End();
}

int32_t KCGraphicStreamToYAML::ExecBeginFrame(KCGSRecord<SGSFrame> command) {
    const SGSFrame frame = command.Read();
    Text& text = Begin(command);
    text.Number("owner", frame.owner);
    text.Key("rect");
    text.BeginInlineSeq();
    for (const int32_t value : {frame.x, frame.y, frame.width, frame.height})
        text.Item(value);
    text.EndSeq();
    text.BeginList("frame children");
    return kErr_NoErr;
}

int32_t KCGraphicStreamToYAML::ExecEndFrame(KCGSRecord<SGSHeader>) {
    m_text->EndSeq();
    return End();
}

int32_t KCGraphicStreamToYAML::ExecStreamFormat(KCGSRecord<SGSStreamFormat> command) {
    Begin(command).Number("version", uint64_t{command.Read().format});
    return End();
}

int32_t KCGraphicStreamToYAML::ExecResourcesBaseURL(KCGSRecord<SGSHeader> command) { return EmitText(command); }
int32_t KCGraphicStreamToYAML::ExecRemark(KCGSRecord<SGSHeader> command) { return EmitText(command); }

int32_t KCGraphicStreamToYAML::ExecMetaData(KCGSRecord<SGSMetaData> command) {
    const std::string_view text = command.GetTailText();
    const size_t nameSize = command.Read().nameSize;
    Begin(command).Quoted("name", text.substr(0, nameSize)).Quoted("contents", text.substr(nameSize));
    return End();
}

int32_t KCGraphicStreamToYAML::ExecFont(KCGSRecord<SGSFont> command) {
    const SGSFont font = command.Read();
    Begin(command)
        .Quoted("family", command.GetTailText())
        .Number("height", font.height)
        .Number("style", uint64_t{font.style});
    return End();
}

int32_t KCGraphicStreamToYAML::ExecRotateFrame(KCGSRecord<SGSRotateFrame> command) {
    Begin(command).Number("angle", command.Read().angle);
    return End();
}

int32_t KCGraphicStreamToYAML::ExecDrawImage(KCGSRecord<SGSDrawImage> command) {
    const SGSDrawImage image = command.Read();
    Begin(command)
        .Flags(image.flags)
        .Number("ResID", int64_t{image.resID})
        .Numbers("location", {image.location.x, image.location.y})
        .Numbers("logical_size", {image.scaledSize.width, image.scaledSize.height})
        .Rect("clip_rect", image.clipRect);
    return End();
}

int32_t KCGraphicStreamToYAML::ExecDrawImageMultipleClips(KCGSRecord<SGSDrawImageMultipleClips> command) {
    const SGSDrawImageMultipleClips image = command.Read();
    Begin(command)
        .Flags(image.flags)
        .Number("ResID", int64_t{image.resID})
        .Numbers("location", {image.location.x, image.location.y})
        .Numbers("logical_size", {image.scaledSize.width, image.scaledSize.height})
        .Number("num_elements", uint64_t{image.numRects});
    return End();
}

int32_t KCGraphicStreamToYAML::ExecDrawText(KCGSRecord<SGSDrawText> command) {
    const SGSDrawText text = command.Read();
    Begin(command)
        .Flags(text.flags)
        .Color("draw_color", text.drawColor)
        .Name("horizontal", text.horizontal)
        .Name("vertical", text.vertical)
        .Rect("rect", text.rect)
        .Rect("clip_rect", text.clipRect)
        .Number("angle", text.angle);
    return End();
}

int32_t KCGraphicStreamToYAML::ExecDrawOval(KCGSRecord<SGSDrawOval> command) {
    const SGSDrawOval oval = command.Read();
    Begin(command)
        .Flags(oval.flags)
        .Color("draw_color", oval.drawColor)
        .Number("stroke_width", oval.strokeWidth)
        .Hex("stroke_pattern", oval.strokePattern, 4)
        .Method(oval.method)
        .Rect("rect", oval.rect)
        .Number("start_angle", oval.startAngle)
        .Number("sweep_angle", oval.sweepAngle)
        .Number("slices_num", uint64_t{oval.slicesNum});
    return End();
}

int32_t KCGraphicStreamToYAML::ExecDrawVertices(KCGSRecord<SGSDrawVertices> command) {
    const SGSDrawVertices vertices = command.Read();
    Begin(command)
        .Flags(vertices.flags)
        .Color("draw_color", vertices.drawColor)
        .Number("stroke_width", vertices.strokeWidth)
        .Hex("stroke_pattern", vertices.strokePattern, 4)
        .Method(vertices.method)
        .Name("kind", vertices.kind)
        .Number("num_elements", uint64_t{vertices.numVertices});
    return End();
}

int32_t KCGraphicStreamToYAML::ExecClipVertices(KCGSRecord<SGSClipVertices> command) {
    const SGSClipVertices clip = command.Read();
    Begin(command).Flags(clip.flags).Number("num_elements", uint64_t{clip.numVertices});
    return End();
}

int32_t KCGraphicStreamToYAML::ExecClipRect(KCGSRecord<SGSClipRect> command) {
    const SGSClipRect clip = command.Read();
    Begin(command).Flags(clip.flags).Rect("rect", clip.rect);
    return End();
}

int32_t KCGraphicStreamToYAML::ExecClipMultipleRects(KCGSRecord<SGSClipMultipleRects> command) {
    const SGSClipMultipleRects clip = command.Read();
    Begin(command).Flags(clip.flags).Number("num_elements", uint64_t{clip.numRects});
    return End();
}

int32_t KCGraphicStreamToYAML::ExecDataHere(KCGSRecord<SGSDataHere> command) {
    const SGSDataHere data = command.Read();
    EmitData(Begin(command), data, command.GetTail());
    return End();
}

int32_t KCGraphicStreamToYAML::ExecDataPtr(KCGSRecord<SGSDataPtr> command) {
    const SGSDataPtr data = command.Read();
    Text& text = Begin(command);
    if (GetPointers() == kFollowPointers) {
        EmitData(text, data, {static_cast<const uint8_t*>(data.GetAddress()), data.GetDataSize()});
        return End();
    }
    ++m_count_missing;
    text.Name("type", data.dataType)
        .Name("purpose", data.purpose)
        .Number("num_elements", uint64_t{data.numElements})
        .Plain("the_data", "not here (a pointer of another process)");
    return End();
}

template <class Record>
void KCGraphicStreamToYAML::EmitData(Text& text, const Record& data, std::span<const uint8_t> bytes) {
    text.Name("type", data.dataType)
        .Name("purpose", data.purpose)
        .Number("num_elements", uint64_t{data.numElements})
        .Data(data.purpose == kClipRectangles ? "Clip Rectangles" : "the_data", data.dataType, data.purpose,
              bytes.data(), bytes.size());
}

} // namespace kvKorvoV12_9_0_320::kvGS
