#pragma once
#include <atomic>
#include <functional>
#include <utility>

namespace test
{

// A function of the system that tests replace temporarily. The program is linked with --wrap=__imp_X: its calls then
// use the variable __wrap___imp_X, which the program defines with WRAP, instead of the import.
//
// Without a replacement a call reaches the system. While an object of the class exists, its function is called instead;
// its first argument is what it replaces, the system's function or an earlier replacement. Create and destroy
// replacements only while no other thread calls.
template <auto* Import>
class WrappedCall;

template <typename Result, typename... Arguments, Result (**Import)(Arguments...)>
class WrappedCall<Import>
{
  public:
    // The function that a replacement replaces.
    class Next
    {
      public:
        explicit Next(WrappedCall const* replacement) : m_replacement(replacement) {}

        Result operator()(Arguments... arguments) const
        {
            return m_replacement != nullptr ? m_replacement->m_function(Next(m_replacement->m_previous), arguments...)
                                            : (*Import)(arguments...);
        }

      private:
        WrappedCall const* m_replacement;
    };

    using Function = std::function<Result(Next, Arguments...)>;

    // Set when it is whole: the C++ library's calls of other threads may come meanwhile.
    explicit WrappedCall(Function function) : m_function(std::move(function)), m_previous(s_latest) { s_latest = this; }

    WrappedCall(WrappedCall const&) = delete;
    WrappedCall& operator=(WrappedCall const&) = delete;

    ~WrappedCall() { s_latest = m_previous; }

    // The system's function itself.
    static Result Original(Arguments... arguments) { return (*Import)(arguments...); }

    static Result Entry(Arguments... arguments) { return Next(s_latest)(arguments...); }

  private:
    static inline std::atomic<WrappedCall const*> s_latest = nullptr;

    Function m_function;
    WrappedCall const* m_previous;
};

} // namespace test

// For a header, in namespace test: Call replaces the imported Function.
#define REPLACEABLE(Call, Function) REPLACEABLE_AS(Call, Function, decltype(&Function))

// The same for a function pointer of another type.
#define REPLACEABLE_AS(Call, Function, Type)                                                                           \
    extern "C" Type __real___imp_##Function;                                                                           \
    using Call = WrappedCall<&__real___imp_##Function>

// For one source of a program, outside namespaces: calls of Function go through Call.
#define WRAP(Call, Function)                                                                                           \
    extern "C" decltype(test::__real___imp_##Function) __wrap___imp_##Function;                                        \
    decltype(test::__real___imp_##Function) __wrap___imp_##Function = &test::Call::Entry
