#pragma once

#include <QString>

/// The place of a movie among those that are written to a file of the same name, one after the
/// other in the order in which they were begun.
class FileTurn
{
public:
    /// Takes the last place of that name.
    explicit FileTurn(const QString &fileName);
    /// Leaves it, also one that was not waited for.
    ~FileTurn();
    FileTurn(const FileTurn &) = delete;
    FileTurn &operator=(const FileTurn &) = delete;

    /// Returns when all earlier ones of the name have left. Any thread.
    void wait() const;

private:
    const QString m_fileName;
};
