// The commands. Each function adds its command's name, options and help to the command line; the
// chosen command sets context.run.
#pragma once

#include "host/context.h"

#include <CLI/App.hpp>

namespace doccam::host {

// The command line: global options and all commands. Parses into context, which must outlive the
// result.
std::unique_ptr<CLI::App> makeCommandLine(Context& context);

void addListCommand(CLI::App& app, Context& context);
void addServeCommand(CLI::App& app, Context& context);
void addSizesCommand(CLI::App& app, Context& context);
void addCalibrateCommand(CLI::App& app, Context& context);
void addCaptureCommand(CLI::App& app, Context& context);
void addScanCommand(CLI::App& app, Context& context);
void addSpoolCommand(CLI::App& app, Context& context);
void addReadCommand(CLI::App& app, Context& context);
void addControlsCommand(CLI::App& app, Context& context);
void addFocusCommand(CLI::App& app, Context& context);
void addPdfCommand(CLI::App& app, Context& context);
void addCleanCommand(CLI::App& app, Context& context);
void addDoctorCommand(CLI::App& app, Context& context);

} // namespace doccam::host
