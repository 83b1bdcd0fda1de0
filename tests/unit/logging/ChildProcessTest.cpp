#include "tests/support/ChildProcess.h"

#include <windows.h>

using namespace test;

TEST(ChildProcess, ASignalThatComesIsAwaited)
{
    auto const name = L"ChildProcessTest" + std::to_wstring(GetCurrentProcessId()); // the session sees it
    auto const readyName = name + L"-ready";
    zant::UniqueHandle const ready(CreateEventW(nullptr, TRUE, FALSE, readyName.c_str()));
    ChildProcess const holder(L"logging_writer.exe", L"hold " + name + L' ' + readyName);
    EXPECT_TRUE(holder.AwaitSignal(ready.Get()));
}

TEST(ChildProcess, AnEndWithoutTheSignalIsReportedWithTheCommandLine)
{
    zant::UniqueHandle const never(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    ChildProcess const process(L"logging_writer.exe", L"no such command");
    auto const result = process.AwaitSignal(never.Get());
    EXPECT_FALSE(result);
    std::string const message = result.message();
    EXPECT_TRUE(message.starts_with("ended without signalling: ")) << message;
    EXPECT_NE(message.find("logging_writer.exe\\\" no such command"), message.npos) << message;
}
