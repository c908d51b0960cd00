#pragma once

#include <QProcess>

/// The program recordprobe as a child.
class RecordProbe
{
public:
    explicit RecordProbe(const QStringList &arguments, const QString &preload = QString());
    ~RecordProbe();

    /// Waits until it has said a line that begins so; false when it ends before.
    bool waitFor(const QByteArray &beginning);
    /// `seconds`: how long it will take by itself.
    bool waitForEnd(int seconds = 0);
    /// SIGKILL.
    void kill();

    /// The lines said so far.
    QList<QByteArray> lines() const { return m_said.split('\n'); }
    /// The sentence of the failure that it told of; empty when there was none.
    QString failure() const;
    QProcess &process() { return m_process; }

private:
    QProcess m_process;
    QByteArray m_said;
};
