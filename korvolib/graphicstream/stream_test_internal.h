// For the tests of the graphic stream: a stream with every command, random streams, and an engine that writes again
// what it reads.
#pragma once

#include <cstdint>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include <korvolib/graphicstream/binary_writer.h>
#include <korvolib/graphicstream/engine_base.h>

namespace kvGSTest {

using namespace kvKorvo::kvGS;

inline std::vector<uint8_t> BytesOf(const KCGraphicStreamBinaryWriter& writer) {
    const auto bytes = writer.GetStreamMemObj().GetBytes();
    return {bytes.begin(), bytes.end()};
}

/// A PNG file of 2 × 1 pixels, red and half-transparent blue.
inline const std::vector<uint8_t>& SmallPNG() {
    static const std::vector<uint8_t> png = {
        0x89, 0x50, 0x4E, 0x47, 0x0D, 0x0A, 0x1A, 0x0A, 0x00, 0x00, 0x00, 0x0D, 0x49, 0x48, 0x44, 0x52, 0x00, 0x00,
        0x00, 0x02, 0x00, 0x00, 0x00, 0x01, 0x08, 0x06, 0x00, 0x00, 0x00, 0xF4, 0x22, 0x7F, 0x8A, 0x00, 0x00, 0x00,
        0x0E, 0x49, 0x44, 0x41, 0x54, 0x78, 0x9C, 0x63, 0xF8, 0xCF, 0xC0, 0x00, 0x42, 0x0D, 0x00, 0x0F, 0x7A, 0x03,
        0x7E, 0x77, 0xE9, 0x7F, 0x97, 0x00, 0x00, 0x00, 0x00, 0x49, 0x45, 0x4E, 0x44, 0xAE, 0x42, 0x60, 0x82};
    return png;
}

/// One record of every command at least, in an order that makes sense. All data in place.
inline void RecordEveryCommand(KCGraphicStreamBinaryWriter& writer) {
    writer.ActivateRemarks().ActivateMeatData();
    SGSStream stream;
    stream.owner = 7;
    stream.sequence = 3;
    stream.logicalSize = {200, 100};
    stream.scale = 2;
    stream.color = {16, 32, 48, 255};
    std::strcpy(stream.name, "every command");
    writer.CommandHeader(kStreamSignature).StreamFormat().OpenStream(stream);
    writer.ResourcesBaseURL("file:///skins/").Remark("a \"remark\"\nof two lines").MetaData("unit", "dB");
    writer.OpenFrame(kvKorvo::KURect<int>::FromEdges(10, 20, 110, 70)).RotateFrame(12.5F);
    writer.Font("DejaVu Sans", 14, kBold).SetDrawColor({255, 128, 0, 200}).SetStrokeWidth(1.5F);
    writer.ClipRect({0, 0, 150, 90});
    const SGSRect rects[] = {{0, 0, 50, 50}, {60, 0, 50.5F, 50}};
    writer.ClipMultipleRects(rects);
    const float triangle[] = {0, 0, 190, 0, 0, 95};
    writer.GetGSArrays().AddPoints_2Df(triangle, 3);
    writer.ClipVertices();
    writer.SetStrokePattern(0xF0F0).DrawLine(kvKorvo::KUPoint<short>{-1, 2}, kvKorvo::KUPoint<short>{30, 40});
    writer.SetStrokePattern(0xFFFF).SetSegment(6).DrawOval({5, 6, 70, 80}, kWire, 45, -90).SetSegment(0);
    writer.SetAntialias(false).SetXorMode(true).DrawSolidRect({1, 2, 3, 4}, kvKorvo::KURect<short>());
    writer.SetAntialias(true).SetXorMode(false);
    const uint8_t colors[] = {255, 0, 0, 0, 255, 0, 0, 0, 255};
    writer.GetGSArrays().AddColors_3ub(colors, 3);
    writer.DrawVertices(kTriangleFan);
    writer.DrawTheText("Gain \xC2\xB5", {0, 0, 100, 20}, kRight, kBottom, {1, 2, 90, 18});
    writer.SpecialText("dB", {0, 0, 20, 100}, -90);
    writer.DrawPNGScaledAndClipped({1001}, {5, 5, 40, 40}, {6, 6, 20, 20});
    writer.DrawPNGAtPositionMultipleClips({SmallPNG().data(), SmallPNG().size()}, {3, 4}, rects);
    writer.CommandHeader(kAny).CommandHeader(kNone).CommandHeader(kIgnoreStreamCommand);
    writer.CommandHeader(kIllegalGraphicStreamCommand);
    const int32_t ids[] = {1001, -2};
    writer.DataHere(kInt32, kResID, ids, 2).DataHere(4711, kAny, "xyz", 3).DataHere(kInt8, kAny, "\xFF\x01", 2);
    const uint8_t rgba[] = {1, 2, 3, 4, 5, 6, 7, 8};
    writer.DataHere(kRGBAColor, kRGBAColor, rgba, 2);
    const int16_t points[] = {1, 2, 3, -4, -5, -6};
    writer.DataHere(kInt16, kPoint3D, points, 6);
    writer.CloseFrame().CommandHeader(kEndStream);
}

/// Writes by a writer's operations what it reads.
class Rewriter final : public KCGraphicStreamEngineBase {
  public:
    KCGraphicStreamBinaryWriter writer;

