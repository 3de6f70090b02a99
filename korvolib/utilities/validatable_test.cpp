#include <korvolib/utilities/validatable.h>

#include <type_traits>

#include <gtest/gtest.h>

namespace {

class Resource : public kvKorvo::KUValidatable {
  public:
    explicit Resource(bool obtained) : m_obtained(obtained) {}
    void Lose() { m_obtained = false; }

  protected:
    bool IsValidSelf() const noexcept override { return m_obtained; }

  private:
    bool m_obtained;
};

TEST(Validatable, AnswersWhatTheDerivedClassSays) {
    EXPECT_TRUE(Resource(true).IsValid());
    EXPECT_FALSE(Resource(false).IsValid());
}

TEST(Validatable, AsksAnewEachTime) {
    Resource resource(true);
    const kvKorvo::KUValidatable& base = resource;
    ASSERT_TRUE(base.IsValid());
    resource.Lose();
    EXPECT_FALSE(base.IsValid());
}

TEST(Validatable, StandsInAConditionButNeverBecomesANumber) {
    const Resource held(true);
    const Resource missing(false);
    EXPECT_TRUE(held ? true : false);
    EXPECT_FALSE(missing ? true : false);
    static_assert(!std::is_convertible_v<Resource, bool>);
    static_assert(!std::is_convertible_v<Resource, int>);
}

} // namespace
