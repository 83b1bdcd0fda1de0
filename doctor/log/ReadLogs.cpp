#include "doctor/log/ReadLogs.h"

#include "doctor/log/InputFile.h"

namespace doctor
{

std::vector<std::string> ReadLogs(FoundLogs const& logs, BeginLog const& begin, TakeEntry const& take)
{
    auto unread = logs.unread;
    for (auto const& path : logs.files)
    {
        try
        {
            InputFile file(path);
            begin(path);
            ReadLog(file, take);
        }
        catch (ReadError const& error)
        {
            unread.emplace_back(error.what());
        }
    }
    return unread;
}

} // namespace doctor
