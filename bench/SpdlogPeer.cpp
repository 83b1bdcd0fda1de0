#include "bench/SpdlogPeer.h"

#include <spdlog/logger.h>
#include <spdlog/sinks/basic_file_sink.h>

namespace bench
{

struct SpdlogPeer::Implementation
{
    explicit Implementation(std::string const& path)
        : logger("ZEB", std::make_shared<spdlog::sinks::basic_file_sink_mt>(path))
    {
        logger.set_pattern("%D %T:%e | [%l] |  | ZEB | ZEB | %n |  | ZEB | %t | %v");
        logger.flush_on(spdlog::level::trace);
    }

    spdlog::logger logger;
};

SpdlogPeer::SpdlogPeer(std::string const& path) : m_implementation(new Implementation(path)) {}

SpdlogPeer::~SpdlogPeer()
{
    delete m_implementation;
}

void SpdlogPeer::Log(std::string const& message)
{
    m_implementation->logger.info(message);
}

} // namespace bench
