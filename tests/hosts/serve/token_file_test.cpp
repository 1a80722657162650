// Keeping the token across restarts and from other users.
#include "host/state_folder.h"
#include "serve/access/token_file.h"
#include "support/scratch_folder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <fstream>
#include <optional>

namespace doccam::serve {
namespace {

namespace fs = std::filesystem;

class TokenFileTest : public testing::Test {
  protected:
    fs::path folder() const { return scratch_.path() / "state" / "doccam"; }

    fs::path file() const { return folder() / "serve-token"; }

    std::string token() const { return keptToken(folder()); }

    static fs::perms permissions(const fs::path& path) { return fs::status(path).permissions(); }

    const fs::path& scratch() const { return scratch_.path(); }

  private:
    test::ScratchFolder scratch_;
};

// Sets an environment variable during its lifetime.
class Variable {
  public:
    Variable(const char* name, const std::string& value)
      : name_(name) {
        if (const char* const before = std::getenv(name)) {
            before_ = before;
        }
        setenv(name, value.c_str(), 1);
    }

    ~Variable() { before_ ? setenv(name_, before_->c_str(), 1) : unsetenv(name_); }

    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

  private:
    const char* name_;
    std::optional<std::string> before_;
};

TEST_F(TokenFileTest, KeepsTheTokenPrivateToTheUser) {
    const std::string first = token();
    EXPECT_EQ(first.size(), 64U);
    EXPECT_EQ(token(), first);
    EXPECT_EQ(permissions(folder()), fs::perms::owner_all);
    EXPECT_EQ(permissions(file()), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(TokenFileTest, LeavesNothingElseInTheFolder) {
    token();
    EXPECT_EQ(std::distance(fs::directory_iterator(folder()), {}), 1);
}

TEST_F(TokenFileTest, ClosesAFolderThatOthersMayEnter) {
    fs::create_directories(folder());
    fs::permissions(folder(), fs::perms::all);
    token();
    EXPECT_EQ(permissions(folder()), fs::perms::owner_all);
}

TEST_F(TokenFileTest, ReplacesATokenThatOthersMaySee) {
    const std::string first = token();
    fs::permissions(file(), fs::perms::group_read, fs::perm_options::add);
    const std::string second = token();
    EXPECT_NE(second, first);
    EXPECT_EQ(token(), second);
}

TEST_F(TokenFileTest, ReplacesAMalformedToken) {
    token();
    for (const std::string& text :
         {std::string(), std::string("short"), std::string(64, 'x'), std::string(1000, '0')}) {
        std::ofstream(file()) << text;
        const std::string next = token();
        EXPECT_NE(next, text);
        EXPECT_EQ(token(), next);
    }
}

TEST_F(TokenFileTest, FollowsNoLink) {
    const std::string chosen(64, 'a');
    fs::create_directories(folder());
    std::ofstream(scratch() / "elsewhere") << chosen;
    fs::permissions(scratch() / "elsewhere", fs::perms::owner_read | fs::perms::owner_write);
    fs::create_symlink(scratch() / "elsewhere", file());
    EXPECT_NE(token(), chosen);
    EXPECT_FALSE(fs::is_symlink(file()));
}

TEST_F(TokenFileTest, DoesNotBlockOnAPipe) {
    fs::create_directories(folder());
    ASSERT_EQ(mkfifo(file().c_str(), 0600), 0);
    EXPECT_EQ(token(), token());
}

TEST_F(TokenFileTest, WorksWithoutAFolder) {
    EXPECT_EQ(keptToken({}).size(), 64U);
    std::ofstream(scratch() / "file") << "in the way";
    EXPECT_EQ(keptToken(scratch() / "file" / "doccam").size(), 64U);
    EXPECT_NE(keptToken({}), keptToken({}));
}

TEST(StateFolder, FollowsTheXdgVariables) {
    const Variable home("HOME", "/home/user");
    {
        const Variable state("XDG_STATE_HOME", "/state");
        EXPECT_EQ(host::stateFolder(), "/state/doccam");
    }
    for (const char* unusable : {"", "relative"}) {
        const Variable state("XDG_STATE_HOME", unusable);
        EXPECT_EQ(host::stateFolder(), "/home/user/.local/state/doccam");
    }
    const Variable state("XDG_STATE_HOME", "");
    const Variable homeless("HOME", "");
    EXPECT_EQ(host::stateFolder(), "");
}

} // namespace
} // namespace doccam::serve
