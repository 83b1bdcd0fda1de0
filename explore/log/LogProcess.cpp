#include "explore/log/LogProcess.h"

#include "explore/harness/ProcessMemory.h"
#include "logging/ApplicationLogFile.h"
#include "logging/LogTargetDefault.h"
#include "logging/LogTargetRegistry.h"

namespace explore
{

void LogProcess::Start()
{
    auto* const target = new zant::LogTargetDefault;
    target->storedHeader = {.title = L"header"}; // one line shows as much as eight
    m_target = target;
    Enter();
    target->ChooseLevel();
    zant::UseApplicationLogFile();
    zant::LogTargetRegistry registry;
    m_isRegistered = zant::RegisterDefaultTarget(registry);
}

void LogProcess::Line()
{
    auto const message = m_name + std::to_wstring(++m_lineCount) + L" says something";
    {
        AsSystem const memory;
        m_line = m_lines.size();
        m_lines.push_back({message});
    }
    if (m_isRegistered)
    {
        m_target->Log(zant::LogLevel::Info, L"", L"ZEB", L"ZEB", L"", L"", L"ZEB", message.c_str(), nullptr, 0, true);
    }
    m_lines[*m_line].isAcknowledged = true;
    m_line.reset();
}

void LogProcess::MakeCheckDue() const
{
    m_target->lastCheck = 0;
}

void LogProcess::Close() const
{
    m_target->Close();
}

void LogProcess::Enter() const
{
    zant::g_defaultLogTarget = m_target;
}

bool LogProcess::IsSilent() const
{
    return !m_isRegistered || !m_target->useLock;
}

void LogProcess::OnCut()
{
    if (m_line)
    {
        m_lines[*m_line].isWithoutRoom = true;
    }
}

} // namespace explore
