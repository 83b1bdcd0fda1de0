#include "service/SharedReference.h"
#include "service/NotificationAppService.h"
#include "simulator/runtime/Implements.h"

#include <functional>
#include <gtest/gtest.h>
#include <optional>
#include <winrt/Windows.Foundation.h>

using VelmoNotificationClient::NotificationAppService;
using VelmoNotificationClient::SharedReference;
using winrt::Windows::ApplicationModel::AppService::AppServiceConnection;
using winrt::Windows::ApplicationModel::AppService::IAppServiceConnection;
using winrt::Windows::ApplicationModel::Background::BackgroundTaskDeferral;
using winrt::Windows::ApplicationModel::Background::IBackgroundTaskDeferral;
using winrt::Windows::Foundation::IClosable;

namespace
{

struct Closable : winrt::implements<Closable, IClosable>
{
    void Close() const noexcept {}
};

TEST(SharedReference, IsNotReleasedWhenItIsDestroyedSinceHandlersMayStillUseIt)
{
    IClosable object = winrt::make<Closable>();
    auto const weak = winrt::make_weak(object);
    {
        std::optional<SharedReference<IClosable>> field(std::in_place);
        field->Set(object);
    }
    object = nullptr;
    EXPECT_TRUE(weak.get());
}

TEST(SharedReference, IsReleasedWhenItIsReplaced)
{
    IClosable object = winrt::make<Closable>();
    auto const weak = winrt::make_weak(object);
    SharedReference<IClosable> field;
    field.Set(object);
    object = nullptr;
    EXPECT_TRUE(weak.get());
    field.Set(nullptr);
    EXPECT_FALSE(weak.get());
}

TEST(SharedReference, IsClearedOfWhatItHoldsAlone)
{
    auto const held = winrt::make<Closable>();
    SharedReference<IClosable> field;
    field.Clear(held);
    EXPECT_EQ(field.Get(), nullptr);
    field.Set(held);
    field.Clear(winrt::make<Closable>());
    EXPECT_EQ(field.Get(), held);
    field.Clear(held);
    EXPECT_EQ(field.Get(), nullptr);
}

// The platform's, which do that when they are completed or closed.

struct Deferral : winrt::implements<Deferral, IBackgroundTaskDeferral>
{
    using class_type = BackgroundTaskDeferral;

    explicit Deferral(std::function<void()> onComplete = [] {}) : m_onComplete(std::move(onComplete)) {}

    void Complete() const { m_onComplete(); }

  private:
    std::function<void()> m_onComplete;
};

struct Connection : sim::Implements<Connection, IAppServiceConnection, IClosable>
{
    using class_type = AppServiceConnection;

    explicit Connection(std::function<void()> onClose = [] {}) : m_onClose(std::move(onClose)) {}

    void Close() const { m_onClose(); }

  private:
    std::function<void()> m_onClose;
};

// A helper that connects again while the end of its earlier connection is being handled: between its completion or
// closing and the clearing of the field.
class SharedReferenceReplacedAtItsEnd : public testing::Test
{
  protected:
    SharedReferenceReplacedAtItsEnd()
    {
        NotificationAppService::serviceDeferral.Set(
            winrt::make<Deferral>([this] { NotificationAppService::serviceDeferral.Set(newerDeferral); }));
        NotificationAppService::appServiceConnection.Set(
            winrt::make<Connection>([this] { NotificationAppService::appServiceConnection.Set(newerConnection); }));
    }

    ~SharedReferenceReplacedAtItsEnd() override
    {
        NotificationAppService::appServiceConnection.Set(nullptr);
        NotificationAppService::serviceDeferral.Set(nullptr);
    }

    void ExpectTheNewer() const
    {
        EXPECT_EQ(NotificationAppService::serviceDeferral.Get(), newerDeferral);
        EXPECT_EQ(NotificationAppService::appServiceConnection.Get(), newerConnection);
    }

    BackgroundTaskDeferral newerDeferral = winrt::make<Deferral>();
    AppServiceConnection newerConnection = winrt::make<Connection>();
};

TEST_F(SharedReferenceReplacedAtItsEnd, StaysWhenTheTaskOfTheOldOneIsCanceled)
{
    NotificationAppService::OnTaskCanceled(nullptr, {});
    ExpectTheNewer();
}

TEST_F(SharedReferenceReplacedAtItsEnd, StaysWhenTheOldOneCloses)
{
    NotificationAppService::OnServiceClosed(nullptr, nullptr);
    ExpectTheNewer();
}

} // namespace
