// tests/support/scoped_environment.h — environment variables that return to what they were at the end of a scope.
#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace vellicor::testing {

class ScopedEnvironment {
public:
    /// Null unsets the variable.
    ScopedEnvironment(std::string name, const std::optional<std::string>& value) : _name(std::move(name)) {
        if (const char* previous = std::getenv(_name.c_str())) _previous = previous;
        set(value);
    }
    ~ScopedEnvironment() { set(_previous); }
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

private:
    void set(const std::optional<std::string>& value) const {
        if (value)
            setenv(_name.c_str(), value->c_str(), 1);
        else
            unsetenv(_name.c_str());
    }

    std::string _name;
    std::optional<std::string> _previous;
};

}  // namespace vellicor::testing
