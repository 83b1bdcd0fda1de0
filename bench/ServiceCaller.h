#pragma once
#include "simulator/base/Handle.h"

#include <winrt/Windows.ApplicationModel.AppService.h>
#include <winrt/Windows.Foundation.Collections.h>

namespace bench
{

// The desktop helper's end of a connection, in this process.
class ServiceCaller
{
  public:
    // Connects. Ends the program when that does not work.
    ServiceCaller();
    ServiceCaller(ServiceCaller const&) = delete;
    ServiceCaller& operator=(ServiceCaller const&) = delete;
    ~ServiceCaller() { m_connection.Close(); }

    // The microseconds from a request "GetChannelUri" until its message is here. Returns when the request is completed,
    // too. Ends the program when it is not answered as it should.
    double RoundTrip() const;

  private:
    using ValueSet = winrt::Windows::Foundation::Collections::ValueSet;

    using Connection = winrt::Windows::ApplicationModel::AppService::AppServiceConnection;

    static Connection NewConnection();

    Connection m_connection = NewConnection();
    ValueSet m_request;
    sim::Handle m_arrived{CreateEventW(nullptr, FALSE, FALSE, nullptr)};
};

} // namespace bench
