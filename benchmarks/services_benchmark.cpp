// Measures detection and sending with their floors, in one process. Standard output has the log, so scripts/bench asks
// for a file of results.
#include <benchmark/benchmark.h>
#include <curl/curl.h>

#include "benchmarks/bare_commands.h"
#include "hardware/hardware_detector.h"
#include "tests/support/scripted_server.h"

namespace {

using testSupport::answerBytes;
using testSupport::ScriptedServer;
using testSupport::Send;

const HardwareInfo record("macOS", "Apple M1 Pro", "Apple M1 Pro", 16, "DDR4", 2666, 494, "SSD", "Not Applicable", 4);

// No benchmark opens a page, since no answer is a success.
std::string refusalOf(std::size_t size) {
    const std::string frame = R"({"success": false, "error": "no", "padding": ""})";
    return std::string(frame).insert(frame.size() - 2, std::string(size > frame.size() ? size - frame.size() : 0, 'x'));
}

std::size_t countBytes(char*, std::size_t size, std::size_t count, void* total) {
    *static_cast<std::size_t*>(total) += size * count;
    return size * count;
}

// The floor of a request: the library with its default settings, a body and the two necessary header fields.
void bareRequest(const std::string& url) {
    CURL* easy = curl_easy_init();
    curl_slist* headers = curl_slist_append(nullptr, "Content-Type: application/json");
    std::size_t received = 0;
    curl_easy_setopt(easy, CURLOPT_URL, url.c_str());
    curl_easy_setopt(easy, CURLOPT_POSTFIELDS, "{}");
    curl_easy_setopt(easy, CURLOPT_HTTPHEADER, headers);
    curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, countBytes);
    curl_easy_setopt(easy, CURLOPT_WRITEDATA, &received);
    curl_easy_perform(easy);
    benchmark::DoNotOptimize(received);
    curl_slist_free_all(headers);
    curl_easy_cleanup(easy);
}

void detect(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(HardwareDetector::detect());
}
BENCHMARK(detect)->UseRealTime();

void detectFloor(benchmark::State& state) {
    for (auto _ : state) benchmarks::runBareCommands();
}
BENCHMARK(detectFloor)->UseRealTime();

void send(benchmark::State& state) {
    const ScriptedServer server(testSupport::always({Send{answerBytes(200, refusalOf(0))}}));
    for (auto _ : state) benchmark::DoNotOptimize(HardwareDetector::sendToWebsite(server.url(""), record));
}
BENCHMARK(send)->UseRealTime()->Iterations(200);

void sendFloor(benchmark::State& state) {
    const ScriptedServer server(testSupport::always({Send{answerBytes(200, refusalOf(0))}}));
    for (auto _ : state) bareRequest(server.url("/save-detected-hardware/"));
}
BENCHMARK(sendFloor)->UseRealTime()->Iterations(200);

void answerBySize(benchmark::State& state) {
    const auto size = static_cast<std::size_t>(state.range(0));
    const ScriptedServer server(testSupport::always({Send{answerBytes(200, refusalOf(size))}}));
    for (auto _ : state) benchmark::DoNotOptimize(HardwareDetector::sendToWebsite(server.url(""), record));
    state.SetComplexityN(state.range(0));
}
BENCHMARK(answerBySize)->UseRealTime()->RangeMultiplier(8)->Range(1 << 20, 64 << 20)->Complexity();

}  // namespace

BENCHMARK_MAIN();
