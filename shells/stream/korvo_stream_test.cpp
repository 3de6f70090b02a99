// Runs korvo-stream the way a person does.

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <korvolib/graphicstream/binary_writer.h>

namespace {

using namespace kvKorvo::kvGS;

struct Result {
    int code;
    std::string output; // both standard outputs
};

Result RunTool(const std::string& arguments) {
    std::string command = "'" KORVO_STREAM "' ";
    command += arguments;
    command += " 2>&1";
    FILE* pipe = popen(command.c_str(), "r"); // NOLINT(cert-env33-c)
    Result result{-1, {}};
    if (pipe == nullptr)
        return result;
    std::array<char, 4096> block;
    while (const size_t count = std::fread(block.data(), 1, block.size(), pipe))
        result.output.append(block.data(), count);
    const int status = pclose(pipe);
    result.code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return result;
}

class KorvoStream : public testing::Test {
  protected:
    KorvoStream() {
        const testing::TestInfo* info = testing::UnitTest::GetInstance()->current_test_info();
        m_folder = std::filesystem::temp_directory_path() / (std::string("korvo_stream_") + info->name());
        std::filesystem::create_directories(m_folder);
    }
    ~KorvoStream() override { std::filesystem::remove_all(m_folder); }

    std::string Path(const char* name) const { return (m_folder / name).string(); }
    // In quotes, for the shell.
    std::string Quoted(const char* name) const {
        std::string quoted = "'";
        quoted += Path(name);
        quoted += '\'';
        return quoted;
    }
    std::string Save(const char* name, KCGraphicStreamBinaryWriter& writer) const {
        int32_t result = -1;
        writer.WriteGraphicStreamToFile(Path(name).c_str(), result);
        EXPECT_EQ(result, 0);
        return Quoted(name);
    }
    static void Record(KCGraphicStreamBinaryWriter& writer, float angle) {
        SGSStream stream;
        stream.logicalSize = {40, 30};
        writer.OpenStream(stream).OpenFrame(SGSFrame()).RotateFrame(angle);
        writer.DrawSolidRect({255, 0, 0, 255}, kvKorvo::KURect<short>::FromEdges(1, 2, 3, 4)).CloseFrame();
        writer.CommandHeader(kEndStream);
    }

    std::filesystem::path m_folder;
};

TEST_F(KorvoStream, DumpsAStreamAsYAML) {
    KCGraphicStreamBinaryWriter writer;
    Record(writer, 5);
    const Result result = RunTool("dump " + Save("a.gs", writer));
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.output.rfind("- stream:\n    stream_offset: 0\n", 0), 0u) << result.output;
    EXPECT_NE(result.output.find("angle: 5\n"), std::string::npos);
}

TEST_F(KorvoStream, CountsWhatIsInAStream) {
    KCGraphicStreamBinaryWriter writer;
    Record(writer, 5);
    const Result result = RunTool("info " + Save("a.gs", writer));
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.output,
              "bytes 240\nrecords 7\nframes 1\ndepth 2\n  BeginFrame 1\n  BeginStream 1\n  DataHere 1\n"
              "  DrawVertices 1\n  EndFrame 1\n  EndStream 1\n  RotateFrame 1\n");
}

TEST_F(KorvoStream, FindsTheFirstRecordThatDiffers) {
    KCGraphicStreamBinaryWriter left;
    KCGraphicStreamBinaryWriter right;
    Record(left, 5);
    Record(right, 6);
    const Result result = RunTool("diff " + Save("a.gs", left) + " " + Save("b.gs", right));
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.output.rfind("record 2 differs\n< - RotateFrame:\n    stream_offset: 144\n", 0), 0u)
        << result.output;
    EXPECT_NE(result.output.find("angle: 5\n> - RotateFrame:"), std::string::npos) << result.output;
    EXPECT_NE(result.output.find("angle: 6\n"), std::string::npos);
}

TEST_F(KorvoStream, SaysNothingOfEqualStreamsAndNamesTheEndOfTheShorterOne) {
    KCGraphicStreamBinaryWriter left;
    Record(left, 5);
    const std::string file = Save("a.gs", left);
    const Result same = RunTool("diff " + file + " " + file);
    EXPECT_EQ(same.code, 0);
    EXPECT_EQ(same.output, "");
    left.CommandHeader(kAny);
    const Result longer = RunTool("diff " + file + " " + Save("b.gs", left));
    EXPECT_EQ(longer.code, 1);
    EXPECT_NE(longer.output.find("record 7 differs\n< end of stream\n> - Any:"), std::string::npos)
        << longer.output;
}

TEST_F(KorvoStream, WritesPictures) {
    KCGraphicStreamBinaryWriter writer;
    Record(writer, 0);
    const std::string file = Save("a.gs", writer);
    EXPECT_EQ(RunTool("png " + file + " --scale 2 -o " + Quoted("a.png")).code, 0);
    EXPECT_EQ(RunTool("svg " + file + " -o " + Quoted("a.svg")).code, 0);
    std::ifstream png(Path("a.png"), std::ios::binary);
    std::array<char, 24> head{};
    png.read(head.data(), head.size());
    EXPECT_EQ(head[19], 80);
    std::ifstream svg(Path("a.svg"));
    std::string line;
    std::getline(svg, line);
    EXPECT_EQ(line, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
}

TEST_F(KorvoStream, SaysWhereAStreamDoesNotHoldTogether) {
    KCGraphicStreamBinaryWriter writer;
    writer.CommandHeader(kAny).CommandHeader(kDrawOval);
    const std::string file = Save("a.gs", writer);
    for (const char* command : {"dump ", "info ", "svg "}) {
        const Result result = RunTool(command + file);
        EXPECT_EQ(result.code, 2) << command;
        EXPECT_NE(result.output.find("error -6101 at byte 8\n"), std::string::npos) << result.output;
    }
    EXPECT_EQ(RunTool("png " + file).code, 2);
    EXPECT_EQ(RunTool("diff " + file + " " + file).code, 2);
}

TEST_F(KorvoStream, SaysWhichFileCannotBeReadOrWritten) {
    const Result missing = RunTool("info " + Quoted("missing.gs"));
    EXPECT_EQ(missing.code, 2);
    EXPECT_NE(missing.output.find("missing.gs: cannot be read"), std::string::npos) << missing.output;
    KCGraphicStreamBinaryWriter writer;
    const std::string file = Save("a.gs", writer);
    EXPECT_EQ(RunTool("dump " + file + " -o /dev/null/a.yaml").code, 2);
    EXPECT_NE(RunTool("").code, 0);
    EXPECT_NE(RunTool("nonsense " + file).code, 0);
}

} // namespace
