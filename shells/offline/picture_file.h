// The files that a recorded picture is written to, each by the ending of its name: the stream itself (.gs), its
// records as text (.yaml), a drawing for browsers (.svg), pixels (.png).
#pragma once

#include <string>

#include <korvolib/graphicstream/binary_writer.h>
#include <korvolib/graphicstream/painter.h>

namespace kvKorvoV12_9_0_320::kvHost {

/// How a picture becomes a file.
struct sPICTURE_LOOK {
    double pngScale = 2.0; // pixels of a .png for one of the picture; 2 is sharp on dense screens
    double svgScale = 1.0; // the size that a .svg asks for
    kvGS::KCGSImageProvider* images = nullptr; // for pictures named by id
};

/// Throws KCHostFailure for a name with another ending; `what` is the thing to write: "a plot".
void RefuseUnknownPictureKind(const std::string& path, const char* what);

/// The whole contents of the file. Throws KCHostFailure, with the path, where the picture cannot be made.
std::string PictureFileContents(const std::string& path, const kvGS::KCGraphicStreamBinaryWriter& writer,
                                const sPICTURE_LOOK& look);

} // namespace kvKorvoV12_9_0_320::kvHost
