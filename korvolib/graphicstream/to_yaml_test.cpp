#include <korvolib/graphicstream/to_yaml.h>

#include <cmath>
#include <limits>
#include <string>

#include <gtest/gtest.h>
#include <yaml-cpp/yaml.h>

#include <korvolib/graphicstream/stream_test_internal.h>
#include <korvolib/utilities/error_codes.h>
#include <tests/support/german_locale.h>

namespace {

using namespace kvGSTest;

constexpr const char* kGolden = R"yaml(- StreamSignature:
    stream_offset: 0
    size: 8
    checksum: 0x0000000000000000
- format:
    stream_offset: 8
    size: 12
    checksum: 0x0000000000000001
    version: 1
- stream:
    stream_offset: 20
    size: 112
    checksum: 0x5E8C7596E772E7FA
    version: 1
    flags: 0
    owner: 7
    sequence: 3
    logical_size: [200, 100]
    scale: 2
    color: {red: 16, green: 32, blue: 48, alpha: 255}
    name: "every command"
    contents:
      - resources_base_url:
          stream_offset: 132
          size: 22
          checksum: 0x11E9889FFB2727D2
          contents: "file:///skins/"
      - Remark:
          stream_offset: 154
          size: 31
          checksum: 0x46E0DF556569380B
          contents: "a \"remark\"\nof two lines"
      - MetaData:
          stream_offset: 185
          size: 18
          checksum: 0x6CCF563FA7C43B07
          name: "unit"
          contents: "dB"
      - frame:
          stream_offset: 203
          size: 32
          checksum: 0x980E01A97A50F0D4
          owner: 0
          rect: [10, 20, 100, 50]
          frame children:
            - RotateFrame:
                stream_offset: 235
                size: 12
                checksum: 0x0000000041480000
                angle: 12.5
            - font:
                stream_offset: 247
                size: 27
                checksum: 0x91FBCC3B6918D966
                family: "DejaVu Sans"
                height: 14
                style: 1
            - ClipRect:
                stream_offset: 274
                size: 28
                checksum: 0xFA2F2B78C1CFE70C
                flags: Antialias
                rect: [0, 0, 150, 90]
            - DataHere:
                stream_offset: 302
                size: 52
                checksum: 0x548F584A82C53A42
                type: Rect
                purpose: Clip Rectangles
                num_elements: 2
                Clip Rectangles: [[0, 0, 50, 50], [60, 0, 50.5, 50]]
            - ClipMultipleRects:
                stream_offset: 354
                size: 16
                checksum: 0x0000000200000004
                flags: Antialias
                num_elements: 2
            - DataHere:
                stream_offset: 370
                size: 44
                checksum: 0xEDABDCE64427CA92
                type: float
                purpose: Point2D
                num_elements: 6
                the_data: [[0, 0], [190, 0], [0, 95]]
            - ClipVertices:
                stream_offset: 414
                size: 16
                checksum: 0x0000000300000004
                flags: Antialias
                num_elements: 3
            - DataHere:
                stream_offset: 430
                size: 28
                checksum: 0xCC915C1FFE61BDA5
                type: int16
                purpose: Point2D
                num_elements: 4
                the_data: [[-1, 2], [30, 40]]
            - DrawVertices:
                stream_offset: 458
                size: 32
                checksum: 0xE83325D88452B257
                flags: Antialias
                draw_color: {red: 255, green: 128, blue: 0, alpha: 200}
                stroke_width: 1.5
                stroke_pattern: 0xF0F0
                method: wire
                kind: StraightLines
                num_elements: 2
            - DrawOval:
                stream_offset: 490
                size: 52
                checksum: 0xC31F14090171F22F
                flags: Antialias
                draw_color: {red: 255, green: 128, blue: 0, alpha: 200}
                stroke_width: 1.5
                stroke_pattern: 0xFFFF
                method: wire
                rect: [5, 6, 70, 80]
                start_angle: 45
                sweep_angle: -90
                slices_num: 6
            - DataHere:
                stream_offset: 542
                size: 36
                checksum: 0x1C0E9053AF3F5D79
                type: int16
                purpose: Point2D
                num_elements: 8
                the_data: [[0, 0], [0, 0], [0, 0], [0, 0]]
            - DrawVertices:
                stream_offset: 578
                size: 32
                checksum: 0x8A7203D0E4465888
                flags: eDrawInXORMode
                draw_color: {red: 1, green: 2, blue: 3, alpha: 4}
                stroke_width: 1.5
                stroke_pattern: 0xFFFF
                method: solid
                kind: Polygon
                num_elements: 4
            - DataHere:
                stream_offset: 610
                size: 44
                checksum: 0xEDABDCE64427CA92
                type: float
                purpose: Point2D
                num_elements: 6
                the_data: [[0, 0], [190, 0], [0, 95]]
            - DataHere:
                stream_offset: 654
                size: 29
                checksum: 0xE1BAC96D8F53AADE
                type: uint8
                purpose: RGBColor
                num_elements: 9
                the_data: [[255, 0, 0], [0, 255, 0], [0, 0, 255]]
            - DrawVertices:
                stream_offset: 683
                size: 32
                checksum: 0x921E0390FE6E41AA
                flags: ColorsInData | Antialias
                draw_color: {red: 255, green: 128, blue: 0, alpha: 200}
                stroke_width: 1.5
                stroke_pattern: 0xFFFF
                method: solid
                kind: TriangleFan
                num_elements: 3
            - DataHere:
                stream_offset: 715
                size: 27
                checksum: 0xC03FE5C3A6BAF66C
                type: char
                purpose: Text
                num_elements: 7
                the_data: "Gain µ"
            - DrawText:
                stream_offset: 742
                size: 60
                checksum: 0x8CC102EF5B8F29B4
                flags: Antialias
                draw_color: {red: 255, green: 128, blue: 0, alpha: 200}
                horizontal: Right
                vertical: Bottom
                rect: [0, 0, 100, 20]
                clip_rect: [1, 2, 90, 18]
                angle: 0
            - DataHere:
                stream_offset: 802
                size: 22
                checksum: 0x4D0440B6FB31BF4B
                type: char
                purpose: Text
                num_elements: 2
                the_data: "dB"
            - DrawText:
                stream_offset: 824
                size: 60
                checksum: 0xFA70EDA9DCC9D06E
                flags: Antialias
                draw_color: {red: 255, green: 128, blue: 0, alpha: 200}
                horizontal: HCenter
                vertical: VCenter
                rect: [0, 0, 20, 100]
                clip_rect: [0, 0, 0, 0]
                angle: -90
            - DrawImage:
                stream_offset: 884
                size: 48
                checksum: 0x345EF8C9852EE561
                flags: Antialias
                ResID: 1001
                location: [5, 5]
                logical_size: [40, 40]
                clip_rect: [6, 6, 20, 20]
            - DataHere:
                stream_offset: 932
                size: 91
                checksum: 0x746B868FC7BC4892
                type: uint8
                purpose: DrawImage
                num_elements: 71
                the_data: !!binary "iVBORw0KGgoAAAANSUhEUgAAAAIAAAABCAYAAAD0In+KAAAADklEQVR4nGP4z8AAQg0AD3oDfnfpf5cAAAAASUVORK5CYII="
            - DataHere:
                stream_offset: 1023
                size: 52
                checksum: 0x548F584A82C53A42
                type: Rect
                purpose: Clip Rectangles
                num_elements: 2
                Clip Rectangles: [[0, 0, 50, 50], [60, 0, 50.5, 50]]
            - DrawImageMultipleClips:
                stream_offset: 1075
                size: 36
                checksum: 0xB7BD10380D252646
                flags: Antialias
                ResID: 0
                location: [3, 4]
                logical_size: [0, 0]
                num_elements: 2
            - Any:
                stream_offset: 1111
                size: 8
                checksum: 0x0000000000000000
            - None:
                stream_offset: 1119
                size: 8
                checksum: 0x0000000000000000
            - IllegalGraphicStreamCommand:
                stream_offset: 1135
                size: 8
                checksum: 0x0000000000000000
            - DataHere:
                stream_offset: 1143
                size: 28
                checksum: 0xE921B4509C7975B5
                type: int32
                purpose: ResID
                num_elements: 2
                the_data: [1001, -2]
            - DataHere:
                stream_offset: 1171
                size: 23
                checksum: 0x8D1DD627E7203296
                type: Unknown GraphicStreamCommand 4711
                purpose: Any
                num_elements: 3
                the_data: unknown data type
            - DataHere:
                stream_offset: 1194
                size: 22
                checksum: 0xF9A731D6F540AF8A
                type: int8
                purpose: Any
                num_elements: 2
                the_data: [-1, 1]
            - DataHere:
                stream_offset: 1216
                size: 28
                checksum: 0x8B655DD5F02B3DEF
                type: RGBAColor
                purpose: RGBAColor
                num_elements: 2
                the_data: [[1, 2, 3, 4], [5, 6, 7, 8]]
            - DataHere:
                stream_offset: 1244
                size: 32
                checksum: 0x981F7AD77249A351
                type: int16
                purpose: Point3D
                num_elements: 6
                the_data: [[1, 2, 3], [-4, -5, -6]]
- KCGraphicStreamToYAML.m_ExecCommands_count: 41
  KCGraphicStreamToYAML.m_count_emits: 38
  KCGraphicStreamToYAML.m_count_skips: 2
  KCGraphicStreamToYAML.m_count_missing: 0
  m_count_emits+m_count_skips: 40
  m_ExecCommands_count (without end frames): 40)yaml";

