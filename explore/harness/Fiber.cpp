#include "explore/harness/Fiber.h"

#include "explore/harness/ProcessMemory.h"

#include <new>
#include <vector>
#include <windows.h>

namespace explore
{

// A stack is used again by the next fiber: to make one takes as long as hundreds of calls.
struct Fiber::Stack
{
    std::function<void()> body = nullptr; // null: it waits for one
    bool isLeft = false;                  // the body is not to go on
    void* fiber = nullptr;
    CONTEXT start = {}; // where it waits for a body

    static void CALLBACK Entry(void* stack);
};

namespace
{

template <typename Stack>
std::vector<Stack*>& FreeStacks()
{
    static std::vector<Stack*> stacks;
    return stacks;
}

// The thread, as the fiber that runs the others.
void* Runner()
{
    static void* const runner = IsThreadAFiber() ? GetCurrentFiber() : ConvertThreadToFiber(nullptr);
    return runner;
}

} // namespace

void CALLBACK Fiber::Stack::Entry(void* stack)
{
    auto& self = *static_cast<Stack*>(stack);
    for (;;)
    {
        RtlCaptureContext(&self.start); // returns a second time where a body is left
        if (!self.isLeft)
        {
            self.body();
        }
        self.body = nullptr;
        SwitchToFiber(Runner());
    }
}

Fiber::Stack* Fiber::TakeStack()
{
    auto& stacks = FreeStacks<Stack>();
    if (!stacks.empty())
    {
        auto* const stack = stacks.back();
        stacks.pop_back();
        return stack;
    }
    constexpr SIZE_T committed = 65'536;
    constexpr SIZE_T reserved = 262'144;
    auto stack = std::make_unique<Stack>();
    Runner();
    stack->fiber = CreateFiberEx(committed, reserved, 0, Stack::Entry, stack.get());
    if (stack->fiber == nullptr)
    {
        throw std::bad_alloc();
    }
    return stack.release();
}

Fiber::Fiber(std::function<void()> body) : m_stack(TakeStack())
{
    m_stack->body = std::move(body);
}

Fiber::~Fiber()
{
    if (!HasReturned())
    {
        m_stack->isLeft = true;
        SwitchToFiber(m_stack->fiber);
        m_stack->isLeft = false;
    }
    FreeStacks<Stack>().push_back(m_stack);
}

void Fiber::Run()
{
    AsProcess const memory;
    SwitchToFiber(m_stack->fiber);
}

bool Fiber::HasReturned() const noexcept
{
    return m_stack->body == nullptr;
}

void Fiber::Pause()
{
    auto& stack = *static_cast<Stack*>(GetFiberData());
    SwitchToFiber(Runner());
    if (stack.isLeft)
    {
        RtlRestoreContext(&stack.start, nullptr);
    }
}

} // namespace explore
