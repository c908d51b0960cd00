#pragma once

#include <QImage>
#include <QString>

/// Compares pictures with the ones kept under golden/ beside the tests. A picture that differs is
/// left beside a copy of the expected one in golden-mismatch/ of the folder that the test runs in.
/// With UPDATE_GOLDEN set in the environment the kept ones are written again; look at them.
namespace GoldenPicture
{

/// Empty when the picture is the golden one pixel by pixel, else what differs.
[[nodiscard]] QString difference(const QImage &actual, const QString &name);

} // namespace GoldenPicture

#define COMPARE_GOLDEN(actual, name)                                                               \
    do {                                                                                           \
        const QString goldenDifference = GoldenPicture::difference(actual, name);                  \
        QVERIFY2(goldenDifference.isEmpty(), qPrintable(goldenDifference));                        \
    } while (false)
