// Measures the window on the toolkit's offscreen platform, with scripted services.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QLineEdit>
#include <QTest>

#include "app/content_view.h"
#include "hardware/hardware_detector.h"
#include "platform/qt/window/accessible_elements.h"
#include "platform/qt/window/main_window.h"
#include "tests/fakes/fakes.h"

namespace {

struct ShownView {
    ContentView view;
    platform::MainWindow window{
        {.name = "Hardware Detector", .width = 600, .height = 500, .content = [view = view] {
             return platform::WindowDescription::Content{[view] { return view.body(); }, view.changes};
         }}};

    ShownView() {
        window.show();
        settle();
    }

    static void settle() {
        for (int round = 0; round < 3; ++round) {
            QCoreApplication::sendPostedEvents();
            QCoreApplication::processEvents();
        }
    }
};

HardwareInfo recordWith(const std::string& processor) {
    return {"macOS", processor, "Apple M1 GPU", 16, "DDR4", 2666, 494, "SSD", "Not Applicable", 4};
}

// The processor time from a key to the repainted window, with everything shown.
void keystroke(benchmark::State& state) {
    fakes::reset();
    ShownView shown;
    shown.view.detectedHardware.set(recordWith("Apple M1 Pro"));
    shown.view.statusMessage.set("Hardware detected successfully!");
    ShownView::settle();
    auto* field = shown.window.findChild<QLineEdit*>();
    field->setFocus();
    const auto widgets = shown.window.findChildren<QWidget*>();
    for (auto _ : state) {
        QTest::keyClick(field, Qt::Key_X);
        ShownView::settle();
        if (field->text().size() > 60) field->clear();
    }
    if (shown.window.findChildren<QWidget*>() != widgets) state.SkipWithError("a keystroke has made widgets");
}
BENCHMARK(keystroke);

void probeBySizeOfOutput(benchmark::State& state) {
    fakes::reset();
    const std::string filler(static_cast<std::size_t>(state.range(0)), 'x');
    fakes::machine().commands["/usr/sbin/system_profiler SPDisplaysDataType"] = filler + "\nChipset Model: M1\n";
    for (auto _ : state) benchmark::DoNotOptimize(HardwareDetector::detect());
    state.SetComplexityN(state.range(0));
}
BENCHMARK(probeBySizeOfOutput)->RangeMultiplier(4)->Range(1 << 10, 1 << 16)->Complexity();

void probeByNumberOfLines(benchmark::State& state) {
    fakes::reset();
    std::string lines;
    while (lines.size() < static_cast<std::size_t>(state.range(0))) lines += "      Vendor: Apple (0x106b)\n";
    fakes::machine().commands["/usr/sbin/system_profiler SPDisplaysDataType"] = lines;
    for (auto _ : state) benchmark::DoNotOptimize(HardwareDetector::detect());
    state.SetComplexityN(state.range(0));
}
BENCHMARK(probeByNumberOfLines)->RangeMultiplier(4)->Range(1 << 10, 1 << 16)->Complexity();

void listByLengthOfValue(benchmark::State& state) {
    fakes::reset();
    ShownView shown;
    const std::string value(static_cast<std::size_t>(state.range(0)), 'W');
    bool other = false;
    for (auto _ : state) {
        shown.view.detectedHardware.set(recordWith(value + ((other = !other) ? "a" : "b")));
        ShownView::settle();
    }
    state.SetComplexityN(state.range(0));
}
BENCHMARK(listByLengthOfValue)->RangeMultiplier(8)->Range(1 << 10, 1 << 16)->Complexity();

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication toolkit(argc, argv);
    platform::installAccessibleElements();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
