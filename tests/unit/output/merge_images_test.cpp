// What becomes of the queue of files to merge.
#include "state/library_state.h"
#include "support/printed_text.h"
#include "support/scratch_folder.h"

#include <doccam/doccam.h>

#include <gmock/gmock.h>
#include <opencv2/core.hpp>
#include <opencv2/imgcodecs.hpp>
#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using doccam::state;
using namespace doccam::test;
using testing::ElementsAre;
using testing::IsEmpty;

std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void writeText(const std::string& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
}

// Records which files of a folder are opened.
class OpenedFiles {
  public:
    explicit OpenedFiles(const fs::path& folder)
      : descriptor_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
        EXPECT_GE(inotify_add_watch(descriptor_, folder.c_str(), IN_OPEN), 0);
    }

    ~OpenedFiles() { close(descriptor_); }

    OpenedFiles(const OpenedFiles&) = delete;
    OpenedFiles& operator=(const OpenedFiles&) = delete;

    // Their names in order, without repetition.
    std::vector<std::string> take() {
        std::vector<std::string> names;
        alignas(inotify_event) char events[8192];
        for (ssize_t size = 0; (size = read(descriptor_, events, sizeof events)) > 0;) {
            for (ssize_t at = 0; at < size;) {
                inotify_event event{};
                std::copy_n(events + at, sizeof event, reinterpret_cast<char*>(&event));
                const std::string name = events + at + sizeof event;
                if (std::find(names.begin(), names.end(), name) == names.end()) {
                    names.push_back(name);
                }
                at += static_cast<ssize_t>(sizeof event + event.len);
            }
        }
        return names;
    }

  private:
    int descriptor_;
};

class MergedQueue : public testing::Test {
  protected:
    void SetUp() override { state().documents.img_filelist.clear(); }

    void TearDown() override { state().documents.img_filelist.clear(); }

    std::string queuePicture(const std::string& name) {
        const std::string path = scratch_.file(name);
        cv::imwrite(path, cv::Mat(4, 6, CV_8UC3, cv::Scalar(1, 2, 3)));
        EXPECT_EQ(AddImagePath(path.c_str()), 0);
        return path;
    }

    std::string queueText(const std::string& name, const std::string& text) {
        const std::string path = scratch_.file(name);
        writeText(path, text);
        EXPECT_EQ(AddImagePath(path.c_str()), 0);
        return path;
    }

    std::vector<std::string> files() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(scratch_.path())) {
            names.push_back(entry.path().filename().string());
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    ScratchFolder scratch_;
    std::string target_ = scratch_.file("merged.jpg");
};

TEST_F(MergedQueue, ReturnsMinusOneForAnEmptyQueue) {
    writeText(target_, "old");
    EXPECT_EQ(MergeImages(target_.c_str(), 0, 0, true), -1);
    EXPECT_EQ(contentOf(target_), "old");
}

TEST_F(MergedQueue, ReturnsMinusOneAndKeepsASingleFileQueued) {
    writeText(target_, "old");
    const std::string file = queuePicture("a.png");
    EXPECT_EQ(MergeImages(target_.c_str(), 1, 0, true), -1);
    EXPECT_THAT(state().documents.img_filelist, ElementsAre(file));
    EXPECT_THAT(files(), ElementsAre("a.png", "merged.jpg"));
}

TEST_F(MergedQueue, ReturnsMinusTwoAndKeepsTheSourcesWithoutAFileAtThePath) {
    queuePicture("a.png");
    queuePicture("b.png");
    EXPECT_EQ(MergeImages(target_.c_str(), 1, 0, true), -2);
    EXPECT_THAT(state().documents.img_filelist, IsEmpty());
    EXPECT_THAT(files(), ElementsAre("a.png", "b.png"));
}

TEST_F(MergedQueue, ReturnsZeroAndDeletesTheSourcesWithAFileAtThePath) {
    writeText(target_, "old");
    queuePicture("a.png");
    queuePicture("b.png");
    EXPECT_EQ(MergeImages(target_.c_str(), 1, 0, true), 0);
    EXPECT_THAT(state().documents.img_filelist, IsEmpty());
    EXPECT_THAT(files(), ElementsAre("merged.jpg"));
    EXPECT_EQ(contentOf(target_), "old");
}

