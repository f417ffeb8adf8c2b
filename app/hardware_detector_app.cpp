#include "app/hardware_detector_app.h"

#include "app/content_view.h"
#include "platform/application.h"
#include "platform/log.h"

platform::WindowDescription HardwareDetectorApp::body() const {
    return {.name = "Hardware Detector", .width = 600, .height = 500, .content = [] {
                const ContentView view;
                return platform::WindowDescription::Content{[view] { return view.body(); }, view.changes};
            }};
}

void HardwareDetectorApp::main() {
    platform::beginLog();
    platform::application::run(HardwareDetectorApp().body());
}
