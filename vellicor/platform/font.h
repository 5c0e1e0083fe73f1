// vellicor/platform/font.h — fonts as values, and the seam that knows which fonts exist.
#pragma once

#include <memory>
#include <optional>
#include <string>

namespace vellicor {

/// A font by name, with its size in points.
struct Font {
    std::string name;
    double size = 0;
    bool bold = false;
    bool operator==(const Font&) const = default;
};

/// What fonts the platform has. The one built in knows every non-empty name with a positive size, so that a document
/// never loses its fonts on a machine without them.
class FontManager {
public:
    virtual ~FontManager() = default;
    static FontManager& shared();
    /// Replaces the shared manager; null restores the one built in.
    static void setShared(std::shared_ptr<FontManager> manager);

    /// The font of that name and size; null when there is none.
    virtual std::optional<Font> fontWithName(const std::string& name, double size) const;
    /// The font with the bold trait.
    virtual Font convertedToBold(const Font& font) const;
    /// The user's font at its default size.
    virtual Font userFont() const;
};

}  // namespace vellicor
