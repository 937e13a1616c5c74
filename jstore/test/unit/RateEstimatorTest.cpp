#include "output/RateEstimator.h"

#include <gmock/gmock.h>

namespace jstore {

using namespace std::chrono_literals;

namespace {

class RateEstimatorTest : public ::testing::Test {
protected:
    void after(std::chrono::milliseconds time, std::uint64_t done) {
        m_now += time;
        m_rate.update(m_now, done);
    }

    RateEstimator::Time m_now{1h};
    RateEstimator m_rate{m_now};
};

TEST_F(RateEstimatorTest, NothingIsKnownAtTheStart) {
    EXPECT_FALSE(m_rate.rate());
    EXPECT_FALSE(m_rate.timeLeft(100));
}

TEST_F(RateEstimatorTest, SteadySpeedIsExactFromTheFirstMoment) {
    for (std::uint64_t i = 1; i <= 300; ++i) {
        after(100ms, i * 50);
        EXPECT_NEAR(500, m_rate.rate().value(), 0.001);
    }
    EXPECT_EQ(m_rate.timeLeft(300 * 50 + 5000), 10s);
}

TEST_F(RateEstimatorTest, LastSecondsWeighMost) {
    after(10s, 10'000);
    after(5s, 10'000);
    EXPECT_LT(m_rate.rate().value(), 450);
    EXPECT_GT(m_rate.rate().value(), 100);
}

TEST_F(RateEstimatorTest, StandstillGivesNoTimeLeft) {
    after(1s, 0);
    EXPECT_EQ(m_rate.rate(), 0);
    EXPECT_FALSE(m_rate.timeLeft(1));
}

TEST_F(RateEstimatorTest, UpdatesThatFollowEachOtherAtOnceAreTakenTogether) {
    after(100ms, 100);
    after(1ms, 1'000'000);
    EXPECT_NEAR(1000, m_rate.rate().value(), 0.001);
}

TEST_F(RateEstimatorTest, TimeLeftIsRoundedUpAndEndsAtZero) {
    after(1s, 1000);
    EXPECT_EQ(m_rate.timeLeft(1001), 1s);
    EXPECT_EQ(m_rate.timeLeft(1000), 0s);
    EXPECT_EQ(m_rate.timeLeft(1), 0s);
}

TEST_F(RateEstimatorTest, DaysAreNotForetold) {
    after(1s, 1);
    EXPECT_FALSE(m_rate.timeLeft(1'000'000));
}

}  // namespace

}  // namespace jstore
