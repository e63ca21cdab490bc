// Start-up initialisation (Storage::InitialiseStorage): loads or creates the configuration, installs the
// program on a first run, and loads, creates or converts the log. What needs a
// window or the system (dialogs, copies, shortcuts, registry) goes through hooks so
// the decisions run the same in the unit tests.
#pragma once

constexpr char kLogMissingText[] = "Your log file is missing, another one will be created";
constexpr char kLogMissingCaption[] = "Orvalen Alert !!";
