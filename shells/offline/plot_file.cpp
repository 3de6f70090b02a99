#include "plot_file.h"

#include <korvolib/graphicstream/to_svg.h>
#include <korvolib/graphicstream/to_yaml.h>
#include <korvolib/utilities/error_codes.h>
#include <shells/view/cairo_picture.h>

#include "failure.h"
#include "text.h"

namespace kvKorvoV12_9_0_320::kvHost {
namespace {

using Writer = kvGS::KCGraphicStreamBinaryWriter;

constexpr double kPngScale = 2.0; // sharp on dense screens

// Each gives a result code, and the file's contents where that is 0.
int32_t Stream(const Writer& writer, std::string& contents) {
    contents = writer.GetStreamMemObj().GetText();
    return kErr_NoErr;
}

int32_t Yaml(const Writer& writer, std::string& contents) {
    kvGS::KCGraphicStreamToYAML yaml;
    const int32_t result = yaml.ExecStream(writer);
    contents = yaml.GetText();
    contents += '\n';
    return result;
}

int32_t Svg(const Writer& writer, std::string& contents) {
    kvGS::KCGraphicStreamToSVG svg;
    const int32_t result = svg.ExecStream(writer);
    contents = svg.GetText();
    return result;
}

int32_t Png(const Writer& writer, std::string& contents) {
    kvGS::KCPictureOptions options;
    options.scale = kPngScale;
    KCStMemObj png;
    const int32_t result = kvGS::GraphicStreamToPNG(writer, options, png);
    contents = png.GetText();
    return result;
}

struct sPLOT_KIND {
    const char* ending;
    int32_t (*make)(const Writer& writer, std::string& contents);
};

constexpr sPLOT_KIND kPlotKinds[] = {{".gs", Stream}, {".yaml", Yaml}, {".svg", Svg}, {".png", Png}};

const sPLOT_KIND& FindKind(const std::string& path) {
    for (const sPLOT_KIND& kind : kPlotKinds)
        if (HasEnding(path, kind.ending))
            return kind;
    throw KCHostFailure(path + ": the name of a plot to write must end in .gs, .yaml, .svg or .png");
}

} // namespace

void RefuseUnknownPlotKind(const std::string& path) { FindKind(path); }

std::string PlotFileContents(const std::string& path, const Writer& writer) {
    std::string contents;
    int32_t result = writer.GetError();
    if (result == kErr_NoErr)
        result = FindKind(path).make(writer, contents);
    if (result != kErr_NoErr)
        throw KCHostFailure(path + ": the plot cannot be drawn: error " + std::to_string(result));
    return contents;
}

} // namespace kvKorvoV12_9_0_320::kvHost
