#include "app/content_view.h"

#include <gtest/gtest.h>

#include "tests/app/outline.h"
#include "tests/fakes/fakes.h"

namespace {

using fakes::machine;
using StatusType = ContentView::StatusType;

HardwareInfo record(const std::string& processor) {
    return {"macOS", processor, "GPU", 16, "DDR4", 2666, 494, "SSD", "Not Applicable", 4};
}

class ContentViewFlows : public testing::Test {
  protected:
    void SetUp() override { fakes::reset(); }

    // Runs an action to its end.
    static void finish() {
        fakes::runBackground();
        fakes::runMainQueue();
    }

    // Sends a record that the website accepts.
    void succeed() {
        machine().website = [](const auto&) { return fakes::answered(200, R"({"success":true})"); };
        view_.detectedHardware.set(record("M1"));
        view_.sendToWebsite();
        finish();
    }

    ContentView view_;
};

TEST_F(ContentViewFlows, StartWithTheInitialState) {
    EXPECT_EQ(view_.websiteUrl.get(), "https://www.velmora.example");
    EXPECT_FALSE(view_.detectedHardware.get());
    EXPECT_FALSE(view_.isDetecting.get());
    EXPECT_FALSE(view_.isSending.get());
    EXPECT_EQ(view_.statusMessage.get(), "");
    EXPECT_EQ(view_.statusType.get(), StatusType::info);
}

TEST_F(ContentViewFlows, StatusTypesHaveTheirOrderAndHash) {
    EXPECT_EQ(static_cast<int>(StatusType::info), 0);
    EXPECT_EQ(static_cast<int>(StatusType::success), 1);
    EXPECT_EQ(static_cast<int>(StatusType::error), 2);
    for (const StatusType type : {StatusType::info, StatusType::success, StatusType::error}) {
        EXPECT_EQ(std::hash<StatusType>{}(type), std::hash<int>{}(static_cast<int>(type)));
    }
}

TEST_F(ContentViewFlows, CopiesShareTheSameState) {
    const ContentView copy = view_;
    copy.statusMessage.set("seen by both");
    EXPECT_EQ(view_.statusMessage.get(), "seen by both");
}

TEST_F(ContentViewFlows, DetectingHidesTheBannerAtOnceAndKeepsEverythingElse) {
    view_.detectedHardware.set(record("old"));
    view_.statusMessage.set("banner");
    view_.statusType.set(StatusType::error);

    view_.detectHardware();

    EXPECT_TRUE(view_.isDetecting.get());
    EXPECT_EQ(view_.statusMessage.get(), "");
    EXPECT_EQ(view_.statusType.get(), StatusType::error);
    EXPECT_EQ(view_.detectedHardware.get()->processor, "old");
    EXPECT_TRUE(machine().commandsRun.empty());
}

TEST_F(ContentViewFlows, ADetectionEndsWithTheRecordAndTheSuccessBanner) {
    machine().commands["/usr/sbin/sysctl -n machdep.cpu.brand_string"] = "new\n";
    view_.detectHardware();
    fakes::runBackground();
    EXPECT_FALSE(view_.detectedHardware.get()) << "the main queue has not run yet";

    fakes::runMainQueue();

    EXPECT_EQ(view_.detectedHardware.get()->processor, "new");
    EXPECT_FALSE(view_.isDetecting.get());
    EXPECT_EQ(view_.statusMessage.get(), "Hardware detected successfully!");
    EXPECT_EQ(view_.statusType.get(), StatusType::success);
}

TEST_F(ContentViewFlows, TheCommandsRunInTheBackground) {
    view_.detectHardware();
    fakes::runMainQueue();
    EXPECT_TRUE(machine().commandsRun.empty());
    fakes::runBackground();
    EXPECT_EQ(machine().commandsRun.size(), 4U);
    fakes::runMainQueue();
    EXPECT_EQ(machine().commandsRun.size(), 4U);
}

TEST_F(ContentViewFlows, ADetectionWithFallbacksOnlyIsASuccess) {
    view_.detectHardware();
    finish();
    EXPECT_EQ(view_.detectedHardware.get()->processor, "Unknown");
    EXPECT_EQ(view_.statusMessage.get(), "Hardware detected successfully!");
}

TEST_F(ContentViewFlows, SendingWithoutARecordDoesNothing) {
    view_.statusMessage.set("banner");
    view_.sendToWebsite();
    EXPECT_FALSE(view_.isSending.get());
    EXPECT_EQ(view_.statusMessage.get(), "banner");
    EXPECT_TRUE(machine().background.empty());
    EXPECT_TRUE(machine().log.empty());
}

TEST_F(ContentViewFlows, SendingShowsTheInfoBannerEvenAfterASuccess) {
    view_.detectedHardware.set(record("M1"));
    view_.statusType.set(StatusType::success);
    view_.sendToWebsite();
    EXPECT_TRUE(view_.isSending.get());
    EXPECT_EQ(view_.statusMessage.get(), "Sending hardware data...");
    EXPECT_EQ(view_.statusType.get(), StatusType::info);
    fakes::reset();
}

TEST_F(ContentViewFlows, ASuccessOpensThePageShowsTheBannerAndQuitsTwoSecondsLater) {
    machine().website = [](const auto&) { return fakes::answered(200, R"({"success":true})"); };
    view_.detectedHardware.set(record("M1"));
    view_.sendToWebsite();
    fakes::runBackground();
    ASSERT_EQ(machine().mainQueue.size(), 2U);  // The page first, then the outcome.

    fakes::runMainQueue();

    EXPECT_EQ(machine().pagesAsked, std::vector<std::string>{"https://www.velmora.example"});
    EXPECT_FALSE(view_.isSending.get());
    EXPECT_EQ(view_.statusMessage.get(), "Hardware data sent successfully! Opening website...");
    EXPECT_EQ(view_.statusType.get(), StatusType::success);
    EXPECT_EQ(machine().log.back(), "📋 Hardware ID: none");
    ASSERT_EQ(machine().delayed.size(), 1U);
    EXPECT_EQ(machine().delayed[0].first, std::chrono::seconds(2));
    EXPECT_EQ(machine().terminations, 0);
    machine().delayed[0].second();
    EXPECT_EQ(machine().terminations, 1);
}

TEST_F(ContentViewFlows, AFailureShowsTheErrorBannerAndStays) {
    view_.detectedHardware.set(record("M1"));
    view_.sendToWebsite();
    finish();

    EXPECT_FALSE(view_.isSending.get());
    EXPECT_EQ(view_.statusMessage.get(), "Error: Failed to send hardware data. Check the console for details.");
    EXPECT_EQ(view_.statusType.get(), StatusType::error);
    EXPECT_EQ(machine().log.back(), "❌ Failed to send hardware data. Check the console output above for details.");
    EXPECT_TRUE(machine().delayed.empty());
}

TEST_F(ContentViewFlows, TheAddressIsReadWhenTheWorkStarts) {
    view_.detectedHardware.set(record("M1"));
    view_.sendToWebsite();
    view_.websiteUrl.set("http://typed-meanwhile.example");
    finish();
    EXPECT_EQ(machine().requests.at(0).url.absoluteString(), "http://typed-meanwhile.example/save-detected-hardware/");
}

TEST_F(ContentViewFlows, SendsTheRecordOfThePress) {
    view_.detectedHardware.set(record("first"));
    view_.sendToWebsite();
    view_.detectedHardware.set(record("second"));
    finish();
    EXPECT_NE(machine().requests.at(0).body.find("first"), std::string::npos);
}

TEST_F(ContentViewFlows, ASecondPressDuringTheTwoSecondsSendsAgain) {
    succeed();

    view_.sendToWebsite();
    EXPECT_TRUE(view_.isSending.get());
    EXPECT_EQ(view_.statusMessage.get(), "Sending hardware data...");
    EXPECT_EQ(view_.statusType.get(), StatusType::info);

    machine().website = [](const auto&) { return fakes::answered(500, "{}"); };
    finish();
    EXPECT_EQ(machine().requests.size(), 2U);
    EXPECT_EQ(view_.statusMessage.get(), "Error: Failed to send hardware data. Check the console for details.");
    EXPECT_EQ(view_.statusType.get(), StatusType::error);
}

TEST_F(ContentViewFlows, TheProgramQuitsWhileASecondSubmissionRuns) {
    succeed();
    view_.sendToWebsite();
    ASSERT_TRUE(view_.isSending.get());
    ASSERT_EQ(machine().delayed.size(), 1U);
    machine().delayed[0].second();
    EXPECT_EQ(machine().terminations, 1);
    fakes::reset();
}

TEST_F(ContentViewFlows, ASecondSuccessSchedulesAQuitOfItsOwn) {
    succeed();
    succeed();
    ASSERT_EQ(machine().delayed.size(), 2U);
    EXPECT_EQ(machine().delayed[1].first, std::chrono::seconds(2));
    machine().delayed[1].second();
    EXPECT_EQ(machine().terminations, 1);
}

TEST_F(ContentViewFlows, TheBannerShowsTheActionThatEndedLast) {
    view_.detectedHardware.set(record("old"));
    view_.detectHardware();
    view_.sendToWebsite();
    EXPECT_EQ(view_.statusMessage.get(), "Sending hardware data...");
    fakes::runBackground();
    ASSERT_EQ(machine().mainQueue.size(), 2U);

    machine().mainQueue[0]();
    EXPECT_EQ(view_.statusMessage.get(), "Hardware detected successfully!");
    EXPECT_EQ(view_.statusType.get(), StatusType::success);
    EXPECT_TRUE(view_.isSending.get());

    machine().mainQueue[1]();
    EXPECT_EQ(view_.statusMessage.get(), "Error: Failed to send hardware data. Check the console for details.");
    EXPECT_EQ(view_.statusType.get(), StatusType::error);
    EXPECT_EQ(view_.detectedHardware.get()->processor, "Unknown");
}

}  // namespace
