#pragma once

#include <QString>

/// While it lives, nothing more is read from the files of a folder, as from a stick that was
/// pulled: reading fails. It stands between the program and the C library: a test links
/// PulledDisk.cpp. One at a time.
class PulledDisk
{
public:
    explicit PulledDisk(const QString &folder);
    ~PulledDisk();
    PulledDisk(const PulledDisk &) = delete;
    PulledDisk &operator=(const PulledDisk &) = delete;
};
