// Watches every test of this program: none may leave an open descriptor behind, and with it a lock. (Memory is the
// address sanitizer's to watch.)

#include <filesystem>
#include <iterator>

#include <gtest/gtest.h>

namespace {

ptrdiff_t OpenDescriptors() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"),
                         std::filesystem::directory_iterator());
}

class DescriptorWatch : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo&) override { m_before = OpenDescriptors(); }
    void OnTestEnd(const testing::TestInfo& test) override {
        EXPECT_EQ(OpenDescriptors(), m_before) << test.name() << " left descriptors open";
    }
    ptrdiff_t m_before = 0;
};

const bool kIsWatching = [] {
    testing::UnitTest::GetInstance()->listeners().Append(new DescriptorWatch);
    return true;
}();

TEST(NoLeftovers, EveryTestIsWatched) { EXPECT_TRUE(kIsWatching); }

} // namespace
