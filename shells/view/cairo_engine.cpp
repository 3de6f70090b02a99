#include <shells/view/cairo_engine.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>
#include <type_traits>
#include <utility>

#include <cairo.h>

#include <korvolib/utilities/error_codes.h>

namespace kvKorvoV12_9_0_320::kvGS {

namespace {

double Radians(double degrees) noexcept { return degrees * std::numbers::pi / 180; }

struct ByteReader {
    std::span<const uint8_t> rest;

    static cairo_status_t Read(void* self, unsigned char* to, unsigned int count) noexcept {
        auto& reader = *static_cast<ByteReader*>(self);
        if (count > reader.rest.size())
            return CAIRO_STATUS_READ_ERROR;
        std::memcpy(to, reader.rest.data(), count);
        reader.rest = reader.rest.subspan(count);
        return CAIRO_STATUS_SUCCESS;
    }
};

} // namespace

KCCairoEngine::~KCCairoEngine() {
    DropContext();
    ClearPictureCache();
    ClearImage();
}

void KCCairoEngine::SetScale(double scale) noexcept { m_scale = scale > 0 && std::isfinite(scale) ? scale : 1; }

void KCCairoEngine::ClearPictureCache() noexcept {
    for (auto& [hash, surface] : m_pictures)
        cairo_surface_destroy(surface);
    m_pictures.clear();
}

void KCCairoEngine::ClearImage() noexcept {
    if (m_image != nullptr)
        cairo_surface_destroy(std::exchange(m_image, nullptr));
}

// Also before a walk: the context of an earlier one may still be there.
void KCCairoEngine::DropContext() noexcept {
    if (m_ownContext != nullptr)
        cairo_destroy(std::exchange(m_ownContext, nullptr));
    m_cr = nullptr;
}

int32_t KCCairoEngine::ExecStart() {
    DropContext();
    ClearImage();
    m_cr = m_target;
    if (m_cr != nullptr)
        Prepare();
    return KCGraphicStreamPainter::ExecStart();
}

// What every drawing begins with; undone by ExecFinish.
void KCCairoEngine::Prepare() noexcept {
    cairo_save(m_cr);
    cairo_new_path(m_cr);
    cairo_set_miter_limit(m_cr, 10);
    cairo_set_line_join(m_cr, CAIRO_LINE_JOIN_MITER);
    cairo_set_line_cap(m_cr, CAIRO_LINE_CAP_BUTT);
    cairo_set_fill_rule(m_cr, CAIRO_FILL_RULE_WINDING);
    cairo_set_dash(m_cr, nullptr, 0, 0);
    m_hasFont = false;
    m_hasDashes = false;
}

int32_t KCCairoEngine::ExecFinish(int32_t result) {
    if (m_cr == nullptr)
        return result;
    cairo_restore(m_cr);
    const bool drawn = cairo_status(m_cr) == CAIRO_STATUS_SUCCESS;
    DropContext();
    return result == kErr_NoErr && !drawn ? kErr_Generic : result;
}

int32_t KCCairoEngine::BeginPicture(const SGSStream& stream) {
    const double width = static_cast<double>(stream.logicalSize.width);
    const double height = static_cast<double>(stream.logicalSize.height);
    if (m_target == nullptr) {
        const bool hasScale = stream.scale > 0 && std::isfinite(stream.scale);
        const double scale = m_scale * (hasScale ? static_cast<double>(stream.scale) : 1);
        if (const int32_t result = MakeImage(width, height, scale); result != kErr_NoErr)
            return result;
    }
    if (m_cr != nullptr && stream.color.alpha != 0) {
        SetPaint({stream.color, true, false});
        cairo_rectangle(m_cr, 0, 0, width, height);
        cairo_fill(m_cr);
    }
    return kErr_NoErr;
}

int32_t KCCairoEngine::MakeImage(double width, double height, double scale) noexcept {
    const double wide = std::ceil(width * scale);
    const double high = std::ceil(height * scale);
    constexpr double kMostSide = kMaxImageSide;
    constexpr double kMostPixels = 1 << 26;
    // Written so that not-a-number is refused too.
    if (!(wide >= 1 && high >= 1 && wide <= kMostSide && high <= kMostSide && wide * high <= kMostPixels))
        return kErr_LimitExceeded;
    m_image = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, static_cast<int>(wide), static_cast<int>(high));
    m_cr = m_ownContext = cairo_create(m_image);
    Prepare();
    cairo_scale(m_cr, scale, scale);
    return cairo_status(m_cr) == CAIRO_STATUS_SUCCESS ? kErr_NoErr : kErr_AllocationFailed;
}

int32_t KCCairoEngine::OpenGroup() {
    if (m_cr != nullptr)
        cairo_save(m_cr);
    return kErr_NoErr;
}

int32_t KCCairoEngine::CloseGroup() {
    if (m_cr != nullptr)
        cairo_restore(m_cr);
    m_hasFont = false;
    m_hasDashes = true; // unknown: what the context has now is what it had when the group began
    return kErr_NoErr;
}

