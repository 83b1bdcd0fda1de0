#pragma once
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sim
{

// One element of an XML file.
struct XmlElement
{
    struct Attribute
    {
        std::wstring name;
        std::wstring value;
    };

    std::wstring namespaceUri;
    std::wstring name; // without its prefix
    std::wstring text; // all text outside of its children, but white space between elements
    std::vector<Attribute> attributes;
    std::vector<XmlElement> children;

    // nullopt when it is missing; an empty value is a value.
    std::optional<std::wstring> AttributeValue(std::wstring_view attributeName) const;

    std::vector<XmlElement const*> Children(std::wstring_view childNamespace, std::wstring_view childName) const;

    // The first of them, or null.
    XmlElement const* Child(std::wstring_view childNamespace, std::wstring_view childName) const;
};

// Parses a file with the system's XML reader and returns its root. Throws Error that names the file and the line that
// is not well-formed.
XmlElement ReadXml(std::wstring const& path);

// The same with the bytes of that file.
XmlElement ParseXml(std::string_view bytes, std::wstring const& path);

} // namespace sim
