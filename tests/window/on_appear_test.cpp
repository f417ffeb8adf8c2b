// The window's on-appear hook: it runs after the first frame, each time the window is shown.
#include <QPaintEvent>
#include <QTest>
#include <algorithm>

#include "tests/window/shown_window.h"

namespace window_test {
namespace {

using fakes::machine;

using WindowOnAppear = ShownWindow;

int usagesReported() {
    return static_cast<int>(
        std::count_if(machine().requests.begin(), machine().requests.end(), [](const platform::HttpRequest& request) {
            return request.url.absoluteString().find("track-usage") != std::string::npos;
        }));
}

TEST_F(WindowOnAppear, AppearsOnceWhenShownAndAgainAfterBeingHidden) {
    EXPECT_EQ(usagesReported(), 1);
    window_.hide();
    settle();
    EXPECT_EQ(usagesReported(), 1);
    window_.show();
    EXPECT_TRUE(QTest::qWaitFor([] { return usagesReported() == 2; }, 30'000));
    settle();
    EXPECT_EQ(usagesReported(), 2);
}

// Records each event of one type among the fakes' events.
class Witness : public QObject {
  public:
    Witness(QEvent::Type type, std::string note) : type_(type), note_(std::move(note)) {}
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == type_) machine().events.push_back(note_);
        return false;
    }

  private:
    QEvent::Type type_;
    std::string note_;
};

void requestFrame(QObject* window) {
    QEvent request(QEvent::UpdateRequest);
    QCoreApplication::sendEvent(window, &request);
}

void requestPainting(QObject* window) {
    QPaintEvent all(QRect(0, 0, 600, 500));
    QCoreApplication::sendEvent(window, &all);
}

// The toolkit's offscreen platform has no window manager, so the test sends the window system's events.
TEST_F(WindowOnAppear, RestoringTheMinimisedWindowReportsNothing) {
    QHideEvent hidden;
    QShowEvent shown;
    for (QEvent* event : {static_cast<QEvent*>(&hidden), static_cast<QEvent*>(&shown)}) {
        QSpontaneKeyEvent::setSpontaneous(event);
        qApp->notify(&window_, event);
    }
    requestPainting(window_.windowHandle());
    requestFrame(window_.windowHandle());
    settle();
    EXPECT_EQ(usagesReported(), 1);
}

TEST_F(WindowOnAppear, EachAppearanceReportsToTheAddressOfThatMoment) {
    field()->setText("http://typed.example");
    window_.hide();
    settle();
    window_.show();
    ASSERT_TRUE(QTest::qWaitFor([] { return usagesReported() == 2; }, 30'000));
    EXPECT_EQ(machine().requests.back().url.absoluteString(), "http://typed.example/api/track-usage/");
}

TEST_F(WindowOnAppear, RepaintingReportsNothing) {
    for (int frames = 0; frames < 5; ++frames) {
        window_.update();
        settle();
    }
    EXPECT_EQ(usagesReported(), 1);
}

// Requests a frame of an exposed window before one was painted.
class HastyDesktop : public QObject {
  public:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Expose) requestFrame(watched);
        return false;
    }
};

TEST(WindowOnAppearAtStart, ComesWhenAFrameIsRequestedAfterTheFirstWasPainted) {
    fakes::reset();
    platform::MainWindow window(sceneOf(ContentView()));
    window.show();
    Witness painted(QEvent::Paint, "painted");
    window.installEventFilter(&painted);
    Witness requested(QEvent::UpdateRequest, "requested");
    HastyDesktop desktop;
    for (QObject* filter : {static_cast<QObject*>(&requested), static_cast<QObject*>(&desktop)}) {
        window.windowHandle()->installEventFilter(filter);
    }
    ASSERT_FALSE(window.windowHandle()->isExposed());
    requestFrame(window.windowHandle());
    ASSERT_TRUE(QTest::qWaitFor([] { return usagesReported() == 1; }, 30'000));
    fakes::waitForSession();

    const auto& events = machine().events;
    const auto firstFrame = std::find(events.begin(), events.end(), "painted");
    const auto nextFrame = std::find(firstFrame, events.end(), "requested");
    const auto report =
        std::find_if(events.begin(), events.end(), [](const std::string& event) { return event.starts_with("log"); });
    EXPECT_GE(std::count(events.begin(), firstFrame, "requested"), 2)
        << "the desktop should have requested frames too early";
    const auto handled = std::find(nextFrame, events.end(), "painted");
    EXPECT_LT(handled, report);
}

TEST(WindowOnAppearAtStart, WaitsUntilTheWindowSystemHasExposedTheWindow) {
    fakes::reset();
    platform::MainWindow window(sceneOf(ContentView()));
    window.setAttribute(Qt::WA_DontShowOnScreen);
    window.show();
    requestPainting(window.windowHandle());
    requestFrame(window.windowHandle());
    for (int round = 0; round < 10; ++round) QCoreApplication::processEvents();
    EXPECT_EQ(usagesReported(), 0);

    window.hide();
    window.setAttribute(Qt::WA_DontShowOnScreen, false);
    window.show();
    EXPECT_TRUE(QTest::qWaitFor([] { return usagesReported() == 1; }, 30'000));
}

}  // namespace
}  // namespace window_test
