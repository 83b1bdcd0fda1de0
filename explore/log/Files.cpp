#include "explore/log/Files.h"

#include "explore/harness/Hash.h"

#include <algorithm>

namespace explore
{

namespace
{

// Names are compared in lower case; a trailing backslash does not count.
std::wstring KeyOf(std::wstring_view path)
{
    std::wstring key(path.substr(0, path.find_last_not_of(L'\\') + 1));
    std::ranges::transform(key, key.begin(), [](wchar_t character) {
        return character >= L'A' && character <= L'Z' ? static_cast<wchar_t>(character + (L'a' - L'A')) : character;
    });
    return key;
}

std::wstring_view FolderOf(std::wstring_view path)
{
    auto const end = path.rfind(L'\\');
    return end == path.npos ? std::wstring_view() : path.substr(0, end);
}

std::wstring_view NameOf(std::wstring_view path)
{
    return path.substr(path.rfind(L'\\') + 1);
}

bool IsFolder(File const& file)
{
    return (file.attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool IsLink(File const& file)
{
    return (file.attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

// What an opening with this access takes from others that do not share it.
DWORD SharedAccess(DWORD access)
{
    DWORD shared = 0;
    shared |= (access & GENERIC_READ) != 0 ? FILE_SHARE_READ : 0u;
    shared |= (access & GENERIC_WRITE) != 0 ? FILE_SHARE_WRITE : 0u;
    shared |= (access & DELETE) != 0 ? FILE_SHARE_DELETE : 0u;
    return shared;
}

bool MayShare(File const& file, DWORD access, DWORD share)
{
    return std::ranges::all_of(file.openings, [&](OpenFile const* other) {
        return (SharedAccess(access) & ~other->share) == 0 && (SharedAccess(other->access) & ~share) == 0;
    });
}

// Deleting and renaming open the file for that moment, sharing all.
bool MayDelete(File const& file)
{
    return MayShare(file, DELETE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE);
}

} // namespace

Files::Files()
{
    m_entries[L"c:"] = {L"C:", std::make_shared<File>(File{FILE_ATTRIBUTE_DIRECTORY})};
}

Files::Entry const* Files::EntryOf(std::wstring_view path) const
{
    auto const found = m_entries.find(KeyOf(path));
    return found != m_entries.end() ? &found->second : nullptr;
}

File const* Files::Find(std::wstring_view path) const
{
    auto const* const entry = EntryOf(path);
    return entry != nullptr ? entry->file.get() : nullptr;
}

// The error for a path at which there is nothing.
DWORD Files::Missing(std::wstring const& key) const
{
    auto const parent = m_entries.find(std::wstring(FolderOf(key)));
    return parent != m_entries.end() && IsFolder(*parent->second.file) ? ERROR_FILE_NOT_FOUND : ERROR_PATH_NOT_FOUND;
}

void Files::Tell(FileChange change, std::wstring const& key, File const& file) const
{
    if (onChange)
    {
        onChange(change, key, file);
    }
}

File& Files::Add(std::wstring_view path, std::shared_ptr<File> file)
{
    ++file->names;
    return *(m_entries[KeyOf(path)] = {std::wstring(NameOf(path)), std::move(file)}).file;
}

void Files::Remove(std::wstring const& key)
{
    auto const entry = m_entries.find(key);
    --entry->second.file->names;
    m_entries.erase(entry);
}

DWORD Files::Open(Request const& request, std::shared_ptr<OpenFile>& opened)
{
    auto const key = KeyOf(request.path);
    auto const found = m_entries.find(key);
    if (found == m_entries.end())
    {
        auto const error = Missing(key);
        auto const creates = request.disposition == CREATE_NEW || request.disposition == OPEN_ALWAYS;
        if (error != ERROR_FILE_NOT_FOUND || !creates)
        {
            return error;
        }
        Add(request.path, std::make_shared<File>());
    }
    else if (request.disposition == CREATE_NEW)
    {
        return ERROR_FILE_EXISTS;
    }
    auto const file = m_entries.find(key)->second.file;
    if (IsLink(*file) && (request.flags & FILE_FLAG_OPEN_REPARSE_POINT) == 0)
    {
        auto target = request;
        target.path = file->linkTarget;
        return Open(target, opened);
    }
    auto const changes = (request.access & (GENERIC_WRITE | DELETE)) != 0;
    if (IsFolder(*file) || file->isDeletedOnClose || (changes && (file->attributes & FILE_ATTRIBUTE_READONLY) != 0))
    {
        return ERROR_ACCESS_DENIED;
    }
    if (!MayShare(*file, request.access, request.share))
    {
        return ERROR_SHARING_VIOLATION;
    }
    if (request.disposition == OPEN_ALWAYS)
    {
        Tell(FileChange::Begin, key, *file);
    }
    if (request.disposition == TRUNCATE_EXISTING)
    {
        Tell(FileChange::Empty, key, *file);
        file->content.Resize(0);
    }
    opened = std::make_shared<OpenFile>(OpenFile{file, key, request.access, request.share});
    file->openings.push_back(opened.get());
    return ERROR_SUCCESS;
}

void Files::Close(OpenFile& opened)
{
    auto& file = *opened.file;
    std::erase(file.openings, &opened);
    if (file.openings.empty() && file.isDeletedOnClose)
    {
        Remove(opened.path);
        file.isDeletedOnClose = false;
    }
}

// What does not fit is left out; Windows writes either all or nothing, Linux what fits.
DWORD Files::Write(OpenFile& opened, std::string_view bytes, DWORD& written)
{
    auto& content = opened.file->content;
    auto const end = opened.position + bytes.size();
    auto const growth = end > content.Size() ? end - content.Size() : 0;
    auto const fitting = bytes.substr(0, bytes.size() - (growth > room ? growth - room : 0));
    if (fitting.size() != bytes.size())
    {
        Tell(FileChange::Cut, opened.path, *opened.file);
    }
    room -= room == unlimited ? 0 : std::min(growth, room);
    content.Write(opened.position, fitting);
    written = static_cast<DWORD>(fitting.size());
    return fitting.empty() && !bytes.empty() ? ERROR_DISK_FULL : ERROR_SUCCESS;
}

DWORD Files::DeleteOnClose(OpenFile& opened, bool isDeleted)
{
    if ((opened.access & DELETE) == 0)
    {
        return ERROR_ACCESS_DENIED;
    }
    opened.file->isDeletedOnClose = isDeleted;
    return ERROR_SUCCESS;
}

DWORD Files::CreateFolder(std::wstring_view path)
{
    auto const key = KeyOf(path);
    if (m_entries.contains(key))
    {
        return ERROR_ALREADY_EXISTS;
    }
    if (Missing(key) != ERROR_FILE_NOT_FOUND)
    {
        return ERROR_PATH_NOT_FOUND;
    }
    Add(path, std::make_shared<File>(File{FILE_ATTRIBUTE_DIRECTORY}));
    return ERROR_SUCCESS;
}

DWORD Files::Delete(std::wstring_view path)
{
    auto const key = KeyOf(path);
    auto const* const file = Find(path);
    if (file == nullptr)
    {
        return Missing(key);
    }
    if (IsFolder(*file) || file->isDeletedOnClose || (file->attributes & FILE_ATTRIBUTE_READONLY) != 0)
    {
        return ERROR_ACCESS_DENIED;
    }
    if (!MayDelete(*file))
    {
        return ERROR_SHARING_VIOLATION;
    }
    Tell(FileChange::Delete, key, *file);
    Remove(key);
    return ERROR_SUCCESS;
}

DWORD Files::Move(std::wstring_view from, std::wstring_view to)
{
    auto const* const entry = EntryOf(from);
    if (entry == nullptr)
    {
        return Missing(KeyOf(from));
    }
    if (!MayDelete(*entry->file))
    {
        return ERROR_SHARING_VIOLATION;
    }
    auto const target = KeyOf(to);
    if (m_entries.contains(target))
    {
        return ERROR_ALREADY_EXISTS;
    }
    if (Missing(target) != ERROR_FILE_NOT_FOUND)
    {
        return ERROR_PATH_NOT_FOUND;
    }
    auto const file = entry->file;
    Remove(KeyOf(from));
    Add(to, file);
    return ERROR_SUCCESS;
}

DWORD Files::Attributes(std::wstring_view path, DWORD& attributes) const
{
    auto const* const file = Find(path);
    if (file == nullptr)
    {
        return Missing(KeyOf(path));
    }
    attributes = file->attributes;
    return ERROR_SUCCESS;
}

DWORD Files::SetAttributes(std::wstring_view path, DWORD attributes)
{
    auto const* const entry = EntryOf(path);
    if (entry == nullptr)
    {
        return Missing(KeyOf(path));
    }
    auto const kept = entry->file->attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT);
    entry->file->attributes = kept | (attributes & ~DWORD{FILE_ATTRIBUTE_NORMAL});
    return ERROR_SUCCESS;
}

DWORD Files::AddHardLink(std::wstring_view path, std::wstring_view existing)
{
    auto const* const entry = EntryOf(existing);
    if (entry == nullptr)
    {
        return Missing(KeyOf(existing));
    }
    if (EntryOf(path) != nullptr)
    {
        return ERROR_ALREADY_EXISTS;
    }
    Add(path, entry->file);
    return ERROR_SUCCESS;
}

std::vector<std::wstring> Files::Matching(std::wstring_view pattern) const
{
    auto const isOpen = pattern.ends_with(L'*');
    auto const start = KeyOf(isOpen ? pattern.substr(0, pattern.size() - 1) : pattern);
    std::vector<std::wstring> names;
    for (auto entry = m_entries.lower_bound(start); entry != m_entries.end() && entry->first.starts_with(start);
         ++entry)
    {
        auto const isInFolder = entry->first.find(L'\\', start.rfind(L'\\') + 1) == std::wstring::npos;
        if (isInFolder && (isOpen || entry->first == start))
        {
            names.push_back(entry->second.name);
        }
    }
    return names;
}

File& Files::Put(std::wstring_view path, FileContent content)
{
    auto& file = Add(path, std::make_shared<File>());
    file.content = std::move(content);
    return file;
}

void Files::PutLink(std::wstring_view path, std::wstring_view target)
{
    auto& file = Put(path, {});
    file.attributes |= FILE_ATTRIBUTE_REPARSE_POINT;
    file.linkTarget = target;
}

std::uint64_t Files::StateHash() const
{
    Hash hash(room);
    for (auto const& [key, entry] : m_entries)
    {
        auto const& file = *entry.file;
        hash.Add(std::wstring_view(key));
        hash.Add(file.attributes + (std::uint64_t{file.names} << 32) + (file.isDeletedOnClose ? 1ull << 63 : 0));
        hash.Add(file.content.Size());
        hash.Add(file.content.Bytes());
        hash.Add(file.openings.size());
    }
    return hash.Value();
}

} // namespace explore
