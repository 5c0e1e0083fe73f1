// vellicor/platform/xml_encoding.h — the text of an XML document, whatever encoding its bytes are in.
#pragma once

#include <string>
#include <string_view>

namespace vellicor {

/// How bytes are to be read: as their first ones show, else as the XML declaration says, else as UTF-8. A declaration
/// that cannot be true, since it was read byte by byte, counts as UTF-8.
struct XMLEncoding {
    std::string name = "UTF-8";  ///< as it is declared or known
    bool isUTF8 = true;
    bool isKnown = true;       ///< there is a converter
    bool isStated = false;     ///< by the first bytes or by the declaration
    std::size_t position = 0;  ///< of the declared name among the bytes
};
[[nodiscard]] XMLEncoding xmlEncodingOf(std::string_view bytes);

/// The text of a document in UTF-8: `bytes` themselves when they are that, else `storage`. Raises `XMLError` for an
/// encoding that nobody knows and for bytes that it does not have.
[[nodiscard]] std::string_view xmlAsUTF8(std::string_view bytes, std::string& storage);
/// The same for repair: bytes that the encoding does not have are left out. `bytes` themselves when they are
/// well-formed UTF-8 or their encoding is not known.
[[nodiscard]] std::string_view xmlAsRepairableUTF8(std::string_view bytes, std::string& storage);

/// What the encoding of bytes that are no UTF-8 looks like; empty when nothing fits.
[[nodiscard]] std::string likelyEncoding(std::string_view bytes);

}  // namespace vellicor
