// cli/failure.h — the end of a run: one line for people, one code for scripts.
#pragma once

#include <stdexcept>
#include <string>

#include "cli/exit_codes.h"

namespace vellicor::cli {

/// Thrown anywhere below a command. The text says what is wrong, where, and what to do about it, without a line break.
class Failure : public std::runtime_error {
public:
    Failure(ExitCode code, const std::string& text) : std::runtime_error(text), _code(code) {}
    [[nodiscard]] ExitCode code() const { return _code; }

private:
    ExitCode _code;
};

}  // namespace vellicor::cli
