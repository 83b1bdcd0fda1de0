"""The names that the executable's code has in it and that the manifest must therefore use, to the letter."""

# The application object; the platform finds nothing by this name but the entry point.
APPLICATION = "VelmoNotificationClient.App"

# The classes for which DllGetActivationFactory has a factory.
CLASSES = (
    "VelmoNotificationClient.MainPage",
    "VelmoNotificationClient.VelmoNotificationClient_uwp_XamlTypeInfo.XamlMetaDataProvider",
)

# What it starts the desktop component with.
PARAMETER_GROUPS = ("LaunchHOV", "CURIUpdated", "NotificationReceived")

# Its version resource has under this name the app service that it was built for, and the desktop helper with it.
APP_SERVICE = "AppService"
