#pragma once

#include "mainwindow/bars/ThumbnailButton.h"
#include "mainwindow/bars/ThumbnailWidget.h"
#include "resources/Skin.h"
#include "sources/ICaptureCB.h"
#include "sources/PhotographSource.h"
#include "widgets/HorizontalSlider.h"

#include <QtTest>

#include <QImage>
#include <QTemporaryDir>

#include <algorithm>
#include <memory>

class PictureCounter : public ICaptureCB
{
public:
    void imageCaptured(const QImage &) override { ++pictures; }
    void imageCaptured(void *, int, int, bool, bool) override {}
    void startAutoRefresh() override {}
    void stopAutoRefresh() override {}

    int pictures = 0;
};

/// The strip over a real source; the source's folder is handed over by refresh(), as the main
/// window does.
class ThumbnailTest : public QObject
{
    Q_OBJECT

protected:
    void resizeTo(int width) { m_strip->setFixedSize(width, 60); }

    /// Opens a folder of that many pictures, the first one chosen.
    void open(int count)
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QImage image(64, 48, QImage::Format_RGB32);
        image.fill(Qt::blue);
        for (int i = 0; i < count; ++i)
            QVERIFY(image.save(m_folder->filePath(QString("p%1.png").arg(i, 3, 10, QChar('0')))));
        QVERIFY(m_source->setDirectory(QDir(m_folder->path()), "p000.png"));
        m_strip->refresh();
    }

    /// In the order of the folder; raising a button changes its place among the children.
    [[nodiscard]] QList<ThumbnailButton *> buttons() const
    {
        QList<ThumbnailButton *> all = m_strip->findChildren<ThumbnailButton *>();
        std::sort(all.begin(), all.end(), [](ThumbnailButton *one, ThumbnailButton *other) {
            return one->toolTip() < other->toolTip();
        });
        return all;
    }

    [[nodiscard]] QList<ThumbnailButton *> shown() const
    {
        QList<ThumbnailButton *> result;
        for (ThumbnailButton *button : buttons()) {
            if (!button->isHidden())
                result.append(button);
        }
        return result;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    PictureCounter m_receiver;
    std::unique_ptr<PhotographSource> m_source;
    std::unique_ptr<QWidget> m_parent;
    HorizontalSlider *m_slider = nullptr;
    ThumbnailWidget *m_strip = nullptr;

private slots:
    void initTestCase() { initialiseSkin(); }

    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_receiver = PictureCounter();
        m_parent = std::make_unique<QWidget>();
        m_source = std::make_unique<PhotographSource>(&m_receiver, nullptr);
        m_slider = new HorizontalSlider(QImage(10, 6, QImage::Format_RGB32), m_parent.get());
        m_strip = new ThumbnailWidget(m_source.get(), m_slider, m_parent.get());
        m_parent->resize(2000, 200);
        m_parent->show();
        resizeTo(500);
    }

    void cleanup() { m_parent.reset(); }
};
