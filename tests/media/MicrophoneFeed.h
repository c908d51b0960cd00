#pragma once

#include <QString>
#include <QtGlobal>

#include <atomic>
#include <thread>

/// Speaks into the emulated microphone in real time: silence with a clap of five milliseconds at
/// every whole period.
class MicrophoneFeed
{
public:
    /// Sample 0 is spoken at `startUs` of captureMicroseconds(); the microphone's own clock runs
    /// fast by `partsPerMillion`. The first clap comes after one period.
    MicrophoneFeed(const QString &pipe, qint64 startUs, qint64 periodUs, int partsPerMillion);
    ~MicrophoneFeed();
    MicrophoneFeed(const MicrophoneFeed &) = delete;
    MicrophoneFeed &operator=(const MicrophoneFeed &) = delete;

private:
    void run();

    const int m_pipe;
    const qint64 m_startUs;
    const qint64 m_periodUs;
    const double m_rate;
    std::atomic<bool> m_stopping{false};
    std::thread m_thread;
};
