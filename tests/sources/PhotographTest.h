#pragma once

#include "sources/ICaptureCB.h"
#include "sources/PhotographSource.h"
#include "tests/fakes/FakeMainWindow.h"

#include <QtTest>

#include <QDir>
#include <QImage>
#include <QTemporaryDir>

#include <memory>

class PhotographReceiver : public ICaptureCB
{
public:
    void imageCaptured(const QImage &image) override { pictures.append(image); }
    void imageCaptured(void *, int, int, bool, bool) override { QFAIL("photographs are images"); }
    void startAutoRefresh() override { calls.append("start"); }
    void stopAutoRefresh() override { calls.append("stop"); }

    QVector<QImage> pictures;
    QStringList calls;
};

/// A source of photographs with an empty folder of its own for each test.
class PhotographTest : public QObject
{
    Q_OBJECT

protected:
    [[nodiscard]] QDir dir() const { return QDir(m_folder->path()); }

    /// Writes pictures whose widths are 1, 2, 3, ... so that one can be told from another.
    void fill(const QStringList &names)
    {
        for (int i = 0; i < names.size(); ++i) {
            QImage image(i + 1, 1, QImage::Format_RGB32);
            image.fill(Qt::red);
            QVERIFY(image.save(dir().filePath(names[i])));
        }
    }

    [[nodiscard]] int shownWidth() const { return m_receiver.pictures.last().width(); }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<MainWindow> m_window;
    PhotographReceiver m_receiver;
    PhotographSource *m_source = nullptr;

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_receiver = PhotographReceiver();
        m_window = std::make_unique<MainWindow>();
        m_source = new PhotographSource(&m_receiver, m_window.get());
    }
};
