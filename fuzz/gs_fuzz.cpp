// Any bytes as a graphic stream: walked, shown as YAML, drawn as SVG and searched for graphs, without ever
// following a pointer. Whatever the walk says, both texts stay well-formed, and each engine stops at the same
// record.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include <korvolib/graphicstream/graph_extractor.h>
#include <korvolib/graphicstream/to_svg.h>
#include <korvolib/graphicstream/to_yaml.h>
#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/xml/xml_element.h>

namespace {

using namespace kvKorvo;
using namespace kvKorvo::kvGS;

void Require(bool condition) {
    if (!condition)
        std::abort();
}

void RequireWellFormed(std::string_view svg) {
    KCXMLElement root;
    const int32_t result = root.Parse(svg.data(), svg.size());
    // A picture may hold more than the tree takes.
    Require(result == kErr_NoErr || result == kErr_LimitExceeded);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    KCGSGraphExtractor graphs;
    const int32_t result = graphs.ExecStream(data, size);
    Require((result == kErr_NoErr) == (graphs.GetErrorOffset() == size));
    KCGraphicStreamToYAML yaml;
    Require(yaml.ExecStream(data, size) == result && yaml.GetErrorOffset() == graphs.GetErrorOffset());
    Require(yaml.GetEmitsCount() + yaml.GetSkipsCount() == yaml.GetExecCommandsCount() - yaml.GetEndFramesCount());
    Require(yaml.GetText().find("KCGraphicStreamToYAML.m_count_missing") != std::string_view::npos);
    KCGraphicStreamToSVG svg;
    Require(svg.ExecStream(data, size) == result);
    RequireWellFormed(svg.GetText());
    (void)GSStructChecksum(data, size);
    return 0;
}
