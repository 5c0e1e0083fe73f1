// vellicor/types/value_words.cpp — the table of words in defaults and conditions.
#include "vellicor/types/value_words.h"

#include <algorithm>

#include "vellicor/platform/text.h"

namespace vellicor {

namespace {

struct WordTable {
    using enum ValueMeaning;

    static constexpr std::string_view kStandardNow = "CURRENT_TIMESTAMP;localtimestamp;now()";
    // Random bytes with the marks of version 4.
    static constexpr std::string_view kSqliteUuid =
        "(lower(hex(randomblob(4))||'-'||hex(randomblob(2))||'-4'||substr(hex(randomblob(2)),2)||'-'||"
        "substr('89ab',1+(abs(random())%4),1)||substr(hex(randomblob(2)),2)||'-'||hex(randomblob(6))))";

    static constexpr ValueWords kWords[] = {
        {Now,
         {kStandardNow, kStandardNow, "CURRENT_TIMESTAMP;(datetime('now'));datetime('now')",
          "getdate();current_bigdatetime()",
          "CURRENT_TIMESTAMP;now();localtimestamp;transaction_timestamp();statement_timestamp();clock_timestamp()",
          "CURRENT_TIMESTAMP;curtimestamp",
          "SYSDATETIME();getdate();current_timestamp;sysutcdatetime();getutcdate();sysdatetimeoffset()",
          "GETDATE();sysdate;current_timestamp;now()",
          "CURRENT_TIMESTAMP%;now();localtime;localtime();localtimestamp;localtimestamp();current_timestamp();sysdate("
          ")",
          "CURRENT_TIMESTAMP;systimestamp;sysdate;localtimestamp"}},
        {Today,
         {"CURRENT_DATE", "CURRENT_DATE", "CURRENT_DATE;(date('now'));date('now')", "current_date()",
          "CURRENT_DATE;now()::date;('now'::text)::date", "CURRENT_DATE;curdate",
          "CAST(GETDATE() AS DATE);convert(date,getdate())", "CURRENT_DATE;trunc(getdate())",
          "(CURRENT_DATE);curdate();current_date;current_date()", "TRUNC(CURRENT_DATE);trunc(sysdate)"}},
        {TimeOfDay,
         {"CURRENT_TIME;localtime", "CURRENT_TIME", "CURRENT_TIME;(time('now'));time('now')",
          "current_bigtime();current_time()", "CURRENT_TIME;localtime;now()::time", "CURRENT_TIME;curtime",
          "CAST(GETDATE() AS TIME)", "", "(CURRENT_TIME);curtime();current_time;current_time()", ""}},
        {NewUuid,
         {"", "", kSqliteUuid, "newid(1);newid()", "gen_random_uuid();uuid_generate_v4();uuid_generate_v1()", "",
          "NEWID();newsequentialid()", "", "(UUID());uuid()", ""}},
        {User,
         {"CURRENT_USER;user;session_user", "", "", "suser_name();user_name();user", "CURRENT_USER;user;session_user",
          "CURRENT_USER", "CURRENT_USER;suser_sname();user_name();system_user;session_user;user",
          "CURRENT_USER;user;session_user", "(CURRENT_USER());current_user;current_user();user()", "USER"}},
    };

    static constexpr FunctionWords kFunctions[] = {
        {{"CHAR_LENGTH;CHARACTER_LENGTH;LENGTH", "CHAR_LENGTH;LENGTH", "LENGTH", "CHAR_LENGTH",
          "char_length;character_length;length", "LENGTH;CHAR_LENGTH", "LEN", "LEN;LENGTH;CHAR_LENGTH",
          "CHAR_LENGTH;CHARACTER_LENGTH", "LENGTH"}},
        {{"SUBSTRING", "SUBSTRING", "SUBSTR", "SUBSTRING", "substring", "SUBSTR", "SUBSTRING", "SUBSTRING", "SUBSTRING",
          "SUBSTR"}},
        {{"CEILING", "CEILING", "", "CEILING", "ceiling", "CEILING", "CEILING", "CEILING", "CEILING", "CEIL"}},
        {{"LOWER", "LOWER", "LOWER", "LOWER", "lower", "LOWER", "LOWER", "LOWER", "LOWER", "LOWER"}},
        {{"UPPER", "UPPER", "UPPER", "UPPER", "upper", "UPPER", "UPPER", "UPPER", "UPPER", "UPPER"}},
        {{"TRIM", "TRIM", "TRIM", "", "btrim", "TRIM", "TRIM", "TRIM", "TRIM", "TRIM"}},
        {{"LTRIM", "LTRIM", "LTRIM", "LTRIM", "ltrim", "LTRIM", "LTRIM", "LTRIM", "LTRIM", "LTRIM"}},
        {{"RTRIM", "RTRIM", "RTRIM", "RTRIM", "rtrim", "RTRIM", "RTRIM", "RTRIM", "RTRIM", "RTRIM"}},
        {{"ABS", "ABS", "ABS", "ABS", "abs", "ABS", "ABS", "ABS", "ABS", "ABS"}},
        {{"FLOOR", "FLOOR", "", "FLOOR", "floor", "FLOOR", "FLOOR", "FLOOR", "FLOOR", "FLOOR"}},
        {{"ROUND", "ROUND", "ROUND", "ROUND", "round", "ROUND", "ROUND", "ROUND", "ROUND", "ROUND"}},
        {{"COALESCE", "COALESCE", "COALESCE", "COALESCE", "COALESCE", "COALESCE", "COALESCE", "COALESCE", "COALESCE",
          "COALESCE"}},
        {{"NULLIF", "NULLIF", "NULLIF", "NULLIF", "NULLIF", "NULLIF", "NULLIF", "NULLIF", "NULLIF", "NULLIF"}},
    };
};

}  // namespace

bool hasWord(std::string_view cell, std::string_view word) {
    for (std::size_t start = 0; start < cell.size();) {
        const std::size_t end = std::min(cell.find(kWordEnd, start), cell.size());
        if (equalIgnoringCase(cell.substr(start, end - start), word)) return true;
        start = end + 1;
    }
    return false;
}

std::span<const ValueWords> valueWords() { return WordTable::kWords; }

std::span<const FunctionWords> functionWords() { return WordTable::kFunctions; }

}  // namespace vellicor
