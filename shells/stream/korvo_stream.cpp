// korvo-stream: what is in a file of recorded drawing, as text or as a picture.
//
// Ends with 0; 1 when diff found a difference; 2 when a file cannot be read, written or does not hold together,
// with the byte offset of the record where it stopped.

#include <algorithm>
#include <cstdio>
#include <exception>
#include <map>

#include <CLI/CLI.hpp>

#include <korvolib/graphicstream/to_svg.h>
#include <korvolib/graphicstream/to_yaml.h>
#include <shells/stream/stream_file.h>
#include <shells/view/cairo_picture.h>

namespace {

using namespace kvKorvo::kvGS;
using korvoStream::Record;

constexpr int kSame = 0;
constexpr int kDifferent = 1;
constexpr int kFailed = 2;

struct Options {
    std::string file;
    std::string otherFile;
    std::string out = "-";
    std::string images;
    double scale = 1;
    size_t picture = 0;
};

int Fail(const std::string& file, const std::string& what) {
    std::fprintf(stderr, "korvo-stream: %s: %s\n", file.c_str(), what.c_str());
    return kFailed;
}

int FailWalk(const std::string& file, int32_t result, size_t offset) {
    return Fail(file, "error " + std::to_string(result) + " at byte " + std::to_string(offset));
}

int Write(const std::string& out, std::string_view bytes) {
    if (out != "-")
        return korvoStream::WriteFile(out, bytes) ? kSame : Fail(out, "cannot be written");
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), stdout) == bytes.size();
    return written && std::fflush(stdout) == 0 ? kSame : Fail("standard output", "cannot be written");
}

int Dump(const Options& options, const kvKorvo::KCStMemObj& stream) {
    KCGraphicStreamToYAML yaml;
    const int32_t result = yaml.ExecStream(stream.GetData(), stream.GetSize());
    // What could be read is worth showing, and the text says where it stopped.
    const int written = Write(options.out, std::string(yaml.GetText()) + "\n");
    return result == 0 ? written : FailWalk(options.file, result, yaml.GetErrorOffset());
}

int Svg(const Options& options, const kvKorvo::KCStMemObj& stream) {
    korvoStream::FolderImages images(options.images);
    KCGraphicStreamToSVG svg;
    svg.SetImageProvider(&images);
    svg.SelectPicture(options.picture);
    const int32_t result = svg.ExecStream(stream.GetData(), stream.GetSize());
    return result == 0 ? Write(options.out, svg.GetText()) : FailWalk(options.file, result, svg.GetErrorOffset());
}

int Png(const Options& options, const kvKorvo::KCStMemObj& stream) {
    korvoStream::FolderImages images(options.images);
    const KCPictureOptions picture{options.scale, options.picture, &images, kRefusePointers};
    kvKorvo::KCStMemObj png;
    const int32_t result = GraphicStreamToPNG(stream.GetData(), stream.GetSize(), picture, png);
    return result == 0 ? Write(options.out, png.GetText())
                       : Fail(options.file, "no picture, error " + std::to_string(result));
}

int Info(const Options& options, const kvKorvo::KCStMemObj& stream) {
    korvoStream::RecordLister lister;
    const int32_t result = lister.ExecStream(stream.GetData(), stream.GetSize());
    std::map<std::string, size_t> counts;
    for (const Record& record : lister.GetRecords())
        ++counts[GraphicStreamCommandToText(record.code).c_str()];
    std::string text = "bytes " + std::to_string(stream.GetSize()) + "\nrecords " +
                       std::to_string(lister.GetRecords().size()) + "\nframes " +
                       std::to_string(counts["BeginFrame"]) + "\ndepth " + std::to_string(lister.GetMaxDepth()) +
                       "\n";
    for (const auto& [name, count] : counts) {
        if (count != 0)
            text += "  " + name + " " + std::to_string(count) + "\n";
    }
    const int written = Write(options.out, text);
    return result == 0 ? written : FailWalk(options.file, result, lister.GetErrorOffset());
}

