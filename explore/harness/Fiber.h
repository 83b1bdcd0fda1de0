#pragma once
#include <functional>
#include <memory>

namespace explore
{

// A function with a stack of its own, on the thread that made it.
class Fiber
{
  public:
    explicit Fiber(std::function<void()> body);
    Fiber(Fiber const&) = delete;
    Fiber& operator=(Fiber const&) = delete;
    // A function that has not returned is left where it stands: nothing is unwound.
    ~Fiber();

    // Runs the function until it pauses or returns. Not to be called after it has returned.
    void Run();

    bool HasReturned() const noexcept;

    // Called by the running function.
    static void Pause();

  private:
    struct Stack;

    static Stack* TakeStack();

    Stack* m_stack;
};

} // namespace explore
