#pragma once
#include "simulator/base/Handle.h"

#include <string>

namespace bench
{

// The five bare calls that write a line into a file which processes share: the floor of a log line.
class BareLine
{
  public:
    // path: of a file that others may share, in the same way; message: what stands behind the line's fields.
    BareLine(std::wstring const& path, std::wstring const& message);

    void Write() const;

  private:
    std::wstring m_line;
    sim::Handle m_file;
    sim::Handle m_mutex;
};

} // namespace bench
