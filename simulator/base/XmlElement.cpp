#include "simulator/base/XmlElement.h"

#include "simulator/base/Error.h"
#include "simulator/base/Files.h"
#include "simulator/base/Text.h"
#include "simulator/base/WholeXml.h"

#include <algorithm>
#include <bit>
#include <memory>
#include <windows.h>

#include <shlwapi.h>
#include <xmllite.h>

namespace sim
{

namespace
{

struct Release
{
    void operator()(IUnknown* object) const noexcept { object->Release(); }
};

template <typename T>
using ComPointer = std::unique_ptr<T, Release>;

using CreateXmlReaderFunction = HRESULT(WINAPI*)(REFIID, void**, IMalloc*);

// The toolchain has no import library for it.
ComPointer<IXmlReader> NewReader()
{
    auto* const library = LoadLibraryExW(L"xmllite.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    auto const function = library ? GetProcAddress(library, "CreateXmlReader") : nullptr;
    auto const create = std::bit_cast<CreateXmlReaderFunction>(function);
    void* reader = nullptr;
    if (!create || FAILED(create(__uuidof(IXmlReader), &reader, nullptr)))
    {
        throw Error(L"the system's XML reader (xmllite.dll) is not available");
    }
    return ComPointer<IXmlReader>(static_cast<IXmlReader*>(reader));
}

// Builds the tree in one pass over the reader's nodes.
class TreeBuilder
{
  public:
    TreeBuilder(IXmlReader& reader, std::wstring const& path) : m_reader(reader), m_path(path) {}

    XmlElement Build()
    {
        auto type = XmlNodeType_None;
        auto result = m_reader.Read(&type);
        for (; result == S_OK; result = m_reader.Read(&type))
        {
            Add(type);
        }
        if (FAILED(result) || m_document.children.empty())
        {
            Fail(FAILED(result) ? L"(" + Hex(static_cast<std::uint32_t>(result)) + L")" : L"(it has no element)");
        }
        return std::move(m_document.children.front());
    }

  private:
    [[noreturn]] void Fail(std::wstring const& why)
    {
        UINT line = 0;
        m_reader.GetLineNumber(&line);
        throw Error(m_path + L" is not well-formed XML at line " + std::to_wstring(line) + L" " + why);
    }

    void Add(XmlNodeType type)
    {
        if (type == XmlNodeType_EndElement)
        {
            m_open.pop_back();
        }
        if (type == XmlNodeType_Text || type == XmlNodeType_CDATA)
        {
            m_open.back()->text += Text(&IXmlReader::GetValue);
        }
        if (type != XmlNodeType_Element)
        {
            return;
        }
        auto const isEmpty = m_reader.IsEmptyElement(); // before the reader moves to the attributes
        auto& element = m_open.back()->children.emplace_back();
        element.name = Text(&IXmlReader::GetLocalName);
        element.namespaceUri = Text(&IXmlReader::GetNamespaceUri);
        AddAttributes(element);
        if (!isEmpty)
        {
            // The pointer stays valid: its parent's list does not grow until this element is closed.
            m_open.push_back(&element);
        }
    }

    void AddAttributes(XmlElement& element)
    {
        for (auto next = m_reader.MoveToFirstAttribute(); next == S_OK; next = m_reader.MoveToNextAttribute())
        {
            element.attributes.push_back({Text(&IXmlReader::GetLocalName), Text(&IXmlReader::GetValue)});
        }
    }

    std::wstring Text(HRESULT (STDMETHODCALLTYPE IXmlReader::*get)(LPCWSTR*, UINT*))
    {
        LPCWSTR text = nullptr;
        UINT length = 0;
        if (FAILED((m_reader.*get)(&text, &length)))
        {
            Fail(L"");
        }
        return std::wstring(text, length);
    }

    IXmlReader& m_reader;
    std::wstring const& m_path;
    XmlElement m_document; // holds the root
    std::vector<XmlElement*> m_open{&m_document};
};

// Refuses what Wine's reader neither refuses nor ends. UTF-16 is left to the reader.
void CheckBytes(std::string_view bytes, std::wstring const& path)
{
    if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF"))
    {
        return;
    }
    if (ToUtf8(FromUtf8(bytes)) != bytes || bytes.find('\0') != bytes.npos)
    {
        throw Error(path + L" is not well-formed XML at line 1 (it has bytes that are no text in UTF-8)");
    }
    if (!IsWholeXml(bytes))
    {
        auto const line = std::ranges::count(bytes, '\n') + 1;
        throw Error(path + L" is not well-formed XML at line " + std::to_wstring(line) +
                    L" (it has no element, or something in it has no end)");
    }
}

} // namespace

std::optional<std::wstring> XmlElement::AttributeValue(std::wstring_view attributeName) const
{
    auto const found = std::ranges::find(attributes, attributeName, &Attribute::name);
    return found == attributes.end() ? std::nullopt : std::optional(found->value);
}

std::vector<XmlElement const*> XmlElement::Children(std::wstring_view childNamespace, std::wstring_view childName) const
{
    std::vector<XmlElement const*> found;
    for (auto const& child : children)
    {
        if (child.namespaceUri == childNamespace && child.name == childName)
        {
            found.push_back(&child);
        }
    }
    return found;
}

XmlElement const* XmlElement::Child(std::wstring_view childNamespace, std::wstring_view childName) const
{
    auto const found = Children(childNamespace, childName);
    return found.empty() ? nullptr : found.front();
}

XmlElement ParseXml(std::string_view bytes, std::wstring const& path)
{
    CheckBytes(bytes, path);
    ComPointer<IStream> const stream(
        SHCreateMemStream(reinterpret_cast<BYTE const*>(bytes.data()), static_cast<UINT>(bytes.size())));
    auto const reader = NewReader();
    if (!stream || FAILED(reader->SetInput(stream.get())))
    {
        throw Error(L"the system's XML reader does not take " + path);
    }
    return TreeBuilder(*reader, path).Build();
}

XmlElement ReadXml(std::wstring const& path)
{
    return ParseXml(ReadBytes(path), path);
}

} // namespace sim
