#include <korvolib/gui/param_windows.h>

#include <cstring>
#include <iterator>
#include <limits>

#include <korvolib/gui/attribute_writer_internal.h>
#include <korvolib/gui/description_numbers_internal.h>

namespace kvKorvoV12_9_0_320 {
namespace {

using namespace GUIDescription;

constexpr const char* kAlignNames[] = {"Left", "Centre", "Right"};
constexpr double kTallest = 1000.0; // pixels of a text
constexpr double kWidest = 1000.0;  // pixels of a line
constexpr int32_t kMostImages = 100000;
constexpr double kFarthestValue = std::numeric_limits<float>::max();

void ReadAlign(const KCXMLElement& element, KETextAlign& align, Problems& problems) {
    const char* const text = element.GetAttribute("Align");
    if (text == nullptr)
        return;
    for (size_t i = 0; i < std::size(kAlignNames); ++i)
        if (std::strcmp(text, kAlignNames[i]) == 0) {
            align = static_cast<KETextAlign>(i);
            return;
        }
    AddProblem(element, "Align is Left, Centre or Right, not", text, problems);
}

int32_t ResultSince(size_t numProblems, const Problems& problems) {
    return problems.size() == numProblems ? kErr_NoErr : kErr_BadDescription;
}

void WriteRectAndColor(AttributeWriter& writer, const KURect<double>& rect, bool hasColor, const KUColor& color) {
    if (rect != KURect<double>())
        writer.Set("Rect", RectText(rect));
    if (hasColor)
        writer.Set("Color", color.Format().c_str());
}

} // namespace

int32_t ReadWindowFromXML(const KCXMLElement& element, sTEXT_WIN& win, Problems& problems) {
    const size_t before = problems.size();
    ReadRect(element, "Rect", win.rect, problems);
    ReadNumber(element, "Height", 0.0, kTallest, win.height, problems);
    ReadAlign(element, win.align, problems);
    win.hasColor = ReadColor(element, "Color", win.color, problems) || win.hasColor;
    ReadFlag(element, "Bold", win.isBold, problems);
    return ResultSince(before, problems);
}

int32_t ReadWindowFromXML(const KCXMLElement& element, sBITMAP_WIN& win, Problems& problems) {
    const size_t before = problems.size();
    ReadWhole(element, "ResID", 0, std::numeric_limits<int32_t>::max() - kMostImages, win.resID, problems);
    ReadWhole(element, "NumImages", 0, kMostImages, win.numImages, problems);
    ReadRect(element, "Rect", win.rect, problems);
    return ResultSince(before, problems);
}

int32_t ReadWindowFromXML(const KCXMLElement& element, sGRAPH_WIN& win, Problems& problems) {
    const size_t before = problems.size();
    ReadRect(element, "Rect", win.rect, problems);
    ReadNumber(element, "MinX", -kFarthestValue, kFarthestValue, win.minX, problems);
    ReadNumber(element, "MaxX", -kFarthestValue, kFarthestValue, win.maxX, problems);
    ReadNumber(element, "MinY", -kFarthestValue, kFarthestValue, win.minY, problems);
    ReadNumber(element, "MaxY", -kFarthestValue, kFarthestValue, win.maxY, problems);
    win.hasColor = ReadColor(element, "Color", win.color, problems) || win.hasColor;
    ReadNumber(element, "StrokeWidth", 0.0, kWidest, win.strokeWidth, problems);
    return ResultSince(before, problems);
}

int32_t WriteWindowToXML(KCXMLElement& element, const sTEXT_WIN& win) {
    const sTEXT_WIN fresh;
    AttributeWriter writer(element);
    WriteRectAndColor(writer, win.rect, win.hasColor, win.color);
    writer.SetUnless(fresh.height, "Height", win.height);
    if (const auto align = static_cast<size_t>(win.align);
        win.align != fresh.align && align < std::size(kAlignNames))
        writer.Set("Align", kAlignNames[align]);
    return writer.SetUnless(fresh.isBold, "Bold", win.isBold).GetResult();
}

int32_t WriteWindowToXML(KCXMLElement& element, const sBITMAP_WIN& win) {
    const sBITMAP_WIN fresh;
    AttributeWriter writer(element);
    WriteRectAndColor(writer, win.rect, false, {});
    writer.SetUnless(fresh.resID, "ResID", win.resID);
    return writer.SetUnless(fresh.numImages, "NumImages", win.numImages).GetResult();
}

int32_t WriteWindowToXML(KCXMLElement& element, const sGRAPH_WIN& win) {
    const sGRAPH_WIN fresh;
    AttributeWriter writer(element);
    WriteRectAndColor(writer, win.rect, win.hasColor, win.color);
    writer.SetUnless(fresh.minX, "MinX", win.minX).SetUnless(fresh.maxX, "MaxX", win.maxX);
    writer.SetUnless(fresh.minY, "MinY", win.minY).SetUnless(fresh.maxY, "MaxY", win.maxY);
    return writer.SetUnless(fresh.strokeWidth, "StrokeWidth", win.strokeWidth).GetResult();
}

} // namespace kvKorvoV12_9_0_320
