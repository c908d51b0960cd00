#include "tests/canvas/GoldenPicture.h"

#include <QDir>

namespace
{

const char MISMATCH_FOLDER[] = "golden-mismatch";

int differingPixels(const QImage &a, const QImage &b)
{
    int count = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x)
            count += a.pixel(x, y) != b.pixel(x, y) ? 1 : 0;
    }
    return count;
}

} // namespace

QString GoldenPicture::difference(const QImage &actual, const QString &name)
{
    const QDir golden(QStringLiteral(TEST_SOURCE_DIR "/golden"));
    const QString path = golden.filePath(name + ".png");
    // The format in which a picture comes back from its file.
    const QImage shown = actual.convertToFormat(QImage::Format_ARGB32);
    if (qEnvironmentVariableIsSet("UPDATE_GOLDEN"))
        return golden.mkpath(".") && shown.save(path) ? QString() : "cannot write " + path;

    const QImage expected = QImage(path).convertToFormat(QImage::Format_ARGB32);
    QString difference;
    if (expected.isNull())
        difference = "no golden picture " + path;
    else if (expected.size() != shown.size())
        difference = name + " has another size";
    else if (shown != expected)
        difference = QStringLiteral("%1 differs in %2 pixels")
                         .arg(name)
                         .arg(differingPixels(shown, expected));
    if (difference.isEmpty())
        return {};

    QDir().mkpath(MISMATCH_FOLDER);
    const QDir mismatch(MISMATCH_FOLDER);
    (void)shown.save(mismatch.filePath(name + ".actual.png"));
    (void)expected.save(mismatch.filePath(name + ".expected.png"));
    return difference + ", see " + mismatch.absolutePath();
}
