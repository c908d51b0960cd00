#pragma once

#include <QString>

/// While it lives, the chosen calls for that folder, or for what lies in it, do not return, as on a
/// share whose server has gone. No real file system does that on demand, so this class stands
/// between the program and the C library: a test links HangingFolder.cpp. One at a time.
class HangingFolder
{
public:
    enum Calls {
        Everything,
        /// Looking for a file and removing it too.
        EverythingAndRemoving,
        Opening,
        /// Its files are known, and nobody can read which there are.
        Listing,
        /// What is written is not brought to the disk.
        Syncing
    };

    explicit HangingFolder(const QString &path, Calls calls = Everything);
    /// The server is back: every call that waits goes on.
    ~HangingFolder();
    HangingFolder(const HangingFolder &) = delete;
    HangingFolder &operator=(const HangingFolder &) = delete;

    /// How many calls wait for the server.
    [[nodiscard]] int waiting() const;
};