// One record as text. An end alone is no stream, and says nothing but its name.
std::string RecordText(const kvKorvo::KCStMemObj& stream, const Record& record) {
    const std::string name = GraphicStreamCommandToText(record.code).c_str();
    KCGraphicStreamToYAML yaml;
    const auto bytes = stream.GetBytes().subspan(record.offset, record.size);
    if (yaml.ExecStream(bytes.data(), bytes.size()) != 0)
        return name + "\n";
    std::string text(yaml.GetText());
    // Behind the record stand the counters, and its offset is that in a stream of one record.
    text.resize(text.rfind("- KCGraphicStreamToYAML"));
    const std::string zero = "stream_offset: 0\n";
    const size_t at = text.find(zero);
    return at == std::string::npos
               ? text
               : text.replace(at, zero.size(), "stream_offset: " + std::to_string(record.offset) + "\n");
}

std::string SideText(const char* mark, const kvKorvo::KCStMemObj& stream, const std::vector<Record>& records,
                     size_t index) {
    const std::string text = index < records.size() ? RecordText(stream, records[index]) : "end of stream\n";
    return std::string(mark) + " " + text;
}

int Diff(const Options& options, const kvKorvo::KCStMemObj& left) {
    kvKorvo::KCStMemObj right;
    if (!korvoStream::ReadFile(options.otherFile, right))
        return Fail(options.otherFile, "cannot be read");
    korvoStream::RecordLister leftLister;
    korvoStream::RecordLister rightLister;
    if (const int32_t result = leftLister.ExecStream(left.GetData(), left.GetSize()); result != 0)
        return FailWalk(options.file, result, leftLister.GetErrorOffset());
    if (const int32_t result = rightLister.ExecStream(right.GetData(), right.GetSize()); result != 0)
        return FailWalk(options.otherFile, result, rightLister.GetErrorOffset());
    const auto& leftRecords = leftLister.GetRecords();
    const auto& rightRecords = rightLister.GetRecords();
    const auto same = [&](const Record& a, const Record& b) {
        return std::ranges::equal(left.GetBytes().subspan(a.offset, a.size),
                                  right.GetBytes().subspan(b.offset, b.size));
    };
    const auto [first, other] = std::ranges::mismatch(leftRecords, rightRecords, same);
    if (first == leftRecords.end() && other == rightRecords.end())
        return kSame;
    const auto index = static_cast<size_t>(first - leftRecords.begin());
    const int written =
        Write(options.out, "record " + std::to_string(index) + " differs\n" +
                               SideText("<", left, leftRecords, index) + SideText(">", right, rightRecords, index));
    return written == kSame ? kDifferent : written;
}

using Command = int (*)(const Options&, const kvKorvo::KCStMemObj&);

int Run(int argc, char** argv) {
    CLI::App app("Looks into files of recorded drawing (.gs).");
    app.require_subcommand(1);
    Options options;
    Command chosen = nullptr;
    const auto add = [&](const char* name, const char* help, Command command) {
        CLI::App* sub = app.add_subcommand(name, help);
        sub->add_option("file", options.file, "the recorded stream")->required();
        sub->add_option("-o,--out", options.out, "where to write; - is the standard output");
        sub->callback([&chosen, command] { chosen = command; });
        return sub;
    };
    add("dump", "every record as YAML", Dump);
    add("info", "counts per command, frames, bytes, depth", Info);
    add("diff", "the first record that differs, both sides as text", Diff)
        ->add_option("other", options.otherFile, "the stream to compare with")
        ->required();
    for (CLI::App* sub : {add("svg", "the picture as SVG", Svg), add("png", "the picture as PNG", Png)}) {
        sub->add_option("--images", options.images, "folder with the pictures by id: 1001.png");
        sub->add_option("--picture", options.picture, "which of the stream's pictures, from 0");
        if (sub->get_name() == "png")
            sub->add_option("--scale", options.scale, "pixels for each pixel");
    }
    CLI11_PARSE(app, argc, argv);
    kvKorvo::KCStMemObj stream;
    if (!korvoStream::ReadFile(options.file, stream))
        return Fail(options.file, "cannot be read");
    return chosen(options, stream);
}

} // namespace

int main(int argc, char** argv) {
    try {
        return Run(argc, argv);
    } catch (const std::exception& error) {
        return Fail("error", error.what());
    }
}
