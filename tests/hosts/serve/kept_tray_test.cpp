// Servers that end in other ways, and what the next ones show.
#include "kept_tray.h"
#include "remote/line_socket.h"

#include <thread>

namespace doccam::test {
namespace {

using nlohmann::json;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

namespace fs = std::filesystem;

TEST_F(KeptTray, SurvivesAFullDisk) {
    // In the frame of the second page, the frame and the manifest of later ones.
    for (const int at : {21, 3, 8}) {
        ServeHost host(failing(kSpool, at, "full"));
        auto told = ids(host);
        std::string answer = take(host);
        for (; answer.starts_with(kDone); answer = take(host)) {
            told.push_back(json::parse(bodyOf(answer))["page"]["id"]);
        }
        EXPECT_THAT(answer, AllOf(StartsWith("HTTP/1.1 409 "), HasSubstr("could not be kept")));
        EXPECT_EQ(ids(host), told);
        EXPECT_THAT(host.order("pages/delete", with(told.front())), StartsWith("HTTP/1.1 409 "));
        host.kill();
        EXPECT_EQ(ids(ServeHost(kept())), told) << at;
    }
}

TEST_F(KeptTray, TakesNoPageWhosePictureCannotBeWritten) {
    ServeHost host(failing("/tmp/.doccam-", 2, "full")); // the first locks the folder
    EXPECT_THAT(take(host), AllOf(StartsWith("HTTP/1.1 409 "), HasSubstr("disk is full")));
    EXPECT_THAT(ids(host), IsEmpty());
    host.kill();
    EXPECT_THAT(ids(ServeHost(kept())), IsEmpty());
}

TEST_F(KeptTray, SurvivesAnUnpluggedCamera) {
    ServeHost host(kept());
    EXPECT_THAT(take(host), StartsWith(kDone));
    EXPECT_EQ(virtualcam::ask(host.control(), "unplug 0"), "ok");
    while (stateOf(host)["camera"]["plugged"] == true) {
        std::this_thread::yield();
    }
    EXPECT_THAT(take(host), StartsWith("HTTP/1.1 409 "));
    EXPECT_THAT(host.order("pages/recipe", with(1, R"("turn": 1)")), StartsWith(kDone));
    host.kill();
    const ServeHost next(kept());
    EXPECT_THAT(ids(next), ElementsAre(1));
    EXPECT_EQ(stateOf(next)["pages"][0]["recipe"]["turn"], 1);
}

TEST_F(KeptTray, SurvivesTheEndOfTheServer) {
    ServeHost host(kept());
    EXPECT_THAT(take(host), StartsWith(kDone));
    EXPECT_THAT(take(host), StartsWith(kDone));
    EXPECT_EQ(host.end(), 0);
    ServeHost next(kept());
    EXPECT_THAT(ids(next), ElementsAre(1, 2));
    EXPECT_EQ(stateOf(next)["pages"][0]["codes"], stateOf(next)["pages"][1]["codes"]);
    EXPECT_THAT(next.ask(next.ownHead("GET /pages/2.jpg")), StartsWith(kDone));
    EXPECT_THAT(next.order("pages/delete", with(1)), StartsWith(kDone));
    EXPECT_THAT(next.order("pages/delete", with(2)), StartsWith(kDone));
    EXPECT_EQ(next.end(), 0);
    EXPECT_THAT(documents(), IsEmpty()) << "there is nothing to keep";
}

TEST_F(KeptTray, EndsWhenItsPdfHasArrived) {
    {
        const ServeHost host(kept());
        EXPECT_THAT(take(host), StartsWith(kDone));
        EXPECT_THAT(host.ask(host.ownHead("HEAD /pages.pdf")), StartsWith(kDone));
    }
    {
        const ServeHost host(kept());
        EXPECT_THAT(ids(host), ElementsAre(1));
        EXPECT_THAT(host.ask(host.ownHead("GET /pages.pdf")), StartsWith(kDone));
    }
    {
        const ServeHost host(kept());
        EXPECT_THAT(ids(host), IsEmpty());
    }
    EXPECT_THAT(documents(), SizeIs(2)) << "what was saved stays for a day";
}

TEST_F(KeptTray, IsOneServersAlone) {
    ServeHost first(kept());
    EXPECT_THAT(take(first), StartsWith(kDone));
    ServeHost second(kept());
    EXPECT_THAT(ids(second), IsEmpty());
    EXPECT_THAT(take(second), StartsWith(kDone));
    EXPECT_THAT(take(second), StartsWith(kDone));
    first.kill();
    const ServeHost third(kept());
    EXPECT_THAT(ids(third), ElementsAre(1));
    EXPECT_THAT(ids(second), ElementsAre(1, 2));
}

TEST_F(KeptTray, IsMadeOfFramesHoweverOftenItsRecipesChange) {
    const ServeHost host;
    EXPECT_THAT(take(host), StartsWith(kDone));
    const auto change = [&](int id, int turn, const char* look, const char* colour) {
        EXPECT_THAT(host.order("pages/recipe",
                               with(id, R"("quality": 70, "look": ")" + std::string(look) +
                                            R"(", "colour": ")" + colour + R"(", "turn": )" +
                                            std::to_string(turn) +
                                            R"(, "corners": [[0.1, 0.1], [0.9, 0.2], [0.8, 0.9],
                                                             [0.2, 0.8]])")),
                    StartsWith(kDone));
        return bodyOf(host.ask(host.ownHead("GET /pages/" + std::to_string(id) + ".jpg")));
    };
    const std::string once = change(1, 2, "paper", "colour");
    std::string often;
    for (int i = 1; i <= 10; ++i) {
        often = change(1, i % 4, i % 2 != 0 ? "photo" : "paper", i % 3 == 0 ? "bw" : "colour");
    }
    EXPECT_EQ(stateOf(host)["pages"][0]["version"], 12);
    EXPECT_GT(once.size(), 1000U);
    EXPECT_TRUE(often == once);
    EXPECT_THAT(
        host.order("pages/recipe", with(1, R"("corners": [[0, 0], [0, 0], [0, 0], [0, 0]])")),
        StartsWith("HTTP/1.1 400 "));
}

TEST_F(KeptTray, LeavesNothingWithoutASpool) {
    ServeSetting setting = kept();
    setting.options = {"--no-spool"};
    ServeHost host(setting);
    EXPECT_THAT(take(host), StartsWith(kDone));
    EXPECT_FALSE(fs::exists(state() + kSpool));
    EXPECT_EQ(host.end(), 0);
    EXPECT_TRUE(fs::is_empty(host.temporaryFolder()));
    EXPECT_THAT(ids(ServeHost(kept())), IsEmpty());
}

} // namespace
} // namespace doccam::test