std::string YamlOf(const KCGraphicStreamBinaryWriter& writer) {
    KCGraphicStreamToYAML yaml;
    EXPECT_EQ(yaml.ExecStream(writer), kvKorvo::kErr_NoErr);
    return std::string(yaml.GetText());
}

bool Holds(const std::string& text, const char* part) { return text.find(part) != std::string::npos; }

TEST(StreamToYAML, EveryCommandHasItsText) {
    KCGraphicStreamBinaryWriter writer;
    RecordEveryCommand(writer);
    EXPECT_EQ(YamlOf(writer), kGolden);
}

TEST(StreamToYAML, TheTextIsTheSameInAGermanHost) {
    KCGraphicStreamBinaryWriter writer;
    RecordEveryCommand(writer);
    const kvTest::GermanLocale german;
    ASSERT_TRUE(german.IsActive());
    EXPECT_EQ(YamlOf(writer), kGolden);
}

TEST(StreamToYAML, CountersAddUpForRandomStreams) {
    for (uint32_t seed = 0; seed < 50; ++seed) {
        KCGraphicStreamBinaryWriter writer;
        RandomRecorder(seed).Record(writer, 40);
        KCGraphicStreamToYAML yaml;
        ASSERT_EQ(yaml.ExecStream(writer), kvKorvo::kErr_NoErr);
        EXPECT_EQ(yaml.GetEmitsCount() + yaml.GetSkipsCount(),
                  yaml.GetExecCommandsCount() - yaml.GetEndFramesCount());
        EXPECT_EQ(yaml.GetReport(), "");
        EXPECT_NO_THROW(YAML::Load(std::string(yaml.GetText())));
    }
}