TEST_F(MergedQueue, KeepsTheSourcesUnlessToldToDeleteThem) {
    writeText(target_, "old");
    queuePicture("a.png");
    queuePicture("b.png");
    EXPECT_EQ(MergeImages(target_.c_str(), 1, 0, false), 0);
    EXPECT_THAT(state().documents.img_filelist, IsEmpty());
    EXPECT_THAT(files(), ElementsAre("a.png", "b.png", "merged.jpg"));
    EXPECT_EQ(contentOf(target_), "old");
}

TEST_F(MergedQueue, ComposesNothingInAnyModeAndForAnyNumberOfFiles) {
    for (const int mode : {0, 1, 2, -1}) {
        for (int count = 2; count <= 5; ++count) {
            for (int i = 0; i < count; ++i) {
                queuePicture(std::to_string(i) + ".png");
            }
            const auto before = files();
            EXPECT_EQ(MergeImages(target_.c_str(), mode, 0, true), -2) << mode << ' ' << count;
            EXPECT_EQ(files(), before) << mode << ' ' << count;
        }
    }
}

TEST_F(MergedQueue, PrintsNothing) {
    queuePicture("a.png");
    queuePicture("b.png");
    PrintedText output;
    PrintedText errors(PrintedText::Stream::kError);
    MergeImages(target_.c_str(), 1, 7, true);
    EXPECT_EQ(errors.take(), "");
    EXPECT_EQ(output.take(), "");
}

TEST_F(MergedQueue, ReadsOnlyTheFirstFourOfFiveFiles) {
    writeText(target_, "old");
    for (const char* const name : {"a.png", "b.png", "c.png", "d.png", "e.png"}) {
        queuePicture(name);
    }
    OpenedFiles opened(scratch_.path());
    EXPECT_EQ(MergeImages(target_.c_str(), 1, 0, false), 0);
    EXPECT_THAT(opened.take(), ElementsAre("a.png", "b.png", "c.png", "d.png"));
}

TEST_F(MergedQueue, DeletesTheFifthOfFiveFilesToo) {
    writeText(target_, "old");
    for (const char* const name : {"a.png", "b.png", "c.png", "d.png", "e.png"}) {
        queuePicture(name);
    }
    EXPECT_EQ(MergeImages(target_.c_str(), 1, 0, true), 0);
    EXPECT_THAT(files(), ElementsAre("merged.jpg"));
}

TEST_F(MergedQueue, SkipsAFileThatHasGone) {
    writeText(target_, "old");
    const std::string gone = queuePicture("a.png");
    queuePicture("b.png");
    fs::remove(gone);
    PrintedText output;
    PrintedText errors(PrintedText::Stream::kError);
    EXPECT_EQ(MergeImages(target_.c_str(), 1, 0, true), 0);
    EXPECT_EQ(errors.take(), "");
    EXPECT_EQ(output.take(), "");
    EXPECT_THAT(files(), ElementsAre("merged.jpg"));
}

TEST_F(MergedQueue, DoesNotReportFilesThatCannotBeRead) {
    writeText(target_, "old");
    const std::string tooWide = queueText("wide.ppm", "P6\n2000000 1\n255\n");
    ASSERT_THROW(cv::imread(tooWide), cv::Exception);
    queueText("text.png", "no picture");
    queueText("empty.jpg", "");
    PrintedText output;
    PrintedText errors(PrintedText::Stream::kError);
    EXPECT_EQ(MergeImages(target_.c_str(), 1, 0, true), 0);
    EXPECT_EQ(errors.take(), "");
    EXPECT_EQ(output.take(), "");
    EXPECT_THAT(state().documents.img_filelist, IsEmpty());
    EXPECT_THAT(files(), ElementsAre("merged.jpg"));
}

TEST_F(MergedQueue, DeletesAFileThatIsQueuedTwiceOnce) {
    writeText(target_, "old");
    const std::string file = queuePicture("a.png");
    EXPECT_EQ(AddImagePath(file.c_str()), 0);
    EXPECT_EQ(MergeImages(target_.c_str(), 1, 0, true), 0);
    EXPECT_THAT(files(), ElementsAre("merged.jpg"));
}

TEST_F(MergedQueue, ReturnsMinusTwoForANullPath) {
    queuePicture("a.png");
    queuePicture("b.png");
    EXPECT_EQ(MergeImages(nullptr, 1, 0, true), -2);
    EXPECT_THAT(state().documents.img_filelist, IsEmpty());
    EXPECT_THAT(files(), ElementsAre("a.png", "b.png"));
}

} // namespace
