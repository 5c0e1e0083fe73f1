// vellicor/platform/xml_element.h — elements of an XML tree under construction, and their text.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace vellicor {

/// A handle to one element. Copies share the element; the tree lives as long as any handle into it.
/// Characters that XML 1.0 forbids are dropped from every text, ill-formed UTF-8 becomes U+FFFD; an element or
/// attribute name that is no XML name loses the characters that may not stand in one.
class XMLElement {
public:
    /// A new element that is the root of its own tree.
    explicit XMLElement(std::string_view name);

    /// Appends an empty child element and answers it.
    XMLElement addElement(std::string_view name) const;
    /// Appends `<name>text</name>` with `text` escaped.
    void addTextElement(std::string_view name, std::string_view text) const;
    /// Appends `<name><![CDATA[text]]></name>`; a "]]>" inside is split over two sections, so that it reads back whole.
    void addCDataElement(std::string_view name, std::string_view text) const;
    /// Appends `<![CDATA[text]]>` to this element itself, split in the same way.
    void addCData(std::string_view text) const;
    void setAttribute(std::string_view name, std::string_view value) const;
    /// Appends a deep copy of another element.
    void addCopy(const XMLElement& other) const;

    /// The name that an element asked for under `name` gets.
    [[nodiscard]] static std::string nameFor(std::string_view name);
    [[nodiscard]] std::string name() const;
    [[nodiscard]] bool isEmpty() const;
    /// Pretty-printed with four blanks a level, starting at `depth` levels; ends in a line feed. Elements that hold
    /// text get no white space inside. `appendText` writes to the end of `out`.
    [[nodiscard]] std::string text(int depth = 0) const;
    void appendText(std::string& out, int depth = 0) const;

private:
    struct Tree;
    XMLElement(std::shared_ptr<Tree> tree, void* node) : _tree(std::move(tree)), _node(node) {}
    std::shared_ptr<Tree> _tree;
    void* _node;
};

/// `<?xml version="1.0" encoding="UTF-8"?>` and a line feed: what stands before the root element.
inline constexpr std::string_view xmlDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

}  // namespace vellicor