TEST(StreamToYAML, AnUnknownCodeIsShownByItsNumberAndCountsAsSkipped) {
    KCGraphicStreamBinaryWriter writer;
    writer.CommandHeader(4711);
    KCGraphicStreamToYAML yaml;
    ASSERT_EQ(yaml.ExecStream(writer), kvKorvo::kErr_NoErr);
    EXPECT_TRUE(Holds(std::string(yaml.GetText()), "- Unknown GraphicStreamCommand 4711:\n"));
    EXPECT_EQ(yaml.GetEmitsCount(), 0u);
    EXPECT_EQ(yaml.GetSkipsCount(), 1u);
}

TEST(StreamToYAML, DataOfAnUnknownTypeSaysSo) {
    KCGraphicStreamBinaryWriter writer;
    writer.DataHere(kPolygon, kAny, "abc", 3);
    EXPECT_TRUE(Holds(YamlOf(writer), "the_data: unknown data type\n"));
}

TEST(StreamToYAML, WhatIsNoFiniteNumberIsReadBackAsItIs) {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    const float written[] = {std::numeric_limits<float>::quiet_NaN(), kInfinity, -kInfinity};
    KCGraphicStreamBinaryWriter writer;
    writer.DataHere(kFloat, kAny, written, 3).RotateFrame(-kInfinity);
    const YAML::Node dump = YAML::Load(YamlOf(writer));
    const YAML::Node read = dump[0]["DataHere"]["the_data"];
    EXPECT_TRUE(std::isnan(read[0].as<float>()));
    EXPECT_EQ(read[1].as<float>(), kInfinity);
    EXPECT_EQ(read[2].as<float>(), -kInfinity);
    EXPECT_EQ(dump[1]["RotateFrame"]["angle"].as<float>(), -kInfinity);
}

TEST(StreamToYAML, DataByPointerIsShownInItsOwnProcessOnly) {
    KCGraphicStreamBinaryWriter writer(1);
    writer.DataStr("secret");
    EXPECT_TRUE(Holds(YamlOf(writer), "the_data: \"secret\"\n"));
    const std::vector<uint8_t> bytes = BytesOf(writer);
    KCGraphicStreamToYAML yaml;
    ASSERT_EQ(yaml.ExecStream(bytes.data(), bytes.size()), kvKorvo::kErr_NoErr);
    EXPECT_FALSE(Holds(std::string(yaml.GetText()), "secret"));
    EXPECT_TRUE(Holds(std::string(yaml.GetText()), "not here (a pointer of another process)"));
    EXPECT_EQ(yaml.GetMissingCount(), 1u);
}

