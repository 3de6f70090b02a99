#include "picture_file.h"

#include <korvolib/graphicstream/to_svg.h>
#include <korvolib/graphicstream/to_yaml.h>
#include <korvolib/utilities/error_codes.h>
#include <shells/view/cairo_picture.h>

#include "failure.h"
#include "text.h"

namespace kvKorvoV12_9_0_320::kvHost {
namespace {

using Writer = kvGS::KCGraphicStreamBinaryWriter;

// Each gives a result code, and the file's contents where that is 0.
int32_t Stream(const Writer& writer, const sPICTURE_LOOK&, std::string& contents) {
    contents = writer.GetStreamMemObj().GetText();
    return kErr_NoErr;
}

int32_t Yaml(const Writer& writer, const sPICTURE_LOOK&, std::string& contents) {
    kvGS::KCGraphicStreamToYAML yaml;
    const int32_t result = yaml.ExecStream(writer);
    contents = yaml.GetText();
    contents += '\n';
    return result;
}

int32_t Svg(const Writer& writer, const sPICTURE_LOOK& look, std::string& contents) {
    kvGS::KCGraphicStreamToSVG svg;
    svg.SetScale(static_cast<float>(look.svgScale));
    svg.SetImageProvider(look.images);
    const int32_t result = svg.ExecStream(writer);
    contents = svg.GetText();
    return result;
}

int32_t Png(const Writer& writer, const sPICTURE_LOOK& look, std::string& contents) {
    kvGS::KCPictureOptions options;
    options.scale = look.pngScale;
    options.provider = look.images;
    KCStMemObj png;
    const int32_t result = kvGS::GraphicStreamToPNG(writer, options, png);
    contents = png.GetText();
    return result;
}

struct sPICTURE_KIND {
    const char* ending;
    int32_t (*make)(const Writer& writer, const sPICTURE_LOOK& look, std::string& contents);
};

constexpr sPICTURE_KIND kPictureKinds[] = {{".gs", Stream}, {".yaml", Yaml}, {".svg", Svg}, {".png", Png}};

const sPICTURE_KIND* FindKind(const std::string& path) {
    for (const sPICTURE_KIND& kind : kPictureKinds)
        if (HasEnding(path, kind.ending))
            return &kind;
    return nullptr;
}

} // namespace

void RefuseUnknownPictureKind(const std::string& path, const char* what) {
    if (FindKind(path) == nullptr)
        throw KCHostFailure(path + ": the name of " + what + " to write must end in .gs, .yaml, .svg or .png");
}

std::string PictureFileContents(const std::string& path, const Writer& writer, const sPICTURE_LOOK& look) {
    RefuseUnknownPictureKind(path, "a picture");
    std::string contents;
    int32_t result = writer.GetError();
    if (result == kErr_NoErr)
        result = FindKind(path)->make(writer, look, contents);
    if (result == kErr_LimitExceeded)
        throw KCHostFailure(path + ": the picture would be too large; a smaller --scale or .svg may do");
    if (result != kErr_NoErr)
        throw KCHostFailure(path + ": the picture cannot be drawn: error " + std::to_string(result));
    return contents;
}

} // namespace kvKorvoV12_9_0_320::kvHost
