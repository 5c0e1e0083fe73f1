// vellicor/platform/xml_element.cpp — pugixml behind the element handle.
#include "vellicor/platform/xml_element.h"

#include <algorithm>
#include <pugixml.hpp>
#include <unordered_map>

#include "vellicor/platform/text.h"
#include "vellicor/platform/xml_events.h"

namespace vellicor {

struct XMLElement::Tree {
    pugi::xml_document document;
};

namespace {

pugi::xml_node nodeOf(void* node) { return pugi::xml_node(static_cast<pugi::xml_node_struct*>(node)); }

bool isHighByte(char c) { return static_cast<unsigned char>(c) >= 0x80; }
bool isForbiddenControl(char c) {
    auto byte = static_cast<unsigned char>(c);
    return byte < 0x20 && byte != '\t' && byte != '\n' && byte != '\r';
}

/// U+FFFE or U+FFFF, the only well-formed sequences that XML 1.0 forbids.
bool isForbiddenSequence(std::string_view text, std::size_t position) {
    std::string_view sequence = text.substr(position, 3);
    return sequence == "\xEF\xBF\xBE" || sequence == "\xEF\xBF\xBF";
}

bool needsCleaning(std::string_view text) {
    bool ascii = true;
    for (char c : text) {
        if (isForbiddenControl(c)) return true;
        ascii &= !isHighByte(c);
    }
    if (ascii) return false;
    if (!isValidUTF8(text)) return true;
    for (std::size_t i = text.find('\xEF'); i != std::string_view::npos; i = text.find('\xEF', i + 1)) {
        if (isForbiddenSequence(text, i)) return true;
    }
    return false;
}

/// A text of which every character may stand in XML; `storage` holds it when `text` itself will not do. Ill-formed
/// UTF-8 becomes U+FFFD.
std::string_view allowedText(std::string_view text, std::string& storage) {
    if (!needsCleaning(text)) return text;
    std::string wellFormed = repairedUTF8(text);
    storage.clear();
    for (std::size_t i = 0; i < wellFormed.size(); ++i) {
        if (isForbiddenSequence(wellFormed, i))
            i += 2;
        else if (!isForbiddenControl(wellFormed[i]))
            storage += wellFormed[i];
    }
    return storage;
}

bool isNameLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; }
bool isNameCharacter(char c) { return isNameLetter(c) || (c >= '0' && c <= '9') || c == '.' || c == '-'; }
bool startsLikeName(std::string_view name) { return !name.empty() && (isNameLetter(name[0]) || isHighByte(name[0])); }

/// Which letters outside ASCII a name may hold is for the reader to say; it is asked once for each name.
bool isReadableName(std::string_view name) {
    thread_local std::unordered_map<std::string, bool, TextHash, std::equal_to<>> known;
    if (auto found = known.find(name); found != known.end()) return found->second;
    if (known.size() > 1000) known.clear();
    struct : XMLEventHandler {
        void startElement(std::string_view, const XMLAttributes&) override {}
        void characters(std::string_view) override {}
        void endElement(std::string_view) override {}
    } ignore;
    bool readable = true;
    try {
        parseXML("<" + std::string(name) + "/>", ignore, true);
    } catch (const XMLError&) {
        readable = false;
    }
    known.emplace(name, readable);
    return readable;
}

bool isXMLName(std::string_view name) {
    bool ascii = true;
    for (char c : name) {
        if (!isNameCharacter(c) && c != ':' && !isHighByte(c)) return false;
        ascii &= !isHighByte(c);
    }
    if (!startsLikeName(name) && !name.starts_with(':')) return false;
    return ascii || isReadableName(name);
}

template <class Keep>
std::string nameOf(std::string_view name, Keep keep) {
    std::string kept;
    std::copy_if(name.begin(), name.end(), std::back_inserter(kept), keep);
    return startsLikeName(kept) ? kept : "_" + kept;
}

/// `name`, or what is left of it as an XML name.
std::string legalName(std::string_view name) {
    if (isXMLName(name)) return std::string(name);
    std::string legal = nameOf(name, [](char c) { return isNameCharacter(c) || isHighByte(c); });
    return isXMLName(legal) ? legal : nameOf(name, isNameCharacter);
}

struct StringWriter : pugi::xml_writer {
    explicit StringWriter(std::string& out) : _out(out) {}
    void write(const void* data, std::size_t size) override { _out.append(static_cast<const char*>(data), size); }

private:
    std::string& _out;
};

pugi::xml_node appendElement(pugi::xml_node parent, std::string_view name) {
    pugi::xml_node element = parent.append_child(pugi::node_element);
    element.set_name(legalName(name).c_str());
    return element;
}

void appendCharacters(pugi::xml_node element, pugi::xml_node_type type, std::string_view text) {
    std::string storage;
    std::string_view allowed = allowedText(text, storage);
    element.append_child(type).set_value(allowed.data(), allowed.size());
}

}  // namespace

XMLElement::XMLElement(std::string_view name) : _tree(std::make_shared<Tree>()) {
    _node = appendElement(_tree->document, name).internal_object();
}

XMLElement XMLElement::addElement(std::string_view name) const {
    return {_tree, appendElement(nodeOf(_node), name).internal_object()};
}

void XMLElement::addTextElement(std::string_view name, std::string_view text) const {
    pugi::xml_node element = appendElement(nodeOf(_node), name);
    if (!text.empty()) appendCharacters(element, pugi::node_pcdata, text);
}

void XMLElement::addCDataElement(std::string_view name, std::string_view text) const {
    appendCharacters(appendElement(nodeOf(_node), name), pugi::node_cdata, text);
}

void XMLElement::addCData(std::string_view text) const { appendCharacters(nodeOf(_node), pugi::node_cdata, text); }

void XMLElement::setAttribute(std::string_view name, std::string_view value) const {
    std::string storage;
    std::string_view allowed = allowedText(value, storage);
    std::string legal = legalName(name);
    pugi::xml_attribute attribute = nodeOf(_node).attribute(legal.c_str());
    if (!attribute) attribute = nodeOf(_node).append_attribute(legal.c_str());
    attribute.set_value(allowed.data(), allowed.size());
}

void XMLElement::addCopy(const XMLElement& other) const { nodeOf(_node).append_copy(nodeOf(other._node)); }

std::string XMLElement::nameFor(std::string_view name) { return legalName(name); }

std::string XMLElement::name() const { return nodeOf(_node).name(); }

bool XMLElement::isEmpty() const { return !nodeOf(_node).first_child() && !nodeOf(_node).first_attribute(); }

std::string XMLElement::text(int depth) const {
    std::string out;
    appendText(out, depth);
    return out;
}

void XMLElement::appendText(std::string& out, int depth) const {
    StringWriter writer(out);
    auto levels = static_cast<unsigned>(std::max(depth, 0));
    nodeOf(_node).print(writer, "    ", pugi::format_default, pugi::encoding_utf8, levels);
}

}  // namespace vellicor
