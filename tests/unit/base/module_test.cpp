// Modules that are missing, damaged or foreign: each fails with a sentence and runs no code.
#include "base/modules/module.h"
#include "support/scratch_folder.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <thread>
#include <vector>

namespace fs = std::filesystem;

namespace {

using doccam::ModuleError;
using doccam::openModule;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

fs::path folder;

class Module : public testing::Test {
  protected:
    void SetUp() override { folder = scratch_.path(); }

    static std::string built() {
        std::ifstream file(DOCCAM_BUILT_MODULE, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    // A new folder each time: an opened module is never closed.
    void put(const std::string& contents) {
        folder = scratch_.path() / std::to_string(count_++);
        fs::create_directory(folder);
        std::ofstream(file(), std::ios::binary) << contents;
    }

    static fs::path file() { return folder / "formats.so"; }

    static std::string complaint() {
        try {
            openModule(doccam::kFormatsModule);
        } catch (const ModuleError& error) {
            return error.what();
        }
        return "";
    }

    void expectDamaged(const std::string& contents) {
        put(contents);
        EXPECT_EQ(complaint(),
                  "The module " + file().string() + " is damaged; install doccam again.");
    }

    doccam::test::ScratchFolder scratch_;
    int count_ = 0;
};

TEST_F(Module, IsOpenedWithItsNameAndVersion) {
    put(built());
    const doccam::ModuleHead& head = openModule(doccam::kFormatsModule);
    EXPECT_STREQ(head.name, doccam::kFormatsModule);
    EXPECT_STREQ(head.version, DOCCAM_MODULE_VERSION);
    EXPECT_EQ(&openModule(doccam::kFormatsModule), &head);
}

TEST_F(Module, IsTheSameForThreadsThatOpenItAtOnce) {
    put(built());
    const doccam::ModuleHead* other = nullptr;
    std::thread thread([&] { other = &openModule(doccam::kFormatsModule); });
    const doccam::ModuleHead* const one = &openModule(doccam::kFormatsModule);
    thread.join();
    EXPECT_EQ(one, other);
}

TEST_F(Module, MayBeStripped) {
    put(built());
    ASSERT_EQ(std::system(("strip " + file().string()).c_str()), 0);
    EXPECT_LT(fs::file_size(file()), built().size());
    EXPECT_EQ(complaint(), "");
}

TEST_F(Module, ThatIsMissingIsReported) {
    EXPECT_EQ(complaint(), "The module " + file().string() + " is missing; install doccam again.");
}

TEST_F(Module, IsNotLookedForInTheWorkingFolder) {
    put(built());
    const fs::path before = fs::current_path();
    fs::create_directory(scratch_.path() / "doccam");
    fs::copy(file(), scratch_.path() / "doccam" / "formats.so");
    fs::current_path(scratch_.path());
    folder = doccam::modulesBeside(nullptr);
    EXPECT_EQ(complaint(),
              "The module formats cannot be looked for, as the library's own folder is "
              "unknown; install doccam again.");
    fs::current_path(before);
}

TEST_F(Module, ThatIsCutIsReported) {
    const std::string whole = built();
    for (std::size_t part = 0; part < 20; ++part) {
        expectDamaged(whole.substr(0, whole.size() * part / 40));
    }
}

TEST_F(Module, ThatWasChangedAnywhereIsReported) {
    const std::string whole = built();
    const std::size_t end =
        whole.find("GCC: ("); // the compiler's remark follows all that is loaded
    ASSERT_NE(end, std::string::npos);
    for (std::size_t at = 0; at < end; at += 7) {
        if (whole[at] == 0) {
            continue; // perhaps filled up between two parts
        }
        std::string changed = whole;
        changed[at] = static_cast<char>(changed[at] ^ 0x20);
        expectDamaged(changed);
    }
}

TEST_F(Module, ThatIsSomethingElseIsReported) {
    expectDamaged("text");
    expectDamaged(std::string(100'000, '\0'));
    expectDamaged(std::string("\x7F"
                              "ELF")
                      .append(100'000, '\xFF'));
    std::ifstream program("/proc/self/exe", std::ios::binary);
    expectDamaged({std::istreambuf_iterator<char>(program), {}});
    fs::remove(file());
    fs::create_directory(file());
    EXPECT_THAT(complaint(), HasSubstr(" is damaged"));
    fs::remove(file());
    ASSERT_EQ(mkfifo(file().c_str(), 0600), 0);
    EXPECT_THAT(complaint(), HasSubstr(" is damaged"));
}

TEST_F(Module, OfAnotherNameIsReported) {
    fs::copy(DOCCAM_OTHER_MODULE, file());
    EXPECT_EQ(complaint(),
              "The module " + file().string() + " is the module mjpeg; install doccam again.");
}

TEST_F(Module, OfAnotherVersionIsReported) {
    fs::copy(DOCCAM_OLD_MODULE, file());
    EXPECT_EQ(complaint(), "The module " + file().string() +
                               " is of version 0.0.1, the library of " DOCCAM_MODULE_VERSION
                               "; install doccam again.");
}

TEST_F(Module, WhoseLibraryIsMissingIsReported) {
    fs::copy(DOCCAM_LACKING_MODULE, file());
    EXPECT_THAT(complaint(), AllOf(StartsWith("The module " + file().string() +
                                              " cannot be loaded (libdoccam-absent.so: "),
                                   EndsWith("; install doccam again.")));
}

} // namespace

std::string doccam::modulesFolder() {
    return folder;
}
