#include <gtest/gtest.h>

#include "tests/fakes/fakes.h"
#include "tracking/app_tracker.h"

namespace {

using fakes::machine;

constexpr const char* key = "com.velmora.device_id";
constexpr const char* firstRandomUuid = "00000000-0000-4000-8000-000000000001";

class DeviceIdentity : public testing::Test {
  protected:
    void SetUp() override { fakes::reset(); }
};

TEST_F(DeviceIdentity, IsTheMachinesUuidUnchangedAndStored) {
    machine().platformUuid = " lower-case ";
    EXPECT_EQ(AppTracker::getDeviceId(), " lower-case ");
    EXPECT_EQ(machine().defaults[key], " lower-case ");
}

TEST_F(DeviceIdentity, IsAnyStoredText) {
    for (const char* stored : {"no uuid at all", ""}) {
        machine().defaults[key] = stored;
        EXPECT_EQ(AppTracker::getDeviceId(), stored);
        EXPECT_EQ(machine().registryQueries, 0);
        EXPECT_TRUE(machine().events.empty());
    }
}

TEST_F(DeviceIdentity, IsAStoredRandomUuidWithoutAMachineUuid) {
    machine().platformUuid = std::nullopt;
    EXPECT_EQ(AppTracker::getDeviceId(), firstRandomUuid);
    EXPECT_EQ(machine().defaults[key], firstRandomUuid);
    EXPECT_EQ(AppTracker::getDeviceId(), firstRandomUuid);
}

// Another start of the program may store its own id between this one's look and store.
TEST_F(DeviceIdentity, IsTheIdThatItStores) {
    machine().platformUuid = std::nullopt;
    machine().beforeStore = [] { machine().defaults[key] = "ANOTHER"; };
    EXPECT_EQ(AppTracker::getDeviceId(), firstRandomUuid);
    EXPECT_EQ(machine().defaults[key], firstRandomUuid);
}

TEST_F(DeviceIdentity, StaysAfterClearingTheStoreWithAMachineUuid) {
    const std::string before = AppTracker::getDeviceId();
    machine().defaults.clear();
    EXPECT_EQ(AppTracker::getDeviceId(), before);
}

TEST_F(DeviceIdentity, ChangesAfterClearingTheStoreWithoutAMachineUuid) {
    machine().platformUuid = std::nullopt;
    const std::string before = AppTracker::getDeviceId();
    machine().defaults.clear();
    EXPECT_NE(AppTracker::getDeviceId(), before);
}

TEST_F(DeviceIdentity, WritesNothingToTheLog) {
    (void)AppTracker::getDeviceId();
    EXPECT_TRUE(machine().log.empty());
}

}  // namespace
