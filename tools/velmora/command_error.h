// How a command ends: its exit code, and the failure that says what went wrong, where, and what to do about it, for the
// one who gave the command.
#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace velmora {

// Exit codes. Of a command that answers yes or no, 1 is no, and 2 is also that it failed.
enum ExitCode { kDone = 0, kFailed = 1, kNo = 1, kUsage = 2 };

class CommandError : public std::runtime_error {
  public:
    // `details`: whole lines, with their line ends, that come before the message.
    explicit CommandError(const std::string& message, std::string details = {})
        : std::runtime_error(message), details_(std::move(details)) {}

    const std::string& Details() const { return details_; }

  private:
    std::string details_;
};

// The same for a command line that can't be carried out as it is written: a field or a value that there isn't, a file
// that isn't what the command takes.
class UsageError : public CommandError {
  public:
    using CommandError::CommandError;
};

}  // namespace velmora
