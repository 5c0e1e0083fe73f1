// cli/main.cpp — the command-line tool: parses the command line, runs one command, turns failures into exit codes.
#include <CLI/CLI.hpp>

#include "cli/command_line.h"
#include "cli/failure.h"
#include "cli/session.h"

int main(int argc, char** argv) {
    using namespace vellicor::cli;
    Session session;
    try {
        CLI::App app;
        describeCommandLine(app, session);
        if (!parseCommandLine(app, session, argc, argv)) return kDone;
        const ExitCode code = session.run();
        session.messages.show();
        return code;
    } catch (const Failure& failure) {
        session.messages.showError(failure.what());
        return failure.code();
    } catch (const std::exception& error) {
        session.messages.showError(error.what());
        return kFailed;
    }
}
