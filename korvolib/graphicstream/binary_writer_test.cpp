#include <korvolib/graphicstream/binary_writer.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include <korvolib/graphicstream/stream_test_internal.h>
#include <korvolib/utilities/error_codes.h>
#include <tests/support/allocation_count.h>

namespace {

using namespace kvGSTest;
using kvKorvo::KURect;

uint32_t WordAt(const KCGraphicStreamBinaryWriter& writer, size_t offset) {
    uint32_t word = 0;
    std::memcpy(&word, writer.GetStreamMemObj().GetBytes().data() + offset, sizeof word);
    return word;
}

TEST(StreamWriter, ACommandHeaderOfAnyCodeIsTheCodeAndEight) {
    for (const uint32_t code : {uint32_t{kEndFrame}, uint32_t{kDrawOval}, 0u, 0xFFFFFFFFu}) {
        KCGraphicStreamBinaryWriter writer;
        writer.CommandHeader(code);
        ASSERT_EQ(writer.GetStreamMemObj().GetSize(), 8u);
        EXPECT_EQ(WordAt(writer, 0), code);
        EXPECT_EQ(WordAt(writer, 4), 8u);
    }
}

TEST(StreamWriter, CloseFrameWritesTheGivenCode) {
    KCGraphicStreamBinaryWriter writer;
    writer.CloseFrame().CloseFrame(kEndStream);
    EXPECT_EQ(WordAt(writer, 0), kEndFrame);
    EXPECT_EQ(WordAt(writer, 8), kEndStream);
}

TEST(StreamWriter, AFrameFromARectangleHasNoOwner) {
    KCGraphicStreamBinaryWriter writer;
    writer.OpenFrame(KURect<int>::FromEdges(-10, 20, 30, 15));
    ASSERT_EQ(writer.GetStreamMemObj().GetSize(), 32u);
    SGSFrame frame;
    std::memcpy(&frame, BytesOf(writer).data(), sizeof frame);
    EXPECT_EQ(frame.owner, 0u);
    EXPECT_EQ(frame.x, -10);
    EXPECT_EQ(frame.y, 20);
    EXPECT_EQ(frame.width, 40);
    EXPECT_EQ(frame.height, -5);
}

TEST(StreamWriter, AFrameAcrossTheWholeRangeSaturates) {
    KCGraphicStreamBinaryWriter writer;
    constexpr int kLow = std::numeric_limits<int>::min();
    constexpr int kHigh = std::numeric_limits<int>::max();
    writer.OpenFrame(KURect<int>::FromEdges(kLow, kHigh, kHigh, kLow));
    EXPECT_EQ(WordAt(writer, 24), static_cast<uint32_t>(kHigh));
    EXPECT_EQ(WordAt(writer, 28), static_cast<uint32_t>(kLow));
}

TEST(StreamWriter, AStreamDescriptionIsWrittenWhole) {
    SGSStream stream;
    std::memset(static_cast<void*>(&stream), 0xA5, sizeof stream);
    KCGraphicStreamBinaryWriter writer;
    writer.OpenStream(stream);
    const std::vector<uint8_t> bytes = BytesOf(writer);
    ASSERT_EQ(bytes.size(), 112u);
    EXPECT_EQ(WordAt(writer, 0), kBeginStream);
    EXPECT_EQ(WordAt(writer, 4), 112u);
    EXPECT_EQ(std::memcmp(bytes.data() + 8, reinterpret_cast<const uint8_t*>(&stream) + 8, 104), 0);
}

// Each drawing operation writes the fields of its record in their places: compared with the structures.

template <class Record>
void ExpectRecord(const KCGraphicStreamBinaryWriter& writer, size_t offset, const Record& expected) {
    const std::vector<uint8_t> bytes = BytesOf(writer);
    ASSERT_GE(bytes.size(), offset + sizeof expected);
    EXPECT_EQ(std::memcmp(bytes.data() + offset, &expected, sizeof expected), 0);
}

TEST(StreamWriter, AnOvalCarriesTheSettings) {
    KCGraphicStreamBinaryWriter writer;
    writer.SetDrawColor({1, 2, 3, 4}).SetStrokeWidth(2.5F).SetStrokePattern(0x1234).SetAntialias(false);
    writer.SetXorMode(true).SetSegment(9).DrawOval({1, 2, 3, 4}, kWire, 5, 6);
    SGSDrawOval expected;
    expected.flags = eDrawInXORMode;
    expected.drawColor = {1, 2, 3, 4};
    expected.strokeWidth = 2.5F;
    expected.strokePattern = 0x1234;
    expected.method = kWire;
    expected.rect = {1, 2, 3, 4};
    expected.startAngle = 5;
    expected.sweepAngle = 6;
    expected.slicesNum = 9;
    ExpectRecord(writer, 0, expected);
    EXPECT_EQ(writer.GetStreamMemObj().GetSize(), sizeof expected);
}

TEST(StreamWriter, ASolidRectIsAPolygonBehindItsCorners) {
    KCGraphicStreamBinaryWriter writer;
    writer.DrawSolidRect({9, 8, 7, 6}, KURect<short>::FromEdges(1, 2, 3, 4));
    const int16_t corners[] = {1, 2, 3, 2, 3, 4, 1, 4};
    ExpectRecord(writer, 0, SGSDataHere{kDataHere, 36, kPoint2D, kInt16, 8});
    ExpectRecord(writer, 20, corners);
    SGSDrawVertices expected;
    expected.drawColor = {9, 8, 7, 6};
    expected.numVertices = 4;
    ExpectRecord(writer, 36, expected);
}

TEST(StreamWriter, AWireRectLiesInsideItsRectangle) {
    KCGraphicStreamBinaryWriter writer;
    writer.SetStrokeWidth(2).DrawWireRect({}, KURect<short>::FromEdges(0, 0, 10, 20));
    const float corners[] = {1, 1, 9, 1, 9, 19, 1, 19};
    ExpectRecord(writer, 20, corners);
}

TEST(StreamWriter, AnXORRectIsInXORModeWhateverTheSetting) {
    KCGraphicStreamBinaryWriter writer;
    writer.DrawXORRect(KURect<short>::FromEdges(0, 0, 1, 1));
    EXPECT_FALSE(writer.GetXorMode());
    EXPECT_EQ(WordAt(writer, 36 + 8), uint32_t{eDrawInXORMode} | kAntialias);
}

TEST(StreamWriter, VerticesCarryTheirColoursOnlyIfThereIsOneForEach) {
    KCGraphicStreamBinaryWriter writer;
    writer.GetGSArrays().AddPoint_2Ds(1, 2);
    writer.GetGSArrays().AddPoint_2Ds(3, 4);
    writer.GetGSArrays().AddColor_3ub(1, 2, 3);
    writer.DrawVertices(kLineStrip);
    EXPECT_EQ(writer.GetStreamMemObj().GetSize(), 20u + 8u + 32u);
    EXPECT_EQ(WordAt(writer, 28 + 8), uint32_t{kAntialias});
    writer.ClearStream().GetGSArrays().AddColor_3ub(4, 5, 6);
    writer.DrawVertices(kLineStrip);
    EXPECT_EQ(writer.GetStreamMemObj().GetSize(), 20u + 8u + 20u + 6u + 32u);
    EXPECT_EQ(WordAt(writer, 54 + 8), uint32_t{kAntialias} | kColorsInData);
}

TEST(StreamWriter, WithoutVerticesNothingIsDrawnOrClipped) {
    KCGraphicStreamBinaryWriter writer;
    writer.DrawVertices(kPolygon).ClipVertices();
    EXPECT_EQ(writer.GetStreamMemObj().GetSize(), 0u);
}

TEST(StreamWriter, EmptyClipsAndEmptyScaledPicturesWriteNothing) {
    KCGraphicStreamBinaryWriter writer;
    const SGSRect empty{5, 5, 0, 10};
    const SGSRect rect{0, 0, 10, 10};
    writer.DrawPNGAtPositionClipped({1}, {0, 0}, empty).DrawPNGScaled({1}, empty);
    writer.DrawPNGScaledAndClipped({1}, rect, empty).DrawPNGScaledAndClipped({1}, empty, rect);
    writer.DrawTheText("text", rect, kLeft, kTop, empty).DrawPNG({nullptr, 0});
    EXPECT_EQ(writer.GetStreamMemObj().GetSize(), 0u);
}

TEST(StreamWriter, StartClearsTheArraysAndLeavesTheStream) {
    KCGraphicStreamBinaryWriter writer;
    writer.CommandHeader(kAny).GetGSArrays().AddPoint_2Ds(1, 2);
    writer.Start();
    EXPECT_EQ(writer.GetGSArrays().GetNumVerticesTotal(), 0u);
    EXPECT_EQ(writer.GetStreamMemObj().GetSize(), 8u);
}

// Data, in place and by pointer.

TEST(StreamWriter, DataBelowTheThresholdGoesInPlaceAndFromItOnByPointer) {
    const char data[64] = {};
    KCGraphicStreamBinaryWriter writer(64);
    writer.Data(kChar, kText, data, 63);
    EXPECT_EQ(WordAt(writer, 0), kDataHere);
    EXPECT_EQ(writer.GetStreamMemObj().GetSize(), 20u + 63u);
    writer.ClearStream().Data(kChar, kText, data, 64);
    EXPECT_EQ(WordAt(writer, 0), kDataPtr);
    EXPECT_EQ(writer.GetStreamMemObj().GetSize(), 28u);
}

TEST(StreamWriter, TheThresholdCountsBytesNotElements) {
    const float data[16] = {};
    KCGraphicStreamBinaryWriter writer(64);
    writer.Data(kFloat, kPoint2D, data, 15).Data(kFloat, kPoint2D, data, 16);
    EXPECT_EQ(WordAt(writer, 0), kDataHere);
    EXPECT_EQ(WordAt(writer, 80), kDataPtr);
    EXPECT_EQ(WordAt(writer, 80 + 16), 16u);
}

TEST(StreamWriter, AThresholdOfZeroWritesEverythingInPlace) {
    const std::vector<char> data(100000);
    KCGraphicStreamBinaryWriter writer;
    writer.Data(kChar, kText, data.data(), data.size());
    EXPECT_EQ(WordAt(writer, 0), kDataHere);
    EXPECT_TRUE(writer.WillBeWrittenAsDataHere(SIZE_MAX));
}

TEST(StreamWriter, BothAnswersOnTheThresholdAreEachOthersNegation) {
    KCGraphicStreamBinaryWriter writer;
    for (const size_t threshold : {size_t{0}, size_t{1}, size_t{64}, SIZE_MAX}) {
        writer.SetDataPtrThreshold(threshold);
        for (const size_t size : {size_t{0}, size_t{1}, size_t{63}, size_t{64}, size_t{65}, SIZE_MAX})
            EXPECT_NE(writer.WillBeWrittenAsDataPtr(size), writer.WillBeWrittenAsDataHere(size));
    }
}

TEST(StreamWriter, ADirectCallDoesWhatItsNameSays) {
    const char data[100] = {};
    KCGraphicStreamBinaryWriter writer(10);
    writer.DataHere(kChar, kText, data, 100).DataPtr(kChar, kText, data, 1);
    EXPECT_EQ(WordAt(writer, 0), kDataHere);
    EXPECT_EQ(WordAt(writer, 120), kDataPtr);
}

TEST(StreamWriter, ARecordByPointerHoldsPurposeTypeCountAndAddress) {
    const int16_t data[3] = {};
    KCGraphicStreamBinaryWriter writer;
    writer.DataPtr(kInt16, kPoint3D, data, 3);
    ASSERT_EQ(writer.GetStreamMemObj().GetSize(), 28u);
    EXPECT_EQ(WordAt(writer, 4), 28u);
    EXPECT_EQ(WordAt(writer, 8), kPoint3D);
    EXPECT_EQ(WordAt(writer, 12), kInt16);
    EXPECT_EQ(WordAt(writer, 16), 3u);
    const void* address = nullptr;
    std::memcpy(&address, BytesOf(writer).data() + 20, sizeof address);
    EXPECT_EQ(address, data);
}

TEST(StreamWriter, ARecordInPlaceHoldsPurposeTypeCountAndTheData) {
    KCGraphicStreamBinaryWriter writer;
    writer.DataHere(kChar, kText, "abc", 3);
    const std::vector<uint8_t> bytes = BytesOf(writer);
    ASSERT_EQ(bytes.size(), 23u);
    ExpectRecord(writer, 0, SGSDataHere{kDataHere, 23, kText, kChar, 3});
    EXPECT_EQ(std::memcmp(bytes.data() + 20, "abc", 3), 0);
}

TEST(StreamWriter, TextIsDataOfCharacters) {
    const kvKorvo::KCFixedString<15> text("hello");
    KCGraphicStreamBinaryWriter writer(5);
    writer.DataStr(text).DataHereStr(text).DataPtrStr("x").DataStr(nullptr);
    ExpectRecord(writer, 0, SGSHeader{kDataPtr, 28});
    ExpectRecord(writer, 28, SGSDataHere{kDataHere, 25, kText, kChar, 5});
    ExpectRecord(writer, 53, SGSHeader{kDataPtr, 28});
    ExpectRecord(writer, 81, SGSDataHere{kDataHere, 20, kText, kChar, 0});
}

TEST(StreamWriter, ACountBeyondThirtyTwoBitsIsRefusedAndNothingIsWritten) {
    const char byte = 0;
    for (const size_t count : {size_t{1} << 32, SIZE_MAX}) {
        KCGraphicStreamBinaryWriter writer(1);
        writer.Data(kRect, kClipRectangles, &byte, count).DataPtr(kChar, kText, &byte, count);
        writer.DataHere(kChar, kText, &byte, count);
        EXPECT_EQ(writer.GetStreamMemObj().GetSize(), 0u);
        EXPECT_EQ(writer.GetError(), kvKorvo::kErr_LimitExceeded);
    }
}

TEST(StreamWriter, DataInPlaceWhoseRecordWouldPassThirtyTwoBitsIsRefused) {
    const char byte = 0;
    KCGraphicStreamBinaryWriter writer;
    writer.DataHere(kRect, kClipRectangles, &byte, 0x10000000).DataHere(kChar, kText, &byte, 0xFFFFFFFF - 19);
    EXPECT_EQ(writer.GetStreamMemObj().GetSize(), 0u);
    EXPECT_EQ(writer.GetError(), kvKorvo::kErr_LimitExceeded);
}

TEST(StreamWriter, NullDataIsRefusedUnlessThereIsNone) {
    KCGraphicStreamBinaryWriter writer(1);
    writer.DataHere(kChar, kText, nullptr, 1).DataPtr(kChar, kText, nullptr, 1);
    EXPECT_EQ(writer.GetStreamMemObj().GetSize(), 0u);
    EXPECT_EQ(writer.GetError(), kvKorvo::kErr_NullArgument);
    writer.ClearStream();
    EXPECT_EQ(writer.GetError(), kvKorvo::kErr_NoErr);
    writer.DataHere(kChar, kText, nullptr, 0).DataPtr(kChar, kText, nullptr, 0);
    EXPECT_EQ(writer.GetStreamMemObj().GetSize(), 48u);
    EXPECT_EQ(writer.GetError(), kvKorvo::kErr_NoErr);
}

TEST(StreamWriter, ACommandWhoseDataIsRefusedIsNotWrittenEither) {
    const std::span<const SGSRect> noRects(static_cast<const SGSRect*>(nullptr), 2);
    KCGraphicStreamBinaryWriter writer;
    writer.CommandHeader(kAny).ClipMultipleRects(noRects).DrawPNGMultipleClips({1001}, noRects);
    writer.DrawPNGMultipleClips({SmallPNG().data(), SmallPNG().size()}, noRects);
    EXPECT_EQ(writer.GetStreamMemObj().GetSize(), 8u);
    EXPECT_EQ(writer.GetError(), kvKorvo::kErr_NullArgument);
}

TEST(StreamWriter, TheFirstErrorStaysAndLaterOperationsAreWritten) {
    const SGSRect rect{0, 0, 1, 1};
    KCGraphicStreamBinaryWriter writer;
    writer.DataHere(kChar, kText, &rect, SIZE_MAX).ClipMultipleRects({&rect, 1});
    EXPECT_EQ(writer.GetStreamMemObj().GetSize(), 36u + 16u);
    EXPECT_EQ(writer.GetError(), kvKorvo::kErr_LimitExceeded);
    writer.ClipMultipleRects({static_cast<const SGSRect*>(nullptr), 1});
    EXPECT_EQ(writer.GetStreamMemObj().GetSize(), 36u + 16u);
    EXPECT_EQ(writer.GetError(), kvKorvo::kErr_LimitExceeded);
}

// Notes.

TEST(StreamWriter, NotesAreWrittenOnlyWhileTheyAreSwitchedOn) {
    KCGraphicStreamBinaryWriter writer;
    writer.Remark("no").MetaData("no", "no");
    EXPECT_EQ(writer.GetStreamMemObj().GetSize(), 0u);
    writer.ActivateRemarks().Remark("yes").MetaData("no", "no");
    EXPECT_EQ(writer.GetStreamMemObj().GetSize(), 8u + 3u);
    writer.ActivateRemarks(false).ActivateMeatData().Remark("no").MetaData("ab", "cde");
    EXPECT_EQ(writer.GetStreamMemObj().GetSize(), 11u + 12u + 5u);
    ExpectRecord(writer, 11, SGSMetaData{kMetaData, 17, 2});
}

TEST(StreamWriter, TheStateIsReportedInOneLine) {
    KCGraphicStreamBinaryWriter writer(64);
    kvKorvo::KCFixedString<1023> report;
    writer.SetDrawColor({255, 0, 16, 255}).CommandHeader(kAny).ReportState(report);
    EXPECT_EQ(report,
              "graphic stream: 8 bytes, error 0, data by pointer from 64 bytes, color #FF0010, stroke width "
              "1.00000, flags Antialias, 0 vertices (No vertices type set), 0 colors\n");
}

// The block that grows.

TEST(StreamWriter, RecordsTheSameBytesFromEveryBufferSize) {
    KCGraphicStreamBinaryWriter reference;
    RecordEveryCommand(reference);
    const std::vector<uint8_t> expected = BytesOf(reference);
    for (size_t size = 0; size <= expected.size() + 1; ++size) {
        KCGraphicStreamBinaryWriter writer;
        ASSERT_EQ(writer.GetStreamMemObj().Resize(size), kvKorvo::kErr_NoErr);
        writer.ClearStream();
        RecordEveryCommand(writer);
        ASSERT_EQ(BytesOf(writer), expected) << size;
    }
}

TEST(StreamWriter, RecordingAgainTakesNoMemory) {
    KCGraphicStreamBinaryWriter writer;
    RecordEveryCommand(writer);
    writer.Start().ClearStream();
    const kvTest::AllocationCount count;
    RecordEveryCommand(writer);
    EXPECT_EQ(count.Taken(), 0u);
}

TEST(StreamWriter, WhatIsReadAndWrittenAgainHasTheSameBytes) {
    for (uint32_t seed = 0; seed < 300; ++seed) {
        KCGraphicStreamBinaryWriter writer;
        RandomRecorder(seed).Record(writer, 60);
        Rewriter again;
        ASSERT_EQ(again.ExecStream(writer), kvKorvo::kErr_NoErr) << seed;
        ASSERT_EQ(BytesOf(again.writer), BytesOf(writer)) << seed;
    }
}

TEST(StreamWriter, RandomStreamsHoldEveryCommandThatTheWriterRecords) {
    KCGraphicStreamBinaryWriter writer;
    RandomRecorder(1).Record(writer, 5000);
    const std::vector<uint8_t> bytes = BytesOf(writer);
    std::vector<uint32_t> codes;
    for (size_t offset = 0; offset < bytes.size();) {
        SGSHeader header;
        std::memcpy(&header, bytes.data() + offset, sizeof header);
        codes.push_back(header.code);
        offset += header.size;
    }
    for (const uint32_t code : {kStreamSignature,
                                kBeginStream,
                                kStreamFormat,
                                kEndStream,
                                kResourcesBaseURL,
                                kBeginFrame,
                                kEndFrame,
                                kRotateFrame,
                                kDrawImage,
                                kDrawImageMultipleClips,
                                kDrawText,
                                kDrawOval,
                                kDrawVertices,
                                kClipVertices,
                                kClipRect,
                                kClipMultipleRects,
                                kDataHere,
                                kFont,
                                kRemark,
                                kMetaData,
                                kAny,
                                kNone})
        EXPECT_NE(std::find(codes.begin(), codes.end(), code), codes.end())
            << GraphicStreamCommandToText(code).c_str();
}

// Files.

std::string TestFile(const char* name) { return (std::filesystem::temp_directory_path() / name).string(); }

std::vector<uint8_t> FileBytes(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST(StreamWriter, AFileHoldsDataByPointerInPlace) {
    const std::string path = TestFile("korvo_writer_test.gs");
    KCGraphicStreamBinaryWriter byPointer(1);
    KCGraphicStreamBinaryWriter inPlace;
    byPointer.DrawTheText("label", {0, 0, 9, 9}).CommandHeader(kAny);
    inPlace.DrawTheText("label", {0, 0, 9, 9}).CommandHeader(kAny);
    int32_t result = -1;
    byPointer.WriteGraphicStreamToFile(path.c_str(), result);
    EXPECT_EQ(result, kvKorvo::kErr_NoErr);
    EXPECT_EQ(FileBytes(path), BytesOf(inPlace));
    std::remove(path.c_str());
}

TEST(StreamWriter, AFileThatCannotBeWrittenIsAnError) {
    KCGraphicStreamBinaryWriter writer;
    int32_t result = 0;
    writer.WriteGraphicStreamToFile("/dev/null/x.gs", result); // no folder, and none can be made there
    EXPECT_LT(result, kvKorvo::kErr_NoErr);
    writer.WriteGraphicStreamToFile(nullptr, result);
    EXPECT_EQ(result, kvKorvo::kErr_NullArgument);
}

TEST(StreamWriter, AFullDiskIsAnError) {
    if (!std::filesystem::exists("/dev/full"))
        GTEST_SKIP() << "no /dev/full here";
    KCGraphicStreamBinaryWriter writer;
    RecordEveryCommand(writer);
    int32_t result = 0;
    writer.WriteGraphicStreamToFile("/dev/full", result);
    EXPECT_LT(result, kvKorvo::kErr_NoErr);
}

TEST(StreamWriter, ACopyInPlaceRefusesWhatDoesNotHoldTogether) {
    kvKorvo::KCStMemObj copy;
    const SGSHeader bad[] = {{kAny, 8}, {kAny, 7}};
    EXPECT_EQ(GSCopyWithDataInPlace(bad, sizeof bad, copy), kvKorvo::kErr_MalformedStream);
    EXPECT_TRUE(copy.IsEmpty());
    const SGSHeader shortPointer{kDataPtr, 8};
    EXPECT_EQ(GSCopyWithDataInPlace(&shortPointer, sizeof shortPointer, copy), kvKorvo::kErr_MalformedStream);
    EXPECT_EQ(GSCopyWithDataInPlace(nullptr, 8, copy), kvKorvo::kErr_NullArgument);
}

} // namespace
