#pragma once

#include "server/program/command_line.h"

namespace vantry::server {

// Commands below "import": a catalogue, and opening hours.

void describeMarcImport(CLI::App& import, const Site& site);
void describeHoursImport(CLI::App& import, const Site& site);

}  // namespace vantry::server
