#pragma once

/// Takes a device of the display server away from its programs and gives it back, as when it is
/// unplugged and plugged in again. Each call returns when the server has done it.
namespace DeviceSwitch
{

/// By its name in the server's configuration.
void unplug(const char *device);
void plugIn(const char *device);

} // namespace DeviceSwitch
