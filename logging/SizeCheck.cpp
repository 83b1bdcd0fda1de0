#include "logging/DatedName.h"
#include "logging/LogFile.h"
#include "logging/LogTargetDefault.h"
#include "logging/Rotation.h"
#include "logging/RotationLimit.h"

// The target's care for its file, all of it under the mutex.
namespace zant
{

// A process that could not complete the unfinished line would be the only one to know of it: the next line, which may
// be another one's, would continue it. False when it can be neither completed nor taken back.
bool LogTargetDefault::MendEnd(FileState const& state) noexcept
{
    return CompleteEnd(file.Get(), state) || TakeBackLastLine(file.Get(), filePath, wideOutput);
}

// The previous owner of the mutex may have ended in the middle of a line.
void LogTargetDefault::CompleteLastLine()
{
    if (auto const state = StateOfFile(filePath, wideOutput); state && !MendEnd(*state))
    {
        lastCheck = 0; // the next line checks again
    }
}

void LogTargetDefault::CheckSizeWhenDue()
{
    constexpr std::int64_t secondsBetweenChecks = 900;
    if (lastLine - lastCheck >= secondsBetweenChecks && CheckSize())
    {
        lastCheck = lastLine;
    }
}

// False when the next line must repeat the check.
bool LogTargetDefault::CheckSize()
{
    auto const keepsCopies = KeepsCopies(filePath);
    auto const state = StateOfFile(filePath, wideOutput);
    auto canGoOn = state.has_value();
    if (state && state->size >= RotationLimit(threshold))
    {
        canGoOn = Rotate(keepsCopies);
    }
    else if (!file) // an earlier reopening failed
    {
        canGoOn = OpenFile(file);
    }
    if (state && !MendEnd(*state))
    {
        lastCheck = 0; // the next line checks again
        return false;
    }
    return canGoOn;
}

// False when the log cannot be reopened.
bool LogTargetDefault::Rotate(bool keepsCopies)
{
    auto const now = LocalNow();
    headerPending = true;
    file.Reset();
    MoveContentToCopy(filePath, now);
    auto const reopened = OpenFile(file);
    if (!keepsCopies)
    {
        DeleteOldCopies(filePath, now);
    }
    return reopened;
}

} // namespace zant
