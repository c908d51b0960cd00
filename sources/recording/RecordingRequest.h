#pragma once

#include <QString>

/// A recording that the user has asked for, from the request to its end: the one place that knows
/// whether there is one. One thread.
class RecordingRequest
{
public:
    /// Takes the place of an earlier request, whose failures are not told any more.
    void open(const QString &fileName);
    /// The camera streams for it. Nothing happens without a request.
    void begin();
    void end();
    /// Nothing happens without a request.
    void setPaused(bool paused);

    /// From open() to end().
    [[nodiscard]] bool requested() const { return m_state != State::None; }
    /// From begin() to end().
    [[nodiscard]] bool begun() const { return m_state == State::Begun; }
    /// Not at the beginning, nor without a request.
    [[nodiscard]] bool paused() const { return m_paused; }
    [[nodiscard]] QString fileName() const { return m_fileName; }
    /// Counts the requests.
    [[nodiscard]] int number() const { return m_number; }

    /// Whether a failure of the recording with that number is still to be told to the user, who
    /// hears of one only; the answer counts as told. A recording may fail after its end too, when
    /// its file is completed.
    [[nodiscard]] bool takeFailure(int number);

private:
    enum class State { None, Requested, Begun };

    State m_state = State::None;
    bool m_paused = false;
    QString m_fileName;
    int m_number = 0;
    bool m_failureTold = true;
};