  protected:
    using Header = KCGSRecord<SGSHeader>;

    int32_t Bare(const Header& command) {
        Flush();
        writer.CommandHeader(command.Read().code);
        return 0;
    }
    int32_t ExecIllegalGraphicStreamCommand(Header command) override { return Bare(command); }
    int32_t ExecIgnoreStreamCommand(Header command) override { return Bare(command); }
    int32_t ExecNone(Header command) override { return Bare(command); }
    int32_t ExecAny(Header command) override { return Bare(command); }
    int32_t ExecStreamSignature(Header command) override { return Bare(command); }
    int32_t ExecEndStream(Header command) override { return Bare(command); }
    int32_t ExecEndFrame(Header command) override { return Bare(command); }
    int32_t ExecUnknown(Header command) override { return Bare(command); }
    int32_t ExecBeginStream(KCGSRecord<SGSStream> command) override {
        Flush();
        writer.OpenStream(command.Read());
        return 0;
    }
    int32_t ExecStreamFormat(KCGSRecord<SGSStreamFormat> command) override {
        Flush();
        writer.StreamFormat(command.Read().format);
        return 0;
    }
    int32_t ExecResourcesBaseURL(Header command) override {
        Flush();
        writer.ResourcesBaseURL(command.GetTailText());
        return 0;
    }
    int32_t ExecBeginFrame(KCGSRecord<SGSFrame> command) override {
        Flush();
        writer.OpenFrame(command.Read());
        return 0;
    }
    int32_t ExecRotateFrame(KCGSRecord<SGSRotateFrame> command) override {
        Flush();
        writer.RotateFrame(command.Read().angle);
        return 0;
    }
    int32_t ExecDrawImage(KCGSRecord<SGSDrawImage> command) override {
        const SGSDrawImage image = command.Read();
        SetFlags(image.flags);
        const SGSRect target{image.location.x, image.location.y, image.scaledSize.width, image.scaledSize.height};
        const KCGSImage picture = PictureOf(image.resID);
        if (!target.IsEmpty() && !image.clipRect.IsEmpty())
            writer.DrawPNGScaledAndClipped(picture, target, image.clipRect);
        else if (!target.IsEmpty())
            writer.DrawPNGScaled(picture, target);
        else if (!image.clipRect.IsEmpty())
            writer.DrawPNGAtPositionClipped(picture, image.location, image.clipRect);
        else
            writer.DrawPNGAtPosition(picture, image.location);
        return 0;
    }
    int32_t ExecDrawImageMultipleClips(KCGSRecord<SGSDrawImageMultipleClips> command) override {
        const SGSDrawImageMultipleClips image = command.Read();
        SetFlags(image.flags);
        const std::vector<SGSRect> rects = Rects();
        writer.DrawPNGAtPositionMultipleClips(PictureOf(image.resID), image.location, rects);
        return 0;
    }
    int32_t ExecDrawText(KCGSRecord<SGSDrawText> command) override {
        const SGSDrawText text = command.Read();
        SetFlags(text.flags);
        writer.SetDrawColor(text.drawColor);
        const std::vector<uint8_t> bytes = Take(kText);
        const KCGSText line(std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
        if (text.angle != 0)
            writer.SpecialText(line, text.rect, text.angle, text.horizontal, text.vertical);
        else if (text.clipRect.IsEmpty())
            writer.DrawTheText(line, text.rect, text.horizontal, text.vertical);
        else
            writer.DrawTheText(line, text.rect, text.horizontal, text.vertical, text.clipRect);
        return 0;
    }
    int32_t ExecDrawOval(KCGSRecord<SGSDrawOval> command) override {
        const SGSDrawOval oval = command.Read();
        Flush();
        SetFlags(oval.flags);
        writer.SetDrawColor(oval.drawColor).SetStrokeWidth(oval.strokeWidth).SetStrokePattern(oval.strokePattern);
        writer.SetSegment(oval.slicesNum);
        writer.DrawOval(oval.rect, static_cast<KEGSMethod>(oval.method), oval.startAngle, oval.sweepAngle);
        return 0;
    }
    int32_t ExecDrawVertices(KCGSRecord<SGSDrawVertices> command) override {
        const SGSDrawVertices vertices = command.Read();
        SetFlags(vertices.flags);
        writer.SetDrawColor(vertices.drawColor).SetStrokeWidth(vertices.strokeWidth);
        writer.SetStrokePattern(vertices.strokePattern);
        FillArrays();
        writer.DrawVertices(vertices.kind, static_cast<KEGSMethod>(vertices.method));
        return 0;
    }
    int32_t ExecClipVertices(KCGSRecord<SGSClipVertices> command) override {
        SetFlags(command.Read().flags);
        FillArrays();
        writer.ClipVertices();
        return 0;
    }
    int32_t ExecClipRect(KCGSRecord<SGSClipRect> command) override {
        Flush();
        SetFlags(command.Read().flags);
        writer.ClipRect(command.Read().rect);
        return 0;
    }
    int32_t ExecClipMultipleRects(KCGSRecord<SGSClipMultipleRects> command) override {
        SetFlags(command.Read().flags);
        writer.ClipMultipleRects(Rects());
        return 0;
    }
    int32_t ExecDataHere(KCGSRecord<SGSDataHere> command) override {
        const SGSDataHere data = command.Read();
        m_pending.push_back({data, {command.GetTail().begin(), command.GetTail().end()}});
        return 0;
    }
    int32_t ExecDataPtr(KCGSRecord<SGSDataPtr> command) override {
        const SGSDataPtr data = command.Read();
        Flush();
        writer.DataPtr(static_cast<int>(data.dataType), static_cast<int>(data.purpose), data.GetAddress(),
                       data.numElements);
        return 0;
    }
    int32_t ExecFont(KCGSRecord<SGSFont> command) override {
        Flush();
        writer.Font(command.GetTailText(), command.Read().height, command.Read().style);
        return 0;
    }
    int32_t ExecRemark(Header command) override {
        Flush();
        writer.ActivateRemarks().Remark(command.GetTailText());
        return 0;
    }
    int32_t ExecMetaData(KCGSRecord<SGSMetaData> command) override {
        Flush();
        const std::string_view text = command.GetTailText();
        const size_t nameSize = command.Read().nameSize;
        writer.ActivateMeatData().MetaData(text.substr(0, nameSize), text.substr(nameSize));
        return 0;
    }
    int32_t ExecFinish(int32_t result) override {
        Flush();
        return result;
    }

  private:
    struct Pending {
        SGSDataHere record;
        std::vector<uint8_t> bytes;
    };

    void SetFlags(uint32_t flags) {
        writer.SetAntialias((flags & kAntialias) != 0).SetXorMode((flags & eDrawInXORMode) != 0);
    }
    // What no command asked for is written as it was.
    void Flush() {
        for (const Pending& data : m_pending) {
            writer.DataHere(static_cast<int>(data.record.dataType), static_cast<int>(data.record.purpose),
                            data.bytes.data(), data.record.numElements);
        }
        m_pending.clear();
    }
    std::vector<uint8_t> Take(uint32_t purpose) {
        if (m_pending.empty() || m_pending.back().record.purpose != purpose)
            return {};
        std::vector<uint8_t> bytes = std::move(m_pending.back().bytes);
        m_pending.pop_back();
        return bytes;
    }
    std::vector<SGSRect> Rects() {
        const std::vector<uint8_t> bytes = Take(kClipRectangles);
        std::vector<SGSRect> rects(bytes.size() / sizeof(SGSRect));
        if (!rects.empty())
            std::memcpy(static_cast<void*>(rects.data()), bytes.data(), bytes.size());
        return rects;
    }
    KCGSImage PictureOf(int32_t resID) {
        if (resID != 0)
            return {resID};
        m_png = Take(kDrawImage);
        return {m_png.data(), m_png.size()};
    }
    void FillArrays() {
        KCGSArrays& arrays = writer.GetGSArrays();
        arrays.ClearArrays();
        for (const Pending& data : m_pending)
            AddToArrays(arrays, data);
        m_pending.clear();
    }
    static void AddToArrays(KCGSArrays& arrays, const Pending& data) {
        const size_t count = data.record.numElements;
        std::vector<float> floats(count);
        std::vector<int16_t> shorts(count);
        if (data.record.dataType == kFloat)
            std::memcpy(floats.data(), data.bytes.data(), data.bytes.size());
        if (data.record.dataType == kInt16)
            std::memcpy(shorts.data(), data.bytes.data(), data.bytes.size());
        if (data.record.purpose == kRGBColor)
            arrays.AddColors_3ub(data.bytes.data(), count / 3);
        else if (data.record.purpose == kRGBAColor)
            arrays.AddColors_4ub(data.bytes.data(), count / 4);
        else if (data.record.purpose == kPoint2D && data.record.dataType == kFloat)
            arrays.AddPoints_2Df(floats.data(), count / 2);
        else if (data.record.purpose == kPoint2D)
            arrays.AddPoints_2Ds(shorts.data(), count / 2);
        else if (data.record.dataType == kFloat)
            arrays.AddPoints_3Df(floats.data(), count / 3);
        else
            arrays.AddPoints_3Ds(shorts.data(), count / 3);
    }

    std::vector<Pending> m_pending;
    std::vector<uint8_t> m_png;
};

/// Records `count` random operations: every operation of the writer, with any settings, in balanced frames.
class RandomRecorder {
  public:
    explicit RandomRecorder(uint32_t seed) : m_random(seed) {}

