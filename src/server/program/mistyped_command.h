#pragma once

namespace CLI {
class App;
class RequiredError;
}  // namespace CLI

namespace vantry::server {

/// The error that ended the reading of the command line; where a command is missing because its name was
/// mistyped, one that says so.
[[nodiscard]] CLI::RequiredError namingMistyped(const CLI::App& program, const CLI::RequiredError& error);

}  // namespace vantry::server
