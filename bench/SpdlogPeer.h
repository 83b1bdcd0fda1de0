#pragma once
#include <string>

namespace bench
{

// spdlog with its plain file sink, flushed at each line. It writes UTF-8 and takes no lock between processes.
class SpdlogPeer
{
  public:
    explicit SpdlogPeer(std::string const& path);
    SpdlogPeer(SpdlogPeer const&) = delete;
    SpdlogPeer& operator=(SpdlogPeer const&) = delete;
    ~SpdlogPeer();

    void Log(std::string const& message);

  private:
    struct Implementation;
    Implementation* m_implementation;
};

} // namespace bench
