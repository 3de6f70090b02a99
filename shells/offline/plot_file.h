// The files that a recorded picture is written to, each by the ending of its name: the stream itself (.gs), its
// records as text (.yaml), a drawing for browsers (.svg), pixels (.png).
#pragma once

#include <string>

#include <korvolib/graphicstream/binary_writer.h>

namespace kvKorvoV12_9_0_320::kvHost {

/// Throws KCHostFailure for a name with another ending.
void RefuseUnknownPlotKind(const std::string& path);

/// The whole contents of the file. Throws KCHostFailure, with the path, where the picture cannot be made.
std::string PlotFileContents(const std::string& path, const kvGS::KCGraphicStreamBinaryWriter& writer);

} // namespace kvKorvoV12_9_0_320::kvHost
