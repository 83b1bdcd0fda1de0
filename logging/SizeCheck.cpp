#include "logging/DatedName.h"
#include "logging/LogFile.h"
#include "logging/LogTargetDefault.h"
#include "logging/Rotation.h"
#include "logging/RotationLimit.h"

// The target's care for its file, all of it under the mutex.
namespace zant
{

// The previous owner of the mutex may have ended in the middle of a line.
void LogTargetDefault::CompleteLastLine()
{
    if (auto const state = StateOfFile(filePath, wideOutput); state && !CompleteEnd(file.Get(), *state))
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
    if (state && !CompleteEnd(file.Get(), *state))
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
