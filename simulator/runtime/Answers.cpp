#include "simulator/runtime/Answers.h"

#include "simulator/model/Text.h"
#include "simulator/runtime/Runtime.h"

#include <windows.h>

namespace sim
{

Message Answered(Message answer)
{
    if (answer.front() == L"error")
    {
        throw winrt::hresult_error(E_FAIL, winrt::hstring(WordOf(answer, 1)));
    }
    return answer;
}

std::int32_t NumberIn(Message const& answer)
{
    auto const result = ParseNumber(WordOf(answer, 1));
    return result ? static_cast<std::int32_t>(*result) : E_UNEXPECTED;
}

std::wstring WordOf(Message const& answer, std::size_t position)
{
    return position < answer.size() ? answer[position] : std::wstring();
}

Message AskForResult(Message const& request)
{
    auto answer = Answered(CurrentHost().Ask(request));
    winrt::check_hresult(NumberIn(answer));
    return answer;
}

} // namespace sim