TEST(StreamToYAML, NoDumpHoldsAnAddress) {
    const std::string one(100, 'x');
    const std::string& same = one;
    const std::string other = one;
    KCGraphicStreamBinaryWriter writer(1);
    KCGraphicStreamBinaryWriter writerOfOther(1);
    writer.DataStr(same);
    writerOfOther.DataStr(other);
    EXPECT_EQ(YamlOf(writer), YamlOf(writerOfOther));
    KCGraphicStreamToYAML yaml;
    KCGraphicStreamToYAML yamlOfOther;
    ASSERT_EQ(yaml.ExecStream(BytesOf(writer).data(), 28), kvKorvo::kErr_NoErr);
    ASSERT_EQ(yamlOfOther.ExecStream(BytesOf(writerOfOther).data(), 28), kvKorvo::kErr_NoErr);
    EXPECT_EQ(yaml.GetText(), yamlOfOther.GetText());
}

TEST(StreamToYAML, GivenChecksumsAreShownAndAReportSaysWhenTheyRunShort) {
    KCGraphicStreamBinaryWriter writer;
    writer.CommandHeader(kAny).CommandHeader(kNone).CommandHeader(kAny);
    const uint64_t checksums[] = {0x11, 0x22, 0x33};
    KCGraphicStreamToYAML yaml;
    yaml.SetChecksums(checksums);
    ASSERT_EQ(yaml.ExecStream(writer), kvKorvo::kErr_NoErr);
    EXPECT_TRUE(Holds(std::string(yaml.GetText()), "checksum: 0x0000000000000033\n"));
    EXPECT_EQ(yaml.GetReport(), "");
    yaml.SetChecksums({checksums, 1});
    ASSERT_EQ(yaml.ExecStream(writer), kvKorvo::kErr_NoErr);
    EXPECT_EQ(yaml.GetReport(), "not enough checksums\n");
}

TEST(StreamToYAML, ARecordOfAnUnknownCodeTakesAGivenChecksumToo) {
    KCGraphicStreamBinaryWriter writer;
    writer.CommandHeader(4711).CommandHeader(kIgnoreStreamCommand).CommandHeader(kAny);
    const uint64_t checksums[] = {0x11, 0x22};
    KCGraphicStreamToYAML yaml;
    yaml.SetChecksums(checksums);
    ASSERT_EQ(yaml.ExecStream(writer), kvKorvo::kErr_NoErr);
    const YAML::Node dump = YAML::Load(std::string(yaml.GetText()));
    EXPECT_EQ(dump[0]["Unknown GraphicStreamCommand 4711"]["checksum"].as<int>(), 0x11);
    EXPECT_EQ(dump[1]["Any"]["checksum"].as<int>(), 0x22);
    EXPECT_EQ(yaml.GetReport(), "");
}

TEST(StreamToYAML, ARefusedStreamLeavesNothingOfTheOneBefore) {
    KCGraphicStreamBinaryWriter writer;
    writer.CommandHeader(kAny);
    KCGraphicStreamToYAML yaml;
    ASSERT_EQ(yaml.ExecStream(writer), kvKorvo::kErr_NoErr);
    EXPECT_EQ(yaml.ExecStream(nullptr, 8), kvKorvo::kErr_NullArgument);
    EXPECT_FALSE(Holds(std::string(yaml.GetText()), "Any"));
    EXPECT_EQ(yaml.GetEmitsCount(), 0u);
}

TEST(StreamToYAML, AWalkThatFailsLeavesWellFormedTextWithItsError) {
    KCGraphicStreamBinaryWriter writer;
    writer.OpenStream(SGSStream()).OpenFrame(SGSFrame()).CommandHeader(kDrawOval);
    KCGraphicStreamToYAML yaml;
    EXPECT_EQ(yaml.ExecStream(writer), kvKorvo::kErr_MalformedStream);
    const YAML::Node root = YAML::Load(std::string(yaml.GetText()));
    ASSERT_EQ(root.size(), 3u);
    EXPECT_EQ(root[1]["error"].as<int>(), kvKorvo::kErr_MalformedStream);
    EXPECT_EQ(root[1]["stream_offset"].as<int>(), 144);
}

TEST(StreamToYAML, EveryPrefixOfAStreamMakesWellFormedText) {
    KCGraphicStreamBinaryWriter writer;
    RecordEveryCommand(writer);
    const std::vector<uint8_t> bytes = BytesOf(writer);
    for (size_t size = 0; size <= bytes.size(); size += 13) {
        KCGraphicStreamToYAML yaml;
        (void)yaml.ExecStream(bytes.data(), size);
        EXPECT_NO_THROW(YAML::Load(std::string(yaml.GetText())));
    }
}

} // namespace
