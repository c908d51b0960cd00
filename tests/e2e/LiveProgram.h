#pragma once

#include "tests/Timeout.h"
#include "tests/e2e/ProgramUnderTest.h"

#include "tools/virtualcamera/SheetCounter.h"

#include <QDir>
#include <QDirIterator>
#include <QStringList>
#include <QtTest>

#include <optional>

/// What is seen of a program that shows the emulated camera, and what it has recorded.
namespace LiveProgram
{

/// The number of the frame on the screen; none when the picture is not seen.
inline std::optional<quint32> counterOnScreen()
{
    return SheetCounter::read(ProgramUnderTest::screenshot());
}

/// Waits for two frames.
inline bool pictureMoves()
{
    std::optional<quint32> first;
    return QTest::qWaitFor(
        [&first] {
            const std::optional<quint32> now = counterOnScreen();
            if (!first)
                first = now;
            return now && *now != *first;
        },
        TIMEOUT_MS);
}

/// The files of all movies in this test's home.
inline QStringList movies()
{
    QStringList files;
    for (QDirIterator found(QDir::homePath(), {"*.mov"}, QDir::Files, QDirIterator::Subdirectories);
         found.hasNext();)
        files.append(found.next());
    return files;
}

} // namespace LiveProgram