    void Record(KCGraphicStreamBinaryWriter& writer, int count) {
        writer.ActivateRemarks().ActivateMeatData();
        size_t open = 0;
        for (int i = 0; i < count; ++i) {
            open = Structure(writer, open);
            Draw(writer);
        }
        for (; open != 0; --open)
            writer.CloseFrame();
    }

  private:
    uint32_t Below(uint32_t limit) { return static_cast<uint32_t>(m_random() % limit); }
    float Number() { return static_cast<float>(static_cast<int>(Below(40001)) - 20000) / 64; }
    float Positive() { return static_cast<float>(1 + Below(20000)) / 64; }
    SGSRect Rect() { return {Number(), Number(), Positive(), Positive()}; }
    SGSLocation Location() { return {Number(), Number()}; }
    SGSRGBAColor Color() {
        return {static_cast<uint8_t>(Below(256)), static_cast<uint8_t>(Below(256)),
                static_cast<uint8_t>(Below(256)), static_cast<uint8_t>(Below(256))};
    }
    std::string Text() {
        std::string text;
        for (uint32_t length = Below(40); length != 0; --length)
            text += static_cast<char>(Below(256));
        return text;
    }
    KCGSImage Image() {
        return Below(2) == 0 ? KCGSImage(static_cast<int32_t>(1 + Below(9)))
                             : KCGSImage(SmallPNG().data(), SmallPNG().size());
    }
    std::vector<SGSRect> Rects() {
        std::vector<SGSRect> rects(Below(4));
        for (SGSRect& rect : rects)
            rect = Rect();
        return rects;
    }
    uint32_t Kind() {
        constexpr uint32_t kKinds[] = {kPolygon, kLineStrip, kTriangleFan, kTriangleStrip, kStraightLines};
        return kKinds[Below(5)];
    }
    uint32_t Horizontal() {
        constexpr uint32_t kAll[] = {kLeft, kHCenter, kRight};
        return kAll[Below(3)];
    }
    uint32_t Vertical() {
        constexpr uint32_t kAll[] = {kTop, kVCenter, kBottom};
        return kAll[Below(3)];
    }
    KEGSMethod Method() { return Below(2) == 0 ? kWire : kSolid; }

