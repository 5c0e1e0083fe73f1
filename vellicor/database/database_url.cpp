// vellicor/database/database_url.cpp — reading URLs of databases.
#include "vellicor/database/database_url.h"

#include <charconv>
#include <filesystem>
#include <optional>

#include "vellicor/database/database_error.h"
#include "vellicor/platform/text.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

struct Scheme {
    std::string_view start;
    DatabaseEngine engine;
};
constexpr Scheme kSchemes[] = {{"sqlite:", DatabaseEngine::SQLite},
                               {"postgres://", DatabaseEngine::PostgreSQL},
                               {"postgresql://", DatabaseEngine::PostgreSQL},
                               {"mysql://", DatabaseEngine::MySQL},
                               {"mariadb://", DatabaseEngine::MySQL}};

const Scheme* schemeOf(std::string_view text) {
    for (const Scheme& scheme : kSchemes)
        if (equalIgnoringCase(text.substr(0, scheme.start.size()), scheme.start)) return &scheme;
    return nullptr;
}

[[noreturn]] void refuseUrl(const std::string& reason) { throw DatabaseError(DatabaseError::Kind::BadUrl, reason); }

int hexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

/// %XX as the byte that it stands for.
std::string decoded(std::string_view part) {
    std::string all;
    for (std::size_t i = 0; i < part.size(); ++i) {
        if (part[i] == '%' && i + 2 < part.size() + 0 && hexDigit(part[i + 1]) >= 0 && hexDigit(part[i + 2]) >= 0) {
            all += static_cast<char>(hexDigit(part[i + 1]) * 16 + hexDigit(part[i + 2]));
            i += 2;
        } else {
            all += part[i];
        }
    }
    return all;
}

/// What stands in front of `mark`, cut off together with it; null when it is not there.
std::optional<std::string_view> cutBefore(std::string_view& text, char mark) {
    const auto place = text.find(mark);
    if (place == std::string_view::npos) return std::nullopt;
    const std::string_view part = text.substr(0, place);
    text.remove_prefix(place + 1);
    return part;
}

std::vector<std::string> namesIn(std::string_view list) {
    std::vector<std::string> names;
    while (auto name = cutBefore(list, ',')) names.push_back(decoded(*name));
    names.push_back(decoded(list));
    std::erase(names, std::string());
    return names;
}

void setOption(DatabaseUrl& url, const std::string& key, std::string_view value) {
    if (key == "schema") {
        url.schemas = namesIn(value);
    } else if (key == "host" || key == "socket") {
        url.host = decoded(value);
    } else if (key == "port") {
        url.port = decoded(value);
    } else if (key == "user") {
        url.user = decoded(value);
    } else if (key == "connect_timeout") {
        const auto end = value.data() + value.size();
        if (std::from_chars(value.data(), end, url.timeout).ptr != end || url.timeout == 0)
            refuseUrl(text("'%@' is no number of seconds for connect_timeout", value));
    } else if (key.starts_with("ssl")) {
        url.options[key] = decoded(value);
    } else if (key == "password" || key == "passwd") {
        refuseUrl(
            "a password does not belong into a URL, where others can see it; PostgreSQL reads PGPASSWORD and "
            "~/.pgpass, MySQL ~/.my.cnf");
    } else {
        refuseUrl(
            text("a database URL takes no '%@'; it takes schema, host, port, user, connect_timeout and ssl…", key));
    }
}

void setPlace(DatabaseUrl& url, std::string_view place) {
    if (const auto at = place.rfind('@'); at != std::string_view::npos) {
        const std::string_view user = place.substr(0, at);
        if (user.find(':') != std::string_view::npos) setOption(url, "password", {});
        url.user = decoded(user);
        place.remove_prefix(at + 1);
    }
    if (place.starts_with('[')) {  // an address with colons of its own
        place.remove_prefix(1);
        if (auto address = cutBefore(place, ']')) url.host = *address;
        if (place.starts_with(':')) url.port = decoded(place.substr(1));
        return;
    }
    const auto colon = place.rfind(':');
    url.host = decoded(place.substr(0, colon));
    if (colon != std::string_view::npos) url.port = decoded(place.substr(colon + 1));
}

}  // namespace

std::string_view engineName(DatabaseEngine engine) {
    switch (engine) {
        case DatabaseEngine::SQLite: return "SQLite";
        case DatabaseEngine::PostgreSQL: return "PostgreSQL";
        case DatabaseEngine::MySQL: return "MySQL";
    }
    return {};
}

bool DatabaseUrl::isUrl(std::string_view text) { return schemeOf(text) != nullptr; }

DatabaseUrl DatabaseUrl::parse(std::string_view text) {
    const Scheme* scheme = schemeOf(text);
    if (!scheme)
        refuseUrl("a database is given as sqlite:FILE, postgres://user@host/database or mysql://user@host/database");
    DatabaseUrl url;
    url.engine = scheme->engine;
    text.remove_prefix(scheme->start.size());
    if (url.engine == DatabaseEngine::SQLite) {
        if (text.starts_with("//")) text.remove_prefix(2);
        url.file = text;
        if (url.file.empty()) refuseUrl("sqlite: needs the path of a database behind it");
        return url;
    }
    std::string_view rest = text;
    const std::string_view address = cutBefore(rest, '?').value_or(text);
    if (address.size() == text.size()) rest = {};
    std::string_view database = address;
    setPlace(url, cutBefore(database, '/').value_or(address));
    if (database.size() != address.size()) url.database = decoded(database);
    while (!rest.empty()) {
        std::string_view option = rest;
        if (auto first = cutBefore(rest, '&'))
            option = *first;
        else
            rest = {};
        const std::string key = lowercased(cutBefore(option, '=').value_or(option));
        setOption(url, key, option);
    }
    if (url.engine == DatabaseEngine::MySQL && url.database.empty() && url.schemas.empty())
        refuseUrl("a MySQL URL needs a database: mysql://user@host/database");
    if (!url.port.empty() && url.port.find_first_not_of("0123456789") != std::string::npos)
        refuseUrl(vellicor::text("'%@' is no port", url.port));
    return url;
}

std::string DatabaseUrl::text() const {
    if (engine == DatabaseEngine::SQLite) return "sqlite:" + file;
    std::string all = engine == DatabaseEngine::PostgreSQL ? "postgres://" : "mysql://";
    if (!user.empty()) all += user + "@";
    all += host;
    if (!port.empty()) all += ":" + port;
    all += "/" + database;
    return schemas.empty() ? all : all + "?schema=" + joined(schemas, ",");
}

std::string DatabaseUrl::stem() const {
    const std::string name = engine == DatabaseEngine::SQLite ? std::filesystem::path(file).stem().string()
                                                              : replacingAll(database, "/", "_");
    return name.empty() || name.starts_with(':') ? "database" : name;
}

std::string_view DatabaseUrl::dialect() const {
    switch (engine) {
        case DatabaseEngine::SQLite: return "SQLite";
        case DatabaseEngine::PostgreSQL: return "postgres";
        case DatabaseEngine::MySQL: return "mysql";
    }
    return {};
}

}  // namespace vellicor
