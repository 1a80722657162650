// Servers on one state folder, one after another or at once.
#pragma once

#include "attacks/serve_host.h"
#include "support/sanitized.h"
#include "support/scratch_folder.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <string>
#include <vector>

namespace doccam::test {

inline constexpr const char* kDone = "HTTP/1.1 200 ";

inline std::string bodyOf(const std::string& answer) {
    const std::size_t end = answer.find("\r\n\r\n");
    return end == std::string::npos ? "" : answer.substr(end + 4);
}

inline nlohmann::json stateOf(const ServeHost& host) {
    return nlohmann::json::parse(bodyOf(host.ask(host.ownHead("GET /api/state"))));
}

inline std::vector<int> ids(const ServeHost& host) {
    std::vector<int> ids;
    const nlohmann::json state = stateOf(host);
    for (const nlohmann::json& page : state["pages"]) {
        ids.push_back(page["id"]);
    }
    return ids;
}

inline std::string take(const ServeHost& host) {
    return host.order("capture", "{}");
}

inline std::string with(int id, const std::string& fields = "") {
    return "{\"id\": " + std::to_string(id) + (fields.empty() ? "" : ", ") + fields + "}";
}

inline const std::string kSpool = "/doccam/spool";

class KeptTray : public testing::Test {
  protected:
    void SetUp() override {
        if (kSanitized) {
            GTEST_SKIP() << "nothing can be loaded before a sanitizer's runtime";
        }
    }

    std::string state() const { return folder_.file("state"); }

    ServeSetting kept() const { return {.state = state()}; }

    // A server in which a change of the files in folder fails.
    ServeSetting failing(const std::string& folder, int at, const std::string& by) const {
        ServeSetting setting = kept();
        setting.within = {"/usr/bin/env",
                          "FAILING_FILES_IN=" + folder,
                          "FAILING_FILES_AT=" + std::to_string(at),
                          "FAILING_FILES_BY=" + by,
                          "/bin/sh",
                          "-c",
                          "LD_PRELOAD=\"" DOCCAM_FAILING_FILES " $LD_PRELOAD\" exec \"$0\" \"$@\""};
        return setting;
    }

    // The documents in the spool.
    std::vector<std::filesystem::path> documents() const {
        std::vector<std::filesystem::path> found;
        for (const auto& entry : std::filesystem::directory_iterator(state() + "/doccam/spool")) {
            if (entry.path().filename().string().front() != '.') { // one that was not begun
                found.push_back(entry.path());
            }
        }
        return found;
    }

  private:
    ScratchFolder folder_;
};

} // namespace doccam::test