    void FillArrays(KCGSArrays& arrays) {
        arrays.ClearArrays();
        const uint32_t form = Below(4);
        const uint32_t colors = Below(3);
        const uint32_t count = 1 + Below(8);
        for (uint32_t i = 0; i < count; ++i) {
            const auto x = static_cast<int16_t>(Below(400));
            if (form == 0)
                arrays.AddPoint_2Ds(x, 5);
            else if (form == 1)
                arrays.AddPoint_3Ds(x, 5, -6);
            else if (form == 2)
                arrays.AddPoint_2Df(Number(), Number());
            else
                arrays.AddPoint_3Df(Number(), Number(), Number());
            if (colors == 1)
                arrays.AddColor_3ub(1, 2, static_cast<uint8_t>(i));
            else if (colors == 2)
                arrays.AddColor_4ub(1, 2, static_cast<uint8_t>(i), 4);
        }
    }

    size_t Structure(KCGraphicStreamBinaryWriter& writer, size_t open) {
        writer.SetDrawColor(Color())
            .SetStrokeWidth(Positive())
            .SetStrokePattern(static_cast<uint16_t>(Below(65536)));
        writer.SetAntialias(Below(2) == 0).SetXorMode(Below(2) == 0).SetSegment(Below(20));
        const uint32_t choice = Below(6);
        if (choice == 0 && open < 20) {
            SGSFrame frame;
            frame.owner = m_random();
            frame.width = static_cast<int32_t>(Below(300));
            writer.OpenFrame(frame);
            return open + 1;
        }
        if (choice == 1 && open != 0) {
            writer.CloseFrame();
            return open - 1;
        }
        return open;
    }

