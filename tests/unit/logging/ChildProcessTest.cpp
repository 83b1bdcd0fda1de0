#include "tests/support/ChildProcess.h"

#include <windows.h>

using namespace test;

TEST(ChildProcess, ASignalThatComesIsAwaited)
{
    zant::UniqueHandle const ready(CreateEventW(nullptr, TRUE, FALSE, L"ChildProcessTest-ready"));
    ChildProcess const holder(L"logging_writer.exe", L"hold ChildProcessTest ChildProcessTest-ready");
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
