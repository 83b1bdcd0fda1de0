#pragma once
#include "simulator/base/Handle.h"
#include "simulator/broker/WindowsProcessStarter.h"

#include <functional>
#include <string>

namespace bench
{

// A process that writes lines when it is told to: this program again.
class Writer
{
  public:
    // starter: must outlive this, and ends the process in the end. name: of this writer alone; arguments: those with
    // which the program becomes the writer, name included. Returns when it is ready. Throws sim::Error.
    Writer(sim::WindowsProcessStarter& starter, std::wstring const& name, std::wstring const& arguments);

    // Lets it write so many lines; signals Done when they are written.
    void Start(int lines);
    HANDLE Done() const { return m_done.Get(); }

    // Microseconds that the slowest line of all took until now.
    double SlowestLine() const;

    // The writer's own side: writes whenever it is told to, and never returns.
    [[noreturn]] static void Serve(std::wstring const& name, std::function<void()> const& writeLine);

  private:
    struct Work
    {
        int lines;
        double slowest; // microseconds
    };

    explicit Writer(std::wstring const& name);

    sim::Handle m_go;
    sim::Handle m_done;
    sim::Handle m_memory;
    Work* m_work; // unmapped when the process ends
};

} // namespace bench
