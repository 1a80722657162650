// Runs the rows with Google Benchmark and fails when one exceeds its bound.
#include "quiet_output.h"
#include "report.h"
#include "row.h"

#include <benchmark/benchmark.h>
#include <opencv2/core.hpp>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <exception>
#include <limits>
#include <utility>
#include <vector>

namespace doccam::bench {
namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

// Short rows run more rounds, so that on a busy machine some are undisturbed.
constexpr std::chrono::seconds kMinimumTime{3};

std::vector<Row>& entered() {
    static std::vector<Row> all;
    return all;
}

void call(const std::function<void()>& action) {
    if (action) {
        action();
    }
}

double processorTime() {
    timespec spent{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &spent);
    return static_cast<double>(spent.tv_sec) * 1e3 + static_cast<double>(spent.tv_nsec) / 1e6;
}

// The smallest times of all rounds: those with the least interference from other work.
struct Shortest {
    double wall = std::numeric_limits<double>::max();
    double processor = std::numeric_limits<double>::max();

    void time(const std::function<void()>& before, const std::function<void()>& run) {
        call(before);
        const double processorStart = processorTime();
        const auto start = Clock::now();
        run();
        wall = std::min(wall, Milliseconds(Clock::now() - start).count());
        processor = std::min(processor, processorTime() - processorStart);
    }
};

bool agree(const Contest& contest) {
    call(contest.beforeOurs);
    contest.ours();
    call(contest.beforePeer);
    contest.peer();
    return contest.same();
}

std::vector<Allocation> allocationsOf(const Contest& contest) {
    call(contest.beforeOurs);
    AllocationCount count;
    contest.ours();
    std::vector<Allocation> allocations = count.take();
    const auto frames = static_cast<std::size_t>(contest.frames);
    for (Allocation& allocation : allocations) {
        allocation.times = (allocation.times + frames - 1) / frames;
        allocation.bytes = (allocation.bytes + frames - 1) / frames;
    }
    return allocations;
}

// The two alternate, so that both run under the same load.
void runContest(const Row& row, Result& result) {
    for (const Picture& picture : pictures()) {
        const Contest contest = row.contest(picture);
        if (!agree(contest)) {
            result.failure = "the results differ on picture " + picture.name;
            return;
        }
        if (result.allocations.empty()) {
            result.allocations = allocationsOf(contest);
        }
        Shortest ours;
        Shortest peer;
        const auto end = Clock::now() + kMinimumTime;
        for (int round = 0; round < row.rounds || Clock::now() < end; ++round) {
            peer.time(contest.beforePeer, contest.peer);
            ours.time(contest.beforeOurs, contest.ours);
        }
        result.ours += ours.wall / contest.frames;
        result.peer += peer.wall / contest.frames;
        result.oursProcessor += ours.processor / contest.frames;
        result.peerProcessor += peer.processor / contest.frames;
    }
    result.unit = "ms";
}

void runQuantity(const Row& row, Result& result) {
    for (const Picture& picture : pictures()) {
        const Quantity quantity = row.quantity(picture);
        if (quantity.ours >= result.ours) {
            result.ours = quantity.ours;
            result.peer = quantity.limit;
            result.unit = quantity.unit;
        }
    }
}

void runRow(benchmark::State& run, const Row& row, std::vector<Result>& results) {
    Result result;
    result.row = row.name;
    result.peerName = row.peer;
    result.bound = row.bound;
    for (auto _ : run) {
        try {
            row.contest ? runContest(row, result) : runQuantity(row, result);
        } catch (const std::exception& error) {
            result.failure = error.what();
        }
        run.SetIterationTime(result.ours / 1000);
    }
    run.counters["peer"] = result.peer;
    run.counters["ratio"] = result.ratio();
    run.counters["bound"] = result.bound;
    results.push_back(std::move(result));
}

// One line per row while they run; the table comes at the end.
class Progress : public benchmark::BenchmarkReporter {
  public:
    bool ReportContext(const Context& /*context*/) override { return true; }

    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            std::fprintf(stderr, "bench: %s %.2f\n", run.run_name.function_name.c_str(),
                         run.counters.at("ratio").value);
        }
    }
};

int runAll(const char* resultsFile) {
    std::vector<Result> results;
    for (const Row& row : rows()) {
        benchmark::RegisterBenchmark(row.name.c_str(),
                                     [&](benchmark::State& run) { runRow(run, row, results); })
            ->UseManualTime()
            ->Iterations(1)
            ->Unit(benchmark::kMillisecond);
    }
    {
        const QuietOutput quiet; // hides the library's output
        Progress progress;
        benchmark::RunSpecifiedBenchmarks(&progress);
    }
    printTable(results);
    if (resultsFile != nullptr) {
        writeJson(results, resultsFile);
    }
    const bool allPassed = std::all_of(results.begin(), results.end(),
                                       [](const Result& result) { return result.passed(); });
    return allPassed && !results.empty() ? 0 : 1;
}

} // namespace

Entry::Entry(Row row) {
    entered().push_back(std::move(row));
}

const std::vector<Row>& rows() {
    std::vector<Row>& all = entered();
    const auto place = [](const Row& row) {
        return std::pair(static_cast<bool>(row.contest), row.name);
    };
    std::sort(all.begin(), all.end(),
              [&](const Row& left, const Row& right) { return place(left) < place(right); });
    return all;
}

bool samePixels(const cv::Mat& left, const cv::Mat& right) {
    return left.size() == right.size() && left.type() == right.type() &&
           cv::norm(left, right, cv::NORM_INF) == 0;
}

} // namespace doccam::bench

// doccam_bench [RESULTS.json] [--benchmark_filter=ROWS]
int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    return doccam::bench::runAll(argc > 1 ? argv[1] : nullptr);
}
