#pragma once
#include "utils/UniqueHandle.h"

#include <optional>
#include <string>
#include <utility>
#include <windows.h>

namespace explore::faults
{

// Texts through a pipe between processes, each ended by a byte that none of them holds.
class TextReader
{
  public:
    explicit TextReader(HANDLE pipe) : m_pipe(pipe) {}

    // Nothing when the other end is gone.
    std::optional<std::string> Next()
    {
        for (;;)
        {
            if (auto const end = m_buffer.find(terminator); end != std::string::npos)
            {
                auto text = m_buffer.substr(0, end);
                m_buffer.erase(0, end + 1);
                return text;
            }
            char bytes[4096];
            DWORD read = 0;
            if (!ReadFile(m_pipe, bytes, sizeof bytes, &read, nullptr) || read == 0)
            {
                return std::nullopt;
            }
            m_buffer.append(bytes, read);
        }
    }

    static constexpr char terminator = '\x1E';

  private:
    HANDLE m_pipe;
    std::string m_buffer;
};

// False when the other end is gone.
inline bool WriteText(HANDLE pipe, std::string text)
{
    text += TextReader::terminator;
    DWORD written = 0;
    return WriteFile(pipe, text.data(), static_cast<DWORD>(text.size()), &written, nullptr) != 0;
}

} // namespace explore::faults
