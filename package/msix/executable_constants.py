"""The names that the executable's code contains and that the manifest must therefore use to the letter."""

# The application object; the platform finds nothing by this name but the entry point.
APPLICATION = "VelmoNotificationClient.App"

# The classes for which DllGetActivationFactory has a factory.
CLASSES = (
    "VelmoNotificationClient.MainPage",
    "VelmoNotificationClient.VelmoNotificationClient_uwp_XamlTypeInfo.XamlMetaDataProvider",
)

# The parameter groups with which it starts the desktop component.
PARAMETER_GROUPS = ("LaunchHOV", "CURIUpdated", "NotificationReceived")

# Its version resource has under this name the app service that it was built for, and the desktop helper with it.
APP_SERVICE = "AppService"
