#pragma once
#include <functional>
#include <utility>

namespace test
{

// A function of the system that tests replace for a while. The program is linked with --wrap=__imp_X, so that its calls
// go through the variable __wrap___imp_X instead of the import; it defines that variable as &Call::Entry, where
//
//     using Call = WrappedCall<&__real___imp_X>;
//
// Without a replacement a call goes on to the system. While an object of the class lives, calls go to its function,
// which reaches the system by Call::Original (the plain name would come back to it). Replacements nest; make and end
// them while no other thread calls.
template <auto* Import> class WrappedCall;

template <typename Result, typename... Arguments, Result (**Import)(Arguments...)> class WrappedCall<Import>
{
  public:
    using Function = std::function<Result(Arguments...)>;

    explicit WrappedCall(Function replacement)
        : m_previous(std::exchange(Replacement(), std::move(replacement)))
    {
    }

    WrappedCall(WrappedCall const&) = delete;
    WrappedCall& operator=(WrappedCall const&) = delete;

    ~WrappedCall()
    {
        Replacement() = std::move(m_previous);
    }

    static Result Original(Arguments... arguments)
    {
        return (*Import)(arguments...);
    }

    static Result Entry(Arguments... arguments)
    {
        return Replacement() ? Replacement()(arguments...) : Original(arguments...);
    }

  private:
    static Function& Replacement()
    {
        // Never destroyed: the runtime still calls the system when the program ends.
        static auto* const replacement = new Function;
        return *replacement;
    }

    Function m_previous;
};

} // namespace test
