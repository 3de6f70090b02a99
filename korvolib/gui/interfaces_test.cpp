#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include <korvolib/gui/interfaces.h>
#include <korvolib/utilities/error_codes.h>

namespace kvTest {
namespace {

using namespace kvKorvo;

struct Node : KCNeighborable<Node*> {};

TEST(Neighborable, KnowsTheOneBeforeAndTheOneAfter) {
    Node first, second;
    first.SetNext(&second);
    second.SetPrevious(&first);
    EXPECT_EQ(first.GetNext(), &second);
    EXPECT_EQ(second.GetPrevious(), &first);
    first.Reset();
    EXPECT_EQ(first.GetNext(), nullptr);
    EXPECT_EQ(second.GetPrevious(), &first); // the other keeps it
}

TEST(MouseHover, CountsFromTheBeginningOfAStay) {
    KCMouseHover hover;
    EXPECT_EQ(hover.GetHoverSeconds(5.0), 0.0);
    hover.BeginHover(10.0);
    hover.BeginHover(11.0); // still there
    EXPECT_TRUE(hover.IsHovering());
    EXPECT_EQ(hover.GetHoverSeconds(12.5), 2.5);
    hover.EndHover();
    EXPECT_EQ(hover.GetHoverSeconds(12.5), 0.0);
    hover.BeginHover(20.0);
    EXPECT_EQ(hover.GetHoverSeconds(21.0), 1.0);
}

TEST(MouseHover, ClockThatRunsBackOrIsNoNumberGivesNothing) {
    KCMouseHover hover;
    hover.BeginHover(std::numeric_limits<double>::quiet_NaN());
    EXPECT_FALSE(hover.IsHovering());
    hover.BeginHover(10.0);
    EXPECT_EQ(hover.GetHoverSeconds(9.0), 0.0);
    EXPECT_EQ(hover.GetHoverSeconds(std::numeric_limits<double>::quiet_NaN()), 0.0);
}

const std::vector<uint8_t> kPNG = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n', 1};

TEST(ResContainer, GivesBackTheBytesOfAPicture) {
    RM::KCResContainer container;
    EXPECT_EQ(container.AddImage(7, kPNG), kErr_NoErr);
    EXPECT_TRUE(container.HasImage(7));
    const auto bytes = container.GetImagePNG(7);
    EXPECT_EQ(std::vector<uint8_t>(bytes.begin(), bytes.end()), kPNG);
    EXPECT_NE(bytes.data(), kPNG.data());
    EXPECT_FALSE(container.HasImage(8));
    EXPECT_TRUE(container.GetImagePNG(8).empty());
}

TEST(ResContainer, IdThatIsThereIsReplaced) {
    RM::KCResContainer container;
    std::vector<uint8_t> longer = kPNG;
    longer.push_back(2);
    EXPECT_EQ(container.AddImage(7, kPNG), kErr_NoErr);
    EXPECT_EQ(container.AddImage(7, longer), kErr_NoErr);
    EXPECT_EQ(container.GetImagePNG(7).size(), longer.size());
}

TEST(ResContainer, WhatIsNoPictureIsRefused) {
    RM::KCResContainer container;
    EXPECT_EQ(container.AddImage(7, {}), kErr_NullArgument);
    std::vector<uint8_t> other = kPNG;
    other[3] = 'X';
    EXPECT_EQ(container.AddImage(7, other), kErr_MalformedText);
    for (size_t size = 1; size < 8; ++size) // cut short, in a block of exactly that size
        EXPECT_EQ(container.AddImage(7, std::vector<uint8_t>(kPNG.begin(), kPNG.begin() + ptrdiff_t(size))),
                  kErr_MalformedText);
    EXPECT_FALSE(container.HasImage(7));
}

} // namespace
} // namespace kvTest
