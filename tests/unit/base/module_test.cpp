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

    // A new name each time: an opened module is never closed.
    std::string put(const std::string& contents) {
        std::string name = "module" + std::to_string(count_++);
        std::ofstream(folder / (name + ".so"), std::ios::binary) << contents;
        return name;
    }

    static std::string complaintOf(const std::string& name) {
        try {
            openModule(name.c_str());
        } catch (const ModuleError& error) {
            return error.what();
        }
        return "";
    }

    void expectDamaged(const std::string& contents) {
        EXPECT_THAT(complaintOf(put(contents)),
                    AllOf(StartsWith("The module " + folder.string()),
                          EndsWith(" is damaged; install doccam again.")));
    }

    doccam::test::ScratchFolder scratch_;
    int count_ = 0;
};

TEST_F(Module, IsOpenedWithItsVersion) {
    const std::string name = put(built());
    EXPECT_STREQ(openModule(name.c_str()).version, DOCCAM_MODULE_VERSION);
    EXPECT_EQ(&openModule(name.c_str()), &openModule(name.c_str()));
}

TEST_F(Module, IsTheSameForThreadsThatOpenItAtOnce) {
    const std::string name = put(built());
    const doccam::ModuleHead* other = nullptr;
    std::thread thread([&] { other = &openModule(name.c_str()); });
    const doccam::ModuleHead* const one = &openModule(name.c_str());
    thread.join();
    EXPECT_EQ(one, other);
}

TEST_F(Module, MayBeStripped) {
    const std::string name = put(built());
    ASSERT_EQ(std::system(("strip " + (folder / (name + ".so")).string()).c_str()), 0);
    EXPECT_LT(fs::file_size(folder / (name + ".so")), built().size());
    EXPECT_EQ(complaintOf(name), "");
}

TEST_F(Module, ThatIsMissingIsReported) {
    EXPECT_EQ(complaintOf("none"),
              "The module " + (folder / "none.so").string() + " is missing; install doccam again.");
}

TEST_F(Module, ThatIsCutIsReported) {
    const std::string whole = built();
    for (std::size_t part = 0; part < 20; ++part) {
        expectDamaged(whole.substr(0, whole.size() * part / 40));
    }
}

TEST_F(Module, ThatWasChangedAnywhereIsReported) {
    const std::string whole = built();
    constexpr std::size_t kAfterHeader = 0x40;
    const std::size_t end =
        whole.find("GCC: ("); // the compiler's remark follows all that is loaded
    ASSERT_NE(end, std::string::npos);
    for (std::size_t at = kAfterHeader; at < end; at += 7) {
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
    fs::create_directory(folder / "place.so");
    EXPECT_THAT(complaintOf("place"), HasSubstr(" is damaged"));
    ASSERT_EQ(mkfifo((folder / "pipe.so").c_str(), 0600), 0);
    EXPECT_THAT(complaintOf("pipe"), HasSubstr(" is damaged"));
}

TEST_F(Module, OfAnotherVersionIsReported) {
    fs::copy(DOCCAM_OLD_MODULE, folder / "old.so");
    EXPECT_EQ(complaintOf("old"), "The module " + (folder / "old.so").string() +
                                      " is of version 0.0.1, the library of " DOCCAM_MODULE_VERSION
                                      "; install doccam again.");
}

TEST_F(Module, WhoseLibraryIsMissingIsReported) {
    fs::copy(DOCCAM_LACKING_MODULE, folder / "lacking.so");
    EXPECT_THAT(complaintOf("lacking"),
                AllOf(StartsWith("The module " + (folder / "lacking.so").string() +
                                 " cannot be loaded (libdoccam-absent.so: "),
                      EndsWith("; install doccam again.")));
}

} // namespace

std::string doccam::modulesFolder() {
    return folder;
}
