// Scans whose pages stay in the spool, and what is found there.
#pragma once

#include "host_program.h"

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

namespace doccam::test {

class KeptPagesTest : public HostProgramTest {
  protected:
    void SetUp() override {
        if (DOCCAM_SANITIZED) {
            GTEST_SKIP() << "nothing can be loaded before a sanitizer's runtime";
        }
    }

    // A scan in which a change of the files in folder fails.
    RunningProgram failing(const std::string& folder, int at, const std::string& by,
                           const std::vector<std::string>& arguments) const {
        // Before the libraries of the virtual camera, some of which pass over others.
        return start(camera(), arguments,
                     {"/usr/bin/env", "FAILING_FILES_IN=" + folder,
                      "FAILING_FILES_AT=" + std::to_string(at), "FAILING_FILES_BY=" + by, "/bin/sh",
                      "-c",
                      "LD_PRELOAD=\"" DOCCAM_FAILING_FILES " $LD_PRELOAD\" exec \"$0\" \"$@\""});
    }

    struct Progress {
        std::size_t named = 0; // pages, as taken
        std::string last;      // line
    };

    static Progress untilTheEnd(RunningProgram& program) {
        Progress progress;
        while (program.says("")) {
            progress.last = program.lastLine();
            progress.named += progress.last.find(" taken, ") != std::string::npos ? 1 : 0;
        }
        return progress;
    }

    // The pages of the unsaved document, saved to a file of that name; 0 if there is none.
    std::size_t resumed(const std::string& name) const {
        const Outcome outcome = run("spool resume --force --as " + name + " --json");
        if (outcome.status == kNothingFound) {
            return 0;
        }
        EXPECT_EQ(outcome.status, kDone) << outcome.err;
        return outcome.status == kDone ? outcome.json()["pages"].size() : 0;
    }

    nlohmann::json spooled() const { return run("spool list --json").json(); }

    // An unsaved document of one page, taken at the keys.
    void leaveOnePage(const std::string& options, const std::string& keys = "\n") const {
        std::vector<std::string> arguments{"scan", "a.pdf"};
        std::istringstream words(options);
        arguments.insert(arguments.end(), std::istream_iterator<std::string>(words), {});
        RunningProgram program = start(camera(), arguments);
        program.type(keys);
        ASSERT_TRUE(program.says("page 1 taken")) << options;
        program.signal(SIGTERM);
        EXPECT_EQ(program.finish(), kInterrupted);
    }

    // The pages of the newest document.
    nlohmann::json show() const {
        const auto documents = spooled();
        const std::string name = documents.back()["document"];
        return run("spool show --json " + name).json();
    }

    // How the next pages of the newest document are made.
    nlohmann::json plan() const {
        const auto documents = spooled();
        const std::string folder = documents.back()["folder"];
        std::ifstream manifest(folder + "/pages.json");
        auto plan = nlohmann::json::parse(manifest);
        for (const char* other : {"pages", "last", "saved"}) {
            plan.erase(other);
        }
        return plan;
    }

    // What a shown page has besides its place in the frame.
    static nlohmann::json wayOf(nlohmann::json page) {
        page["sheet"] = page["sheet"].is_null();
        for (const char* other : {"page", "frame", "confidence"}) {
            page.erase(other);
        }
        return page;
    }

    // The mean difference of two pictures, in grey levels.
    static double difference(const std::string& one, const std::string& other) {
        const cv::Mat first = cv::imread(one, cv::IMREAD_GRAYSCALE);
        cv::Mat second = cv::imread(other, cv::IMREAD_GRAYSCALE);
        cv::resize(second, second, first.size());
        return cv::norm(first, second, cv::NORM_L1) / static_cast<double>(first.total());
    }

    void clearAll() const {
        run("spool clear --all");
        std::filesystem::remove(file("a.pdf"));
    }
};

} // namespace doccam::test