int32_t KCCairoEngine::Rotate(float angle, SGSLocation centre) {
    if (m_cr == nullptr)
        return kErr_NoErr;
    const double x = static_cast<double>(centre.x);
    const double y = static_cast<double>(centre.y);
    cairo_translate(m_cr, x, y);
    cairo_rotate(m_cr, Radians(static_cast<double>(angle)));
    cairo_translate(m_cr, -x, -y);
    return kErr_NoErr;
}

int32_t KCCairoEngine::Clip(const KCGSPath& path, bool antialias) {
    if (m_cr == nullptr)
        return kErr_NoErr;
    cairo_set_antialias(m_cr, antialias ? CAIRO_ANTIALIAS_DEFAULT : CAIRO_ANTIALIAS_NONE);
    AddPath(path);
    cairo_clip(m_cr);
    return kErr_NoErr;
}

int32_t KCCairoEngine::Fill(const KCGSPath& path, const KCGSPaint& paint) {
    if (m_cr == nullptr)
        return kErr_NoErr;
    SetPaint(paint);
    AddPath(path);
    cairo_fill(m_cr);
    return kErr_NoErr;
}

int32_t KCCairoEngine::Stroke(const KCGSPath& path, const KCGSPaint& paint, const KCGSStroke& stroke) {
    if (m_cr == nullptr)
        return kErr_NoErr;
    SetPaint(paint);
    SetStroke(stroke);
    AddPath(path);
    cairo_stroke(m_cr);
    return kErr_NoErr;
}

int32_t KCCairoEngine::FillArc(const KCGSArc& arc, const KCGSPaint& paint) {
    if (m_cr == nullptr)
        return kErr_NoErr;
    SetPaint(paint);
    AddArc(arc, true);
    cairo_fill(m_cr);
    return kErr_NoErr;
}

int32_t KCCairoEngine::StrokeArc(const KCGSArc& arc, const KCGSPaint& paint, const KCGSStroke& stroke) {
    if (m_cr == nullptr)
        return kErr_NoErr;
    SetPaint(paint);
    SetStroke(stroke);
    AddArc(arc, false);
    cairo_stroke(m_cr);
    return kErr_NoErr;
}

void KCCairoEngine::SetPaint(const KCGSPaint& paint) noexcept {
    const auto channel = [](uint8_t value) { return value / 255.0; };
    const SGSRGBAColor& color = paint.color;
    cairo_set_source_rgba(m_cr, channel(color.red), channel(color.green), channel(color.blue),
                          channel(color.alpha));
    cairo_set_operator(m_cr, paint.difference ? CAIRO_OPERATOR_DIFFERENCE : CAIRO_OPERATOR_OVER);
    cairo_set_antialias(m_cr, paint.antialias ? CAIRO_ANTIALIAS_DEFAULT : CAIRO_ANTIALIAS_NONE);
}

void KCCairoEngine::SetStroke(const KCGSStroke& stroke) noexcept {
    cairo_set_line_width(m_cr, static_cast<double>(stroke.width));
    cairo_set_line_join(m_cr, stroke.roundJoins ? CAIRO_LINE_JOIN_ROUND : CAIRO_LINE_JOIN_MITER);
    if (stroke.numDashes == 0 && !m_hasDashes)
        return;
    double dashes[std::extent_v<decltype(stroke.dashes)>];
    std::copy_n(stroke.dashes, stroke.numDashes, dashes);
    cairo_set_dash(m_cr, dashes, static_cast<int>(stroke.numDashes), static_cast<double>(stroke.dashOffset));
    m_hasDashes = stroke.numDashes != 0;
}

void KCCairoEngine::AddPath(const KCGSPath& path) noexcept {
    size_t inPart = 0;
    for (const KUPoint<float>& point : path.points) {
        const double x = static_cast<double>(point.x);
        const double y = static_cast<double>(point.y);
        inPart == 0 ? cairo_move_to(m_cr, x, y) : cairo_line_to(m_cr, x, y);
        if (++inPart == path.perPart) {
            if (path.closed)
                cairo_close_path(m_cr);
            inPart = 0;
        }
    }
}

void KCCairoEngine::AddArc(const KCGSArc& arc, bool pie) noexcept {
    cairo_matrix_t saved;
    cairo_get_matrix(m_cr, &saved);
    const double radiusX = static_cast<double>(arc.rect.width) / 2;
    const double radiusY = static_cast<double>(arc.rect.height) / 2;
    cairo_translate(m_cr, static_cast<double>(arc.rect.x) + radiusX, static_cast<double>(arc.rect.y) + radiusY);
    cairo_scale(m_cr, radiusX, radiusY);
    const double start = Radians(arc.startAngle);
    const double end = Radians(arc.startAngle + arc.sweepAngle);
    cairo_new_sub_path(m_cr);
    arc.sweepAngle > 0 ? cairo_arc(m_cr, 0, 0, 1, start, end) : cairo_arc_negative(m_cr, 0, 0, 1, start, end);
    if (pie && !arc.IsWhole())
        cairo_line_to(m_cr, 0, 0);
    if (pie || arc.IsWhole())
        cairo_close_path(m_cr);
    // The line is drawn with the old matrix: a stretched oval has a line of one width all around.
    cairo_set_matrix(m_cr, &saved);
}

