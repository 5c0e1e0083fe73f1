// tests/support/decimal_comma.h — a scope in which the C library writes and reads numbers with a decimal comma.
#pragma once

#include <clocale>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>

#include "tests/support/scoped_environment.h"
#include "tests/support/temp_folder.h"

namespace vellicor::testing {

/// Brings its own locale, since a machine need not have any besides "C".
class DecimalComma {
public:
    DecimalComma() {
        _folder.write("comma/LC_NUMERIC", compiledLocale());
        _path.emplace("LOCPATH", _folder.path().string());
        std::setlocale(LC_NUMERIC, "comma");
    }
    ~DecimalComma() { std::setlocale(LC_NUMERIC, "C"); }
    DecimalComma(const DecimalComma&) = delete;
    DecimalComma& operator=(const DecimalComma&) = delete;

    /// False with a C library that keeps its locales in another form.
    static bool works() { return std::strtod("0,5", nullptr) == 0.5; }

private:
    /// The file in which the GNU C library keeps the number format of a locale: a mark, how many values there are,
    /// where each begins, and the values.
    static std::string compiledLocale() {
        std::string file;
        const auto add = [&file](std::uint32_t number) {
            file.append(reinterpret_cast<const char*>(&number), sizeof number);
        };
        add(0x20031115 ^ LC_NUMERIC);
        add(6);
        for (const std::uint32_t start : {32, 34, 35, 36, 40, 44}) add(start);
        file.append(",\0\0\0", 4);  // decimal point, separator of groups, their sizes
        add(',');                    // the first two as wide characters
        add(0);
        return file.append("ASCII\0", 6);
    }

    TempFolder _folder;
    std::optional<ScopedEnvironment> _path;
};

}  // namespace vellicor::testing
