#include "code_measures.h"

#include <opencv2/imgcodecs.hpp>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <future>
#include <iostream>
#include <mutex>

namespace doccam::test {

namespace {

bool isNamed(const std::string& name, const std::vector<std::string>& names) {
    return names.empty() || std::find(names.begin(), names.end(), name) != names.end();
}

std::string visible(const std::string& text) {
    constexpr std::size_t kShown = 60;
    std::string shown = text.substr(0, kShown);
    std::replace_if(
        shown.begin(), shown.end(),
        [](char letter) { return static_cast<unsigned char>(letter) < ' '; }, '~');
    return shown;
}

std::string listOf(const std::vector<ReportedCode>& codes) {
    std::string list;
    for (const ReportedCode& code : codes) {
        list += " [" + visible(code.text) + (code.addon.empty() ? "" : " + " + code.addon) + "]";
    }
    return list;
}

std::string listOf(const CodePicture& picture) {
    std::vector<ReportedCode> codes;
    for (const std::vector<PrintedCode>& part : {picture.counted, picture.others}) {
        for (const PrintedCode& code : part) {
            codes.push_back({code.texts.front(), code.addon});
        }
    }
    return listOf(codes);
}

CodeMeasure measureOne(const CodeTask& task, const MeasureOptions& options) {
    const CodePicture picture =
        drawCodePicture(*task.kind, *task.series, task.sample, options.seed);
    const std::array<std::function<std::vector<ReportedCode>()>, kCodeReaders> readers = {
        [&] { return readByZbar(picture.grey); }, [&] { return readByZxing(picture.grey); },
        [&] { return readByDoccam(picture.grey, options.seconds); }};
    CodeMeasure measure;
    measure.cell.codes = static_cast<int>(picture.counted.size());
    std::vector<ReportedCode> ours;
    for (std::size_t i = 0; i < readers.size(); ++i) {
        const auto start = std::chrono::steady_clock::now();
        ours = readers[i]();
        measure.seconds[i] =
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        measure.cell.readers[i] = compare(picture, ours);
    }
    const std::string what = complaint(measure.cell);
    if (!what.empty()) {
        measure.lost = what + "; in the picture" + listOf(picture) + ", reported" + listOf(ours);
        if (!options.keep.empty()) {
            cv::imwrite(options.keep + "/" + task.kind->name + ", " + task.series->name + ", " +
                            std::to_string(task.sample) + ".png",
                        picture.grey);
        }
    }
    return measure;
}

} // namespace

std::vector<CodeTask> codeTasks(const std::vector<std::string>& kinds,
                                const std::vector<std::string>& series) {
    std::vector<CodeTask> tasks;
    for (const CodeKind& kind : codeKinds()) {
        for (const CodeSeries& one : codeSeries()) {
            if (!isNamed(kind.name, kinds) || !isNamed(one.name, series) ||
                (one.matrixOnly && !kind.isMatrix)) {
                continue;
            }
            for (int sample = 0; sample < one.samples; ++sample) {
                tasks.push_back({&kind, &one, sample});
            }
        }
    }
    return tasks;
}

std::vector<CodeMeasure> measureCodes(const std::vector<CodeTask>& tasks,
                                      const MeasureOptions& options) {
    std::vector<CodeMeasure> measures(tasks.size());
    std::atomic<std::size_t> next = 0;
    std::mutex output;
    const auto work = [&] {
        for (std::size_t i = next++; i < tasks.size(); i = next++) {
            measures[i] = measureOne(tasks[i], options);
            if (!measures[i].lost.empty()) {
                const std::lock_guard lock(output);
                std::cerr << tasks[i].kind->name << " | " << tasks[i].series->name << " | sample "
                          << tasks[i].sample << ", seed " << options.seed << ": "
                          << measures[i].lost << std::endl;
            }
        }
    };
    std::vector<std::future<void>> jobs;
    for (int i = 0; i < options.jobs; ++i) {
        jobs.push_back(std::async(std::launch::async, work));
    }
    for (std::future<void>& job : jobs) {
        job.get();
    }
    return measures;
}

} // namespace doccam::test
