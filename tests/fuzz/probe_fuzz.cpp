// The outputs of the five commands, compared with the oracle.
#include <fuzzer/FuzzedDataProvider.h>

#include "hardware/hardware_detector.h"
#include "tests/app/random_cases/oracle.h"
#include "tests/fakes/fakes.h"
#include "tests/fuzz/require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider provider(data, size);
    randomCases::Case round;
    round.brand = provider.ConsumeRandomLengthString();
    round.memory = provider.ConsumeRandomLengthString();
    round.disk = provider.ConsumeRandomLengthString();
    round.overview = provider.ConsumeRandomLengthString();
    round.displays = provider.ConsumeRemainingBytesAsString();

    auto& commands = fakes::machine().commands;
    commands["/usr/sbin/sysctl -n machdep.cpu.brand_string"] = round.brand;
    commands["/usr/sbin/sysctl -n hw.memsize"] = round.memory;
    commands["/usr/sbin/system_profiler SPHardwareDataType"] = round.overview;
    commands["/usr/sbin/system_profiler SPDisplaysDataType"] = round.displays;
    commands["/bin/df -h /"] = round.disk;
    fakes::machine().commandsRun.clear();
    fakes::machine().events.clear();

    const HardwareInfo found = HardwareDetector::detect();
    const std::vector<std::string> shown = {found.os, found.processor,
                                            found.graphicsCard + " " + std::to_string(found.gpuMemory) + "GB",
                                            std::to_string(found.ramGB) + " GB " + found.ramType,
                                            std::to_string(found.storageGB) + " GB " + found.storageType};
    fuzz::require(shown == randomCases::expectedBehaviour(round, "http://h").values, "the record is another one");
    return 0;
}
