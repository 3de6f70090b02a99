#include <korvolib/graphicstream/painter.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <utility>

#include <korvolib/graphicstream/text.h>
#include <korvolib/utilities/error_codes.h>

namespace kvKorvoV12_9_0_320::kvGS {

namespace {

bool IsFinite(const SGSRect& rect) noexcept {
    return std::isfinite(rect.x) && std::isfinite(rect.y) && std::isfinite(rect.width) &&
           std::isfinite(rect.height);
}

float Limit(float coordinate) noexcept {
    constexpr float kMost = KCGraphicStreamPainter::kMaxCoordinate;
    return std::clamp(coordinate, -kMost, kMost);
}

SGSRect Limit(const SGSRect& rect) noexcept {
    return {Limit(rect.x), Limit(rect.y), Limit(rect.width), Limit(rect.height)};
}

SGSLocation Middle(const SGSRect& rect) noexcept { return {rect.x + rect.width / 2, rect.y + rect.height / 2}; }

void AppendRect(const SGSRect& rect, std::vector<KUPoint<float>>& path) {
    if (rect.IsEmpty() || !IsFinite(rect))
        return;
    const float left = Limit(rect.x);
    const float top = Limit(rect.y);
    const float right = Limit(rect.x + rect.width);
    const float bottom = Limit(rect.y + rect.height);
    path.insert(path.end(), {{left, top}, {right, top}, {right, bottom}, {left, bottom}});
}

KCGSPath Rectangles(const std::vector<KUPoint<float>>& path) noexcept { return {path, 4, true}; }

KCGSPaint PaintOf(uint32_t flags, SGSRGBAColor color) noexcept {
    return {color, (flags & kAntialias) != 0, (flags & eDrawInXORMode) != 0};
}

// The text's line: a share of the em below the top, above the bottom, or so that capitals stand in the middle. The
// same in every engine, whatever font it finds.
constexpr float kAscent = 0.93F;
constexpr float kDescent = 0.24F;
constexpr float kHalfCapital = 0.36F;

float BaselineY(const SGSRect& rect, uint32_t vertical, float height) noexcept {
    switch (vertical) {
    case kTop:
        return rect.y + kAscent * height;
    case kBottom:
        return rect.y + rect.height - kDescent * height;
    default:
        return rect.y + rect.height / 2 + kHalfCapital * height;
    }
}

SGSLocation Baseline(const SGSRect& rect, uint32_t horizontal, uint32_t vertical, float height) noexcept {
    const float y = BaselineY(rect, vertical, height);
    switch (horizontal) {
    case kHCenter:
        return {rect.x + rect.width / 2, y};
    case kRight:
        return {rect.x + rect.width, y};
    default:
        return {rect.x, y};
    }
}

// One line of valid text; false when there is none.
bool MakeLine(std::string_view text, KCStMemObj& line) {
    (void)line.Resize(0); // a smaller size always has its memory
    if (GSAppendValidText(text, line) != kErr_NoErr)
        return false;
    for (uint8_t& byte : line.GetBytes()) {
        if (byte < 0x20)
            byte = ' ';
    }
    return !line.IsEmpty();
}

} // namespace

int32_t KCGraphicStreamPainter::ExecStart() {
    m_numPictures = 0;
    m_points = m_colors = m_textData = m_rects = m_png = KCGSDataOperand();
    m_states[0] = State();
    return kErr_NoErr;
}

// Records outside any stream belong to the first picture.
bool KCGraphicStreamPainter::IsDrawing() const noexcept {
    return m_selected == (m_numPictures == 0 ? 0 : m_numPictures - 1);
}

int32_t KCGraphicStreamPainter::ExecBeginStream(KCGSRecord<SGSStream> command) {
    m_numPictures += GetDepth() == 1; // a stream inside is a part of its picture
    const SGSStream stream = command.Read();
    Current() = m_states[GetDepth() - 1];
    Current().frame = {0, 0, stream.logicalSize.width, stream.logicalSize.height};
    if (!IsDrawing())
        return kErr_NoErr;
    const int32_t result = GetDepth() == 1 ? BeginPicture(stream) : kErr_NoErr;
    return result == kErr_NoErr ? OpenGroup() : result;
}

int32_t KCGraphicStreamPainter::ExecBeginFrame(KCGSRecord<SGSFrame> command) {
    const SGSFrame frame = command.Read();
    Current() = m_states[GetDepth() - 1];
    Current().frame = {static_cast<float>(frame.x), static_cast<float>(frame.y), static_cast<float>(frame.width),
                       static_cast<float>(frame.height)};
    return IsDrawing() ? OpenGroup() : kErr_NoErr;
}

int32_t KCGraphicStreamPainter::ExecEndStream(KCGSRecord<SGSHeader>) {
    return IsDrawing() ? CloseGroup() : kErr_NoErr;
}
int32_t KCGraphicStreamPainter::ExecEndFrame(KCGSRecord<SGSHeader>) {
    return IsDrawing() ? CloseGroup() : kErr_NoErr;
}
void KCGraphicStreamPainter::ExecMissingEnd(uint32_t) {
    if (IsDrawing())
        CloseGroup();
}

int32_t KCGraphicStreamPainter::ExecRotateFrame(KCGSRecord<SGSRotateFrame> command) {
    const float angle = command.Read().angle;
    const SGSLocation centre = Middle(Current().frame);
    if (!IsDrawing() || !std::isfinite(angle) || !std::isfinite(centre.x) || !std::isfinite(centre.y))
        return kErr_NoErr;
    return Rotate(std::fmod(angle, 360.0F), {Limit(centre.x), Limit(centre.y)});
}

// Clips.

int32_t KCGraphicStreamPainter::ExecClipRect(KCGSRecord<SGSClipRect> command) {
    const SGSClipRect clip = command.Read();
    m_path.clear();
    AppendRect(clip.rect, m_path);
    return IsDrawing() ? Clip(Rectangles(m_path), (clip.flags & kAntialias) != 0) : kErr_NoErr;
}

int32_t KCGraphicStreamPainter::ExecClipMultipleRects(KCGSRecord<SGSClipMultipleRects> command) {
    const SGSClipMultipleRects clip = command.Read();
    if (!TakeRects(clip.numRects) || !IsDrawing())
        return kErr_NoErr;
    return Clip(Rectangles(m_path), (clip.flags & kAntialias) != 0);
}

int32_t KCGraphicStreamPainter::ExecClipVertices(KCGSRecord<SGSClipVertices> command) {
    const SGSClipVertices clip = command.Read();
    if (!TakePoints(clip.numVertices) || !IsDrawing())
        return kErr_NoErr;
    return Clip({m_path, m_path.size(), true}, (clip.flags & kAntialias) != 0);
}

// Text.

int32_t KCGraphicStreamPainter::ExecFont(KCGSRecord<SGSFont> command) {
    const SGSFont font = command.Read();
    constexpr size_t kMostOfAFamily = 127;
    Current().family = command.GetTailText().substr(0, kMostOfAFamily);
    Current().fontHeight = font.height;
    Current().fontStyle = font.style;
    return kErr_NoErr;
}

int32_t KCGraphicStreamPainter::ExecDrawText(KCGSRecord<SGSDrawText> command) {
    const SGSDrawText text = command.Read();
    const KCGSDataOperand data = std::exchange(m_textData, KCGSDataOperand());
    const State& state = Current();
    const bool drawable = IsFinite(text.rect) && std::isfinite(text.angle) && state.fontHeight > 0 &&
                          IsFinite(text.clipRect) && std::isfinite(state.fontHeight);
    if (!IsDrawing() || !drawable || data.size == 0)
        return kErr_NoErr;
    if (!MakeLine({reinterpret_cast<const char*>(data.bytes), data.size}, m_validText))
        return kErr_NoErr;
    const bool hasFamily = !state.family.empty() && MakeLine(state.family, m_validFamily);
    constexpr float kMaxHeight = 10000;
    const SGSRect rect = Limit(text.rect);
    const SGSRect clip = Limit(text.clipRect);
    KCGSTextLine line;
    line.text = m_validText.GetText();
    line.family = hasFamily ? m_validFamily.GetText() : std::string_view();
    line.height = std::min(state.fontHeight, kMaxHeight);
    line.style = state.fontStyle;
    line.baseline = Baseline(rect, text.horizontal, text.vertical, line.height);
    line.anchor = text.horizontal;
    line.angle = std::fmod(text.angle, 360.0F);
    line.pivot = Middle(rect);
    line.clip = clip.IsEmpty() ? nullptr : &clip;
    return ShowText(line, PaintOf(text.flags, text.drawColor));
}

// Pictures.

bool KCGraphicStreamPainter::MakePicture(int32_t resID, SGSLocation location, SGSSize scaledSize,
                                         KCGSPicture& picture) noexcept {
    const KCGSDataOperand embedded = std::exchange(m_png, KCGSDataOperand());
    picture.resID = resID;
    if (resID == 0)
        picture.png = {embedded.bytes, embedded.size};
    else if (m_provider != nullptr)
        picture.png = m_provider->GetImagePNG(resID);
    if (!GSReadPNGSize(picture.png, picture.pixelWidth, picture.pixelHeight))
        return false;
    picture.target = {location.x, location.y, scaledSize.width, scaledSize.height};
    if (scaledSize == SGSSize()) {
        picture.target.width = static_cast<float>(picture.pixelWidth);
        picture.target.height = static_cast<float>(picture.pixelHeight);
    }
    const bool drawable =
        IsFinite(picture.target) && picture.target.width >= kMinSide && picture.target.height >= kMinSide;
    picture.target = drawable ? Limit(picture.target) : SGSRect();
    return drawable;
}

int32_t KCGraphicStreamPainter::ExecDrawImage(KCGSRecord<SGSDrawImage> command) {
    const SGSDrawImage image = command.Read();
    KCGSPicture picture;
    if (!MakePicture(image.resID, image.location, image.scaledSize, picture) || !IsDrawing())
        return kErr_NoErr;
    m_path.clear();
    AppendRect(image.clipRect, m_path);
    const KCGSPath clip = Rectangles(m_path);
    picture.clip = m_path.empty() ? nullptr : &clip;
    return ShowPicture(picture, PaintOf(image.flags, {}));
}

int32_t KCGraphicStreamPainter::ExecDrawImageMultipleClips(KCGSRecord<SGSDrawImageMultipleClips> command) {
    const SGSDrawImageMultipleClips image = command.Read();
    const bool hasRects = TakeRects(image.numRects);
    KCGSPicture picture;
    if (!MakePicture(image.resID, image.location, image.scaledSize, picture) || !IsDrawing())
        return kErr_NoErr;
    if (!hasRects || m_path.empty()) // nothing shows it
        return kErr_NoErr;
    const KCGSPath clip = Rectangles(m_path);
    picture.clip = &clip;
    return ShowPicture(picture, PaintOf(image.flags, {}));
}

// Data.

int32_t KCGraphicStreamPainter::ExecDataHere(KCGSRecord<SGSDataHere> command) {
    return TakeData(KCGSDataOperand(command));
}

int32_t KCGraphicStreamPainter::ExecDataPtr(KCGSRecord<SGSDataPtr> command) {
    return TakeData(KCGSDataOperand(command, GetPointers()));
}

int32_t KCGraphicStreamPainter::TakeData(const KCGSDataOperand& data) noexcept {
    if (!data.IsUsable())
        return kErr_NoErr;
    switch (data.purpose) {
    case kPoint2D:
    case kPoint3D:
        m_points = data;
        break;
    case kRGBColor:
    case kRGBAColor:
        m_colors = data;
        break;
    case kText:
        m_textData = data;
        break;
    case kClipRectangles:
        m_rects = data;
        break;
    case kDrawImage:
        m_png = data;
        break;
    default: // of no use to a drawing
        break;
    }
    return kErr_NoErr;
}

// Reads `count` points into the path; false when they are not all there or not all numbers.
bool KCGraphicStreamPainter::TakePoints(size_t count) {
    if (!std::exchange(m_points, KCGSDataOperand()).ReadPoints(count, m_path))
        return false;
    for (KUPoint<float>& point : m_path)
        point = {Limit(point.x), Limit(point.y)};
    return true;
}

// Reads rectangles into the path, leaving the empty ones out; false when they are not all there.
bool KCGraphicStreamPainter::TakeRects(size_t count) {
    const KCGSDataOperand data = std::exchange(m_rects, KCGSDataOperand());
    m_path.clear();
    if (count > data.size / sizeof(SGSRect))
        return false;
    for (size_t i = 0; i < count; ++i) {
        SGSRect rect;
        std::memcpy(&rect, data.bytes + i * sizeof rect, sizeof rect);
        AppendRect(rect, m_path);
    }
    return true;
}

// What has no picture.

int32_t KCGraphicStreamPainter::ExecIllegalGraphicStreamCommand(KCGSRecord<SGSHeader>) { return kErr_NoErr; }
int32_t KCGraphicStreamPainter::ExecIgnoreStreamCommand(KCGSRecord<SGSHeader>) { return kErr_NoErr; }
int32_t KCGraphicStreamPainter::ExecNone(KCGSRecord<SGSHeader>) { return kErr_NoErr; }
int32_t KCGraphicStreamPainter::ExecAny(KCGSRecord<SGSHeader>) { return kErr_NoErr; }
int32_t KCGraphicStreamPainter::ExecStreamSignature(KCGSRecord<SGSHeader>) { return kErr_NoErr; }
int32_t KCGraphicStreamPainter::ExecStreamFormat(KCGSRecord<SGSStreamFormat>) { return kErr_NoErr; }
int32_t KCGraphicStreamPainter::ExecResourcesBaseURL(KCGSRecord<SGSHeader>) { return kErr_NoErr; }
int32_t KCGraphicStreamPainter::ExecRemark(KCGSRecord<SGSHeader>) { return kErr_NoErr; }
int32_t KCGraphicStreamPainter::ExecMetaData(KCGSRecord<SGSMetaData>) { return kErr_NoErr; }
int32_t KCGraphicStreamPainter::ExecUnknown(KCGSRecord<SGSHeader>) { return kErr_NoErr; }

bool GSStrokeFromPattern(float width, uint16_t pattern, KCGSStroke& stroke) noexcept {
    stroke = {};
    if (!(width > 0) || !std::isfinite(width) || pattern == 0)
        return false;
    stroke.width = std::min(width, KCGraphicStreamPainter::kMaxCoordinate);
    if (pattern == 0xFFFF)
        return true;
    // Turned so that it begins with the first bit drawn behind one left out: then the dashes come in pairs.
    int start = 0;
    while (std::rotl(pattern, start) < 0x8000 || (std::rotl(pattern, start) & 1) != 0)
        ++start;
    const uint16_t turned = std::rotl(pattern, start);
    for (int bit = 0; bit < 16; ++bit) {
        const bool drawn = (turned >> (15 - bit) & 1) != 0;
        if ((stroke.numDashes % 2 == 1) != drawn)
            ++stroke.numDashes;
        stroke.dashes[stroke.numDashes - 1] += 1;
    }
    stroke.dashOffset = static_cast<float>((16 - start) % 16);
    return true;
}

bool GSReadPNGSize(std::span<const uint8_t> png, uint32_t& width, uint32_t& height) noexcept {
    // Signature, length and name of the first chunk: PNG specification, 5.2 and 11.2.2.
    constexpr uint8_t kStart[] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n', 0, 0, 0, 13, 'I', 'H', 'D', 'R'};
    width = height = 0;
    if (png.size() < sizeof kStart + 8 || !std::equal(std::begin(kStart), std::end(kStart), png.begin()))
        return false;
    const auto number = [&](size_t at) {
        return uint32_t{png[at]} << 24 | uint32_t{png[at + 1]} << 16 | uint32_t{png[at + 2]} << 8 | png[at + 3];
    };
    constexpr uint32_t kMost = KCGraphicStreamPainter::kMaxImageSide;
    const uint32_t wide = number(sizeof kStart);
    const uint32_t high = number(sizeof kStart + 4);
    constexpr uint64_t kMostPixels = 1 << 26;
    if (wide == 0 || high == 0 || wide > kMost || high > kMost || uint64_t{wide} * high > kMostPixels)
        return false;
    width = wide;
    height = high;
    return true;
}

} // namespace kvKorvoV12_9_0_320::kvGS
