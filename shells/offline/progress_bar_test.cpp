#include "progress_bar.h"

#include <gtest/gtest.h>

namespace kvKorvoV12_9_0_320::kvHost {
namespace {

TEST(ProgressBar, IsAsLongAtTheStartAsAtTheEnd) {
    EXPECT_EQ(ProgressText(0), "rendering [" + std::string(40, '-') + "]   0 %");
    EXPECT_EQ(ProgressText(50), "rendering [" + std::string(20, '#') + std::string(20, '-') + "]  50 %");
    EXPECT_EQ(ProgressText(100), "rendering [" + std::string(40, '#') + "] 100 %");
}

TEST(ProgressBar, StaysWithinItsEnds) {
    EXPECT_EQ(ProgressText(-5), ProgressText(0));
    EXPECT_EQ(ProgressText(500), ProgressText(100));
}

} // namespace
} // namespace kvKorvoV12_9_0_320::kvHost
