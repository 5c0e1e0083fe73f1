// vellicor/fileformat/recovery.h — repairs of damaged documents, on their bytes and on their text.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vellicor {

/// All of the repairs below, one after the other, on the bytes of a document: in UTF-8 whatever they were in. Appends
/// what was changed to `changes`, in words.
[[nodiscard]] std::string repairedDocument(std::string_view bytes, std::vector<std::string>& changes);

/// Well-formed UTF-8 sequences of two and three bytes, printable ASCII, tab, line feed and carriage return; every other
/// byte is dropped. Kept: sequences of four bytes go, too.
[[nodiscard]] std::string dataByRemovingInvalidCharacters(std::string_view bytes);

/// Puts the slash back into every "]]>referenceDependentField>"; logs how many there were.
[[nodiscard]] std::string attemptBrokenReference(std::string_view text);

/// Makes every element name that begins with "django" an XML name by `filteredKeyString`; logs each replacement with
/// its range in the text as repaired up to there, in 16-bit code units. Kept: attributes and the slash of an empty
/// element are taken for parts of the name.
[[nodiscard]] std::string attemptDjangoFix(std::string_view text);

/// The letters and digits of ASCII, "_", "." and "-" of `key`, in order.
[[nodiscard]] std::string filteredKeyString(std::string_view key);

}  // namespace vellicor
