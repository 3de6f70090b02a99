#include <korvolib/graphicstream/arrays.h>

#include <cstring>

#include <gtest/gtest.h>

#include <korvolib/graphicstream/binary_writer.h>
#include <tests/support/allocation_count.h>

namespace {

using namespace kvKorvo::kvGS;

TEST(StreamArrays, StartWithoutATypeAndTakeThatOfTheFirstPoint) {
    KCGSArrays arrays;
    EXPECT_EQ(arrays.GetVerticesType(), eNoVerticesType);
    EXPECT_EQ(arrays.GetNumVertices(), 0u);
    EXPECT_EQ(arrays.GetVerticesPtr(), nullptr);
    EXPECT_TRUE(arrays.AddPoint_3Df(1, 2, 3));
    EXPECT_EQ(arrays.GetVerticesType(), eFloatVerticesType);
    EXPECT_EQ(arrays.GetDimensions(), 3u);
    EXPECT_EQ(arrays.GetSingleVerticeSizeInBytes(), 12u);
}

TEST(StreamArrays, HoldOneTypeAndOneDimensionOnly) {
    KCGSArrays arrays;
    EXPECT_TRUE(arrays.AddPoint_2Ds(1, 2));
    EXPECT_FALSE(arrays.AddPoint_2Df(1, 2));
    EXPECT_FALSE(arrays.AddPoint_3Ds(1, 2, 3));
    EXPECT_FALSE(arrays.AddPoint_3Df(1, 2, 3));
    EXPECT_TRUE(arrays.CheckVerticesAndDimensionsConsistancy(eShortVerticesType, 2));
    EXPECT_FALSE(arrays.CheckVerticesAndDimensionsConsistancy(eShortVerticesType, 3));
    EXPECT_FALSE(arrays.CheckVerticesAndDimensionsConsistancy(eFloatVerticesType, 2));
    EXPECT_FALSE(arrays.CheckVerticesAndDimensionsConsistancy(eNoVerticesType, 2));
    EXPECT_EQ(arrays.GetVerticesSizeInBytes(), 4u);
}

TEST(StreamArrays, AnyTypeIsConsistentWithAnEmptyArrayButNoOtherDimension) {
    const KCGSArrays arrays;
    EXPECT_TRUE(arrays.CheckVerticesAndDimensionsConsistancy(eFloatVerticesType, 3));
    EXPECT_FALSE(arrays.CheckVerticesAndDimensionsConsistancy(eFloatVerticesType, 4));
    EXPECT_FALSE(arrays.CheckVerticesAndDimensionsConsistancy(eFloatVerticesType, 1));
}

TEST(StreamArrays, NullPointsAreRefusedAndNoneChangeNothing) {
    KCGSArrays arrays;
    EXPECT_FALSE(arrays.AddPoints_2Ds(nullptr, 3));
    EXPECT_TRUE(arrays.AddPoints_2Ds(nullptr, 0));
    EXPECT_FALSE(arrays.AddPoints_2Ds(nullptr, SIZE_MAX));
    EXPECT_EQ(arrays.GetVerticesType(), eNoVerticesType);
    EXPECT_TRUE(arrays.AddPoint_2Df(1, 2));
}

TEST(StreamArrays, PluralFormsAppendAllPointsInOrder) {
    KCGSArrays arrays;
    const int16_t points[] = {1, 2, 3, 4, 5, 6};
    EXPECT_TRUE(arrays.AddPoints_2Ds(points, 3));
    ASSERT_EQ(arrays.GetNumVertices(), 3u);
    EXPECT_EQ(std::memcmp(arrays.GetVerticesPtr(), points, sizeof points), 0);
}

TEST(StreamArrays, ColoursOfBothKindsDoNotMix) {
    KCGSArrays arrays;
    EXPECT_TRUE(arrays.AddColor_3ub(1, 2, 3));
    EXPECT_FALSE(arrays.AddColor_4ub(1, 2, 3, 4));
    EXPECT_EQ(arrays.GetNumColors(), 1u);
    EXPECT_EQ(arrays.GetSingleColorSizeInBytes(), 3u);
    EXPECT_EQ(arrays.GetColorsSizeInBytes(), 3u);
    arrays.ClearArrays();
    EXPECT_EQ(arrays.GetColorPtr(), nullptr);
    EXPECT_TRUE(arrays.AddColor_4ub(1, 2, 3, 4));
}

TEST(StreamArrays, ARangeChoosesVerticesAndTheirColours) {
    KCGSArrays arrays;
    for (int16_t i = 0; i < 10; ++i) {
        arrays.AddPoint_2Ds(i, i);
        arrays.AddColor_3ub(static_cast<uint8_t>(i), 0, 0);
    }
    arrays.SetRange(3, 4);
    EXPECT_EQ(arrays.GetNumVertices(), 4u);
    EXPECT_EQ(arrays.GetNumVerticesTotal(), 10u);
    EXPECT_EQ(*static_cast<const int16_t*>(arrays.GetVerticesPtr()), 3);
    EXPECT_EQ(*static_cast<const uint8_t*>(arrays.GetColorPtr()), 3);
    EXPECT_EQ(arrays.GetNumColors(), 4u);
}

TEST(StreamArrays, ARangeBeyondTheVerticesIsCut) {
    KCGSArrays arrays;
    const float points[] = {1, 2, 3, 4};
    arrays.AddPoints_2Df(points, 2);
    arrays.SetRange(1, 100);
    EXPECT_EQ(arrays.GetNumVertices(), 1u);
    arrays.SetRange(SIZE_MAX, SIZE_MAX);
    EXPECT_EQ(arrays.GetNumVertices(), 0u);
    EXPECT_EQ(arrays.GetVerticesPtr(), nullptr);
    arrays.SetRange(0, 0);
    EXPECT_EQ(arrays.GetNumVertices(), 2u);
}

TEST(StreamArrays, GiveDataRecordsInPlaceWhateverTheThreshold) {
    KCGraphicStreamBinaryWriter writer(1);
    KCGSArrays& arrays = writer.GetGSArrays();
    arrays.AddPoint_3Ds(1, 2, 3);
    arrays.AddColor_4ub(9, 8, 7, 6);
    arrays.GiveVerticesToGS(writer);
    arrays.GiveColorsToGS(writer);
    const auto bytes = writer.GetStreamMemObj().GetBytes();
    ASSERT_EQ(bytes.size(), 20u + 6u + 20u + 4u);
    uint32_t words[5];
    std::memcpy(words, bytes.data(), sizeof words);
    EXPECT_EQ(words[0], kDataHere);
    EXPECT_EQ(words[2], kPoint3D);
    EXPECT_EQ(words[3], kInt16);
    EXPECT_EQ(words[4], 3u);
    EXPECT_EQ(bytes[46], 9);
}

TEST(StreamArrays, EmptyArraysGiveNothing) {
    KCGraphicStreamBinaryWriter writer;
    writer.GetGSArrays().GiveVerticesToGS(writer);
    writer.GetGSArrays().GiveColorsToGS(writer);
    EXPECT_EQ(writer.GetStreamMemObj().GetSize(), 0u);
}

TEST(StreamArrays, ClearedArraysTakeNoMemoryAgain) {
    KCGSArrays arrays;
    for (int16_t i = 0; i < 1000; ++i)
        arrays.AddPoint_2Ds(i, i);
    arrays.ClearArrays();
    const kvTest::AllocationCount count;
    for (int16_t i = 0; i < 1000; ++i)
        arrays.AddPoint_2Ds(i, i);
    EXPECT_EQ(count.Taken(), 0u);
}

TEST(StreamArrays, TypesHaveTheirTexts) {
    EXPECT_EQ(KCGSArrays::VerticesTypeToString(eShortVerticesType), "eShortVerticesType");
    EXPECT_EQ(KCGSArrays::VerticesTypeToString(eFloatVerticesType), "eFloatVerticesType");
    EXPECT_EQ(KCGSArrays::VerticesTypeToString(eNoVerticesType), "No vertices type set");
    EXPECT_EQ(KCGSArrays::VerticesTypeToString(3), "Unknown vertices type");
    EXPECT_EQ(KCGSArrays::VerticesTypeToString(-1), "Unknown vertices type");
}

} // namespace
