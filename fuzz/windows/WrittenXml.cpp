#include "fuzz/windows/WrittenXml.h"

#include "fuzz/Utf8Reference.h"

#include <algorithm>

namespace fuzz
{

namespace
{

using sim::XmlElement;

class Writer
{
  public:
    explicit Writer(Choices& choices) : m_choices(choices) {}

    std::string Write(XmlElement const& root)
    {
        // Without it, Wine's reader takes a document that begins with white space or with <é for an empty one.
        constexpr auto declaration = "<?xml version=\"1.0\" encoding=\"utf-8\"?>";
        return declaration + Comment() + Element(root, L"") + Comment();
    }

  private:
    std::string Blank()
    {
        static constexpr std::array blanks = {"", "", " ", "\n", "\t \r\n"};
        return m_choices.OneOf(blanks);
    }

    std::string Comment()
    {
        static constexpr std::array comments = {"", "", "", "<!-- <a> & -->", "<?p <a> ?>", "<!---->"};
        return m_choices.OneOf(comments);
    }

    std::string Character(wchar_t character, std::string const& bytes)
    {
        switch (character)
        {
        case L'&':
            return m_choices.Flag() ? "&amp;" : "&#38;";
        case L'<':
            return m_choices.Flag() ? "&lt;" : "&#x3c;";
        case L'>':
            return "&gt;";
        case L'"':
            return m_choices.Flag() ? "&quot;" : "&#x22;";
        case L'\'':
            return m_choices.Flag() ? "&apos;" : "&#39;";
        default:
            return bytes;
        }
    }

    std::string Escaped(std::wstring const& text)
    {
        std::string escaped;
        for (auto const byte : FromUnits(text))
        {
            escaped += Character(static_cast<unsigned char>(byte), {byte});
        }
        return escaped;
    }

    std::string Text(std::wstring const& text)
    {
        if (!text.empty() && text.find(L"]]>") == text.npos && m_choices.Below(4) == 0)
        {
            return "<![CDATA[" + FromUnits(text) + "]]>";
        }
        return Escaped(text);
    }

    std::string Attribute(std::string const& name, std::wstring const& value)
    {
        auto const quote = m_choices.Flag() ? "'" : "\"";
        return " " + Blank() + name + Blank() + "=" + Blank() + quote + Escaped(value) + quote;
    }

    // inherited: the default namespace outside. Each declared prefix is another one: of one that is declared again,
    // Wine's reader takes the first meaning, even that of an empty element before.
    std::string Element(XmlElement const& element, std::wstring const& inherited)
    {
        auto const prefix = "declared" + std::to_string(m_elements++);
        auto const isPrefixed = !element.namespaceUri.empty() && m_choices.Flag();
        auto const& defaultNamespace = isPrefixed ? inherited : element.namespaceUri;
        auto const name = (isPrefixed ? prefix + ":" : "") + FromUnits(element.name);
        auto tag = "<" + name;
        if (isPrefixed)
        {
            tag += Attribute("xmlns:" + prefix, element.namespaceUri);
        }
        else if (defaultNamespace != inherited)
        {
            tag += Attribute("xmlns", defaultNamespace);
        }
        for (auto const& [attribute, value] : element.attributes)
        {
            tag += Attribute(FromUnits(attribute), value);
        }
        tag += Blank();
        if (element.children.empty() && element.text.empty() && m_choices.Flag())
        {
            return tag + "/>";
        }
        // White space beside a text would be part of it.
        tag += ">" + Comment() + (element.text.empty() ? Blank() : Text(element.text)) + Comment();
        for (auto const& child : element.children)
        {
            tag += Element(child, defaultNamespace) + Blank() + Comment();
        }
        return tag + "</" + name + Blank() + ">";
    }

    Choices& m_choices;
    int m_elements = 0;
};

} // namespace

std::string WrittenXml(XmlElement const& root, Choices& choices)
{
    return Writer(choices).Write(root);
}

XmlElement WithoutDeclarations(XmlElement element)
{
    std::erase_if(element.attributes, [](auto const& attribute) {
        return attribute.name == L"xmlns" || attribute.name.starts_with(L"declared");
    });
    for (auto& child : element.children)
    {
        child = WithoutDeclarations(std::move(child));
    }
    return element;
}

bool AreEqual(XmlElement const& one, XmlElement const& other)
{
    auto const haveEqualAttributes =
        std::ranges::equal(one.attributes, other.attributes, [](auto const& left, auto const& right) {
            return left.name == right.name && left.value == right.value;
        });
    return one.namespaceUri == other.namespaceUri && one.name == other.name && one.text == other.text &&
           haveEqualAttributes && std::ranges::equal(one.children, other.children, AreEqual);
}

} // namespace fuzz
