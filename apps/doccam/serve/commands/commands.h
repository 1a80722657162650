// The page's commands by name.
#pragma once

#include "serve/commands/event_feed.h"
#include "serve/commands/requests.h"
#include "serve/live/live_camera.h"
#include "serve/tray/page_store.h"

#include <map>
#include <string>

namespace doccam::serve {

// Runs on the command thread; docs/http.md describes each command.
class Commands {
  public:
    Commands(LiveCamera& camera, PageStore& pages, EventFeed& events);

    static bool knows(const std::string& name);

    // Runs the command and returns its response. Throws BadRequest, Unplugged, TrayError, or
    // Failure.
    Json run(const std::string& name, const Json& request);

  private:
    void tellPages();

    Json form(const Json& request);
    Json zoom(const Json& request);
    Json move(const Json& request);
    Json turn(const Json& request);
    Json settings(const Json& request);
    Json control(const Json& request);
    Json focus(const Json& request);
    Json capture(const Json& request);
    Json codes(const Json& request);
    Json orderPages(const Json& request);
    Json turnPage(const Json& request);
    Json changeRecipe(const Json& request);
    Json deletePage(const Json& request);
    Json restorePage(const Json& request);

    static const std::map<std::string, Json (Commands::*)(const Json&)> kCommands;

    LiveCamera& camera_;
    PageStore& pages_;
    EventFeed& events_;
};

} // namespace doccam::serve
