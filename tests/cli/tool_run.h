// tests/cli/tool_run.h — running the built tool as a user would.
#pragma once

#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "tests/support/temp_folder.h"

namespace vellicor::testing {

inline const std::string kExamples = VELLICOR_SOURCE_DIR "/examples/";

struct Outcome {
    int code;
    std::string out;
    std::string err;
};

/// A folder of its own to run in, which is the user's data folder, too.
class ToolRun : public TempFolder {
public:
    using Arguments = std::vector<std::string>;

    Outcome operator()(const Arguments& arguments, std::string_view input = "") const {
        return run(VELLICOR_TOOL, arguments, input);
    }
    /// The command with further arguments behind it.
    Outcome with(Arguments arguments, const Arguments& more, std::string_view input = "") const {
        arguments.insert(arguments.end(), more.begin(), more.end());
        return run(VELLICOR_TOOL, arguments, input);
    }

    Outcome run(const std::string& program, const Arguments& arguments, std::string_view input = "") const {
        write(".run/in", input);
        const std::string folder = quoted(path().string());
        std::string command =
            "cd " + folder + " && env -u XDG_DATA_DIRS XDG_DATA_HOME=" + folder + " " + quoted(program);
        for (const std::string& argument : arguments) command += " " + quoted(argument);
        const int status = std::system((command + " <.run/in >.run/out 2>.run/err").c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, read(path() / ".run/out"), read(path() / ".run/err")};
    }

    /// What lies in the folder, apart from what running leaves there.
    std::vector<std::string> files() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(path()))
            if (entry.path().filename() != ".run") names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }
    std::string content(const std::string& name) const { return read(path() / name); }

private:
    static std::string quoted(const std::string& word) {
        std::string all = "'";
        for (const char c : word) all += c == '\'' ? std::string("'\\''") : std::string(1, c);
        return all + "'";
    }
};

inline std::size_t lineCount(const std::string& text) {
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

}  // namespace vellicor::testing