    void Draw(KCGraphicStreamBinaryWriter& writer) {
        switch (Below(24)) {
        case 0:
            writer.DrawLine(Location(), Location());
            break;
        case 1:
            writer.DrawLine(kvKorvo::KUPoint<short>{1, -2}, kvKorvo::KUPoint<short>{300, 4});
            break;
        case 2:
            writer.DrawArcLine(Rect(), Number(), Number());
            break;
        case 3:
            writer.DrawOval(Rect(), Method(), Number(), Number());
            break;
        case 4:
            writer.DrawSolidRect(Color(), kvKorvo::KURect<short>::FromEdges(1, 2, 30, 40));
            break;
        case 5:
            writer.DrawWireRect(Color(), kvKorvo::KURect<float>::FromEdges(1, 2, 30, 40));
            break;
        case 6:
            writer.DrawXORRect(kvKorvo::KURect<float>::FromEdges(1, 2, 30, 40));
            break;
        case 7:
            FillArrays(writer.GetGSArrays());
            writer.DrawVertices(Kind(), Method());
            break;
        case 8:
            writer.DrawTheText(Text(), Rect(), Horizontal(), Vertical());
            break;
        case 9:
            writer.DrawTheText(Text(), Rect(), Horizontal(), Vertical(), Rect());
            break;
        case 10:
            writer.SpecialText(Text(), Rect(), Positive(), Horizontal(), Vertical());
            break;
        case 11:
            writer.DrawPNGAtPosition(Image(), Location());
            break;
        case 12:
            writer.DrawPNGAtPositionClipped(Image(), Location(), Rect());
            break;
        case 13:
            writer.DrawPNGAtPositionMultipleClips(Image(), Location(), Rects());
            break;
        case 14:
            writer.DrawPNGScaled(Image(), Rect());
            break;
        case 15:
            writer.DrawPNGScaledAndClipped(Image(), Rect(), Rect());
            break;
        case 16:
            writer.ClipRect(Rect());
            break;
        case 17:
            writer.ClipMultipleRects(Rects());
            break;
        case 18:
            FillArrays(writer.GetGSArrays());
            writer.ClipVertices();
            break;
        case 19:
            writer.RotateFrame(Number()).Font(Text(), Positive(), Below(4));
            break;
        case 20:
            writer.Remark(Text()).MetaData(Text(), Text());
            break;
        case 21:
            writer.ResourcesBaseURL(Text()).StreamFormat(Below(5)).CommandHeader(kAny);
            break;
        case 22:
            writer.DataHere(kInt32, kResID, "12345678", 2).CommandHeader(kNone);
            break;
        default:
            writer.CommandHeader(kStreamSignature).OpenStream(SGSStream()).CommandHeader(kEndStream);
            break;
        }
    }

    std::mt19937 m_random;
};

} // namespace kvGSTest