void KCCairoEngine::SetFont(const KCGSTextLine& line, bool antialias) {
    if (m_hasFont && m_family == line.family && m_fontHeight == line.height && m_fontStyle == line.style &&
        m_fontIsSmooth == antialias)
        return;
    m_fontIsSmooth = antialias;
    m_family.assign(line.family);
    m_fontHeight = line.height;
    m_fontStyle = line.style;
    m_hasFont = true;
    cairo_select_font_face(m_cr, m_family.empty() ? "sans-serif" : m_family.c_str(),
                           (line.style & kItalic) != 0 ? CAIRO_FONT_SLANT_ITALIC : CAIRO_FONT_SLANT_NORMAL,
                           (line.style & kBold) != 0 ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(m_cr, static_cast<double>(line.height));
    // Lengths of text that do not depend on the scale: what fits at one fits at all.
    cairo_font_options_t* const options = cairo_font_options_create();
    cairo_font_options_set_antialias(options, antialias ? CAIRO_ANTIALIAS_GRAY : CAIRO_ANTIALIAS_NONE);
    cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
    cairo_set_font_options(m_cr, options);
    cairo_font_options_destroy(options);
}

int32_t KCCairoEngine::ShowText(const KCGSTextLine& line, const KCGSPaint& paint) {
    if (m_cr == nullptr)
        return kErr_NoErr;
    SetFont(line, paint.antialias);
    SetPaint(paint);
    const bool scoped = line.clip != nullptr || line.angle != 0;
    if (scoped)
        cairo_save(m_cr);
    if (line.clip != nullptr) {
        cairo_rectangle(m_cr, static_cast<double>(line.clip->x), static_cast<double>(line.clip->y),
                        static_cast<double>(line.clip->width), static_cast<double>(line.clip->height));
        cairo_clip(m_cr);
    }
    if (line.angle != 0)
        Rotate(line.angle, line.pivot);
    m_text.assign(line.text);
    double x = static_cast<double>(line.baseline.x);
    if (line.anchor == kHCenter || line.anchor == kRight) {
        cairo_text_extents_t extents;
        cairo_text_extents(m_cr, m_text.c_str(), &extents);
        x -= line.anchor == kRight ? extents.x_advance : extents.x_advance / 2;
    }
    cairo_move_to(m_cr, x, static_cast<double>(line.baseline.y));
    cairo_show_text(m_cr, m_text.c_str());
    cairo_new_path(m_cr);
    if (scoped)
        cairo_restore(m_cr);
    return kErr_NoErr;
}

int32_t KCCairoEngine::ShowPicture(const KCGSPicture& picture, const KCGSPaint& paint) {
    cairo_surface_t* const surface = m_cr == nullptr ? nullptr : Decode(picture);
    if (surface == nullptr)
        return kErr_NoErr;
    const double width = picture.pixelWidth;
    const double height = picture.pixelHeight;
    cairo_save(m_cr);
    SetPaint(paint);
    if (picture.clip != nullptr) {
        AddPath(*picture.clip);
        cairo_clip(m_cr);
    }
    cairo_translate(m_cr, static_cast<double>(picture.target.x), static_cast<double>(picture.target.y));
    cairo_scale(m_cr, static_cast<double>(picture.target.width) / width,
                static_cast<double>(picture.target.height) / height);
    cairo_set_source_surface(m_cr, surface, 0, 0);
    cairo_pattern_t* const source = cairo_get_source(m_cr);
    cairo_pattern_set_filter(source, CAIRO_FILTER_GOOD);
    cairo_pattern_set_extend(source, CAIRO_EXTEND_PAD); // otherwise its edges fade when it is scaled
    cairo_rectangle(m_cr, 0, 0, width, height);
    cairo_fill(m_cr);
    cairo_restore(m_cr);
    return kErr_NoErr;
}

cairo_surface_t* KCCairoEngine::Decode(const KCGSPicture& picture) {
    const uint64_t hash = MurmurHash64A(picture.png.data(), picture.png.size(), 0);
    const auto known = m_pictures.find(hash);
    if (known != m_pictures.end())
        return known->second;
    constexpr size_t kMostPictures = 256;
    if (m_pictures.size() >= kMostPictures)
        ClearPictureCache();
    ByteReader reader{picture.png};
    cairo_surface_t* surface = cairo_image_surface_create_from_png_stream(ByteReader::Read, &reader);
    if (cairo_surface_status(surface) != CAIRO_STATUS_SUCCESS) {
        cairo_surface_destroy(surface);
        surface = nullptr; // remembered as one that draws nothing
    }
    m_pictures.emplace(hash, surface);
    return surface;
}

} // namespace kvKorvoV12_9_0_320::kvGS
