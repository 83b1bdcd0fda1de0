#pragma once
#include "simulator/runtime/background/BackgroundTaskInstance.h"

#include <winrt/Windows.ApplicationModel.Activation.h>

namespace sim
{

// What OnBackgroundActivated gets.
struct BackgroundActivatedEventArgs
    : winrt::implements<BackgroundActivatedEventArgs, Activated::IBackgroundActivatedEventArgs>
{
    using class_type = Activated::BackgroundActivatedEventArgs;

    explicit BackgroundActivatedEventArgs(AppModel::Background::IBackgroundTaskInstance instance)
        : m_instance(std::move(instance))
    {
    }

    AppModel::Background::IBackgroundTaskInstance TaskInstance() const
    {
        return StruckByNull(L"BackgroundActivatedEventArgs.TaskInstance") ? nullptr : m_instance;
    }

  private:
    AppModel::Background::IBackgroundTaskInstance m_instance;
};

} // namespace sim
