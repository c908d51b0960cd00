#pragma once

#include "canvas/ImageCanvas.h"
#include "canvas/OSDProcessor.h"
#include "sources/LiveSource.h"
#include "sources/camera/CameraParameters.h"
#include "tests/fakes/FakeMainWindow.h"

#include <QtTest>

#include <QFont>
#include <QHash>
#include <QPainter>

#include <cstring>
#include <memory>

/// A camera that answers its parameters from a table.
class AnsweringCamera : public LiveSource
{
public:
    AnsweringCamera()
        : LiveSource(nullptr, {640, 480}, {640, 480}, nullptr)
    {
    }

    bool running() const override { return isRunning; }
    int ksPropSet(unsigned long property, void *data, unsigned long length) override
    {
        if (property == CameraParameter::ID_SELECTOR)
            std::memcpy(&m_selected, data, length);
        return static_cast<int>(length);
    }
    int ksPropGet(unsigned long, void *data, unsigned long length) override
    {
        const unsigned long value = answers.value(m_selected);
        std::memcpy(data, &value, length);
        return static_cast<int>(length);
    }

    void setBrightness(unsigned long value, unsigned long minimum, unsigned long maximum)
    {
        answers[CameraParameter::BRIGHTNESS] = value;
        answers[CameraParameter::BRIGHTNESS_MIN] = minimum;
        answers[CameraParameter::BRIGHTNESS_MAX] = maximum;
    }
    void setZoom(unsigned long lensPercent, unsigned long thousandths)
    {
        answers[CameraParameter::OPTICAL_ZOOM_PERCENT] = lensPercent;
        answers[CameraParameter::DIGITAL_ZOOM] = thousandths;
        answers[CameraParameter::SECOND_ZOOM] = 1000;
    }

    bool isRunning = true;
    QHash<unsigned long, unsigned long> answers;

private:
    unsigned long m_selected = 0;
};

/// Indications over a canvas, their camera, and the clock that they see.
class OsdTest : public QObject
{
    Q_OBJECT

protected:
    static constexpr QSize WIDGET{480, 160};
    static constexpr QColor DARK{0x38, 0x38, 0x38};

    /// The canvas's size, in halves of white and near black: indications must read on both.
    [[nodiscard]] QImage ground() const
    {
        QImage picture(m_canvas->size(), QImage::Format_RGB32);
        picture.fill(Qt::white);
        QPainter painter(&picture);
        painter.fillRect(picture.width() / 2, 0, picture.width(), picture.height(), DARK);
        return picture;
    }

    static void paintOver(OSDProcessor &osd, QImage &picture)
    {
        QPainter painter(&picture);
        painter.fillRect(0, 0, picture.width() / 2, picture.height(), Qt::white);
        painter.fillRect(picture.width() / 2, 0, picture.width(), picture.height(), DARK);
        osd.postPaint(&painter);
    }

    [[nodiscard]] QImage painted() const
    {
        QImage picture = ground();
        paintOver(*m_osd, picture);
        return picture;
    }

    void showPicture(QSize size)
    {
        QImage picture(size, QImage::Format_RGB888);
        picture.fill(Qt::white);
        m_canvas->imageCaptured(picture);
    }

    void call(int which)
    {
        switch (which) {
        case 0:
            return m_osd->osdMask();
        case 1:
            return m_osd->osdEffect();
        case 2:
            return m_osd->osdBrightness();
        case 3:
            return m_osd->osdZoomIn();
        case 4:
            return m_osd->osdZoomOut();
        case 5:
            return m_osd->osdRotate();
        default:
            return m_osd->osdAutoFocus();
        }
    }

    qint64 m_nowMs = 0;
    std::unique_ptr<MainWindow> m_window;
    std::unique_ptr<AnsweringCamera> m_camera;
    std::unique_ptr<ImageCanvas> m_canvas;
    std::unique_ptr<OSDProcessor> m_osd;

private slots:
    void initTestCase()
    {
        // The zoom factor is written in the application's font, which platforms choose freely.
        QApplication::setFont(QFont("Arial", 10));
    }

    void init()
    {
        m_nowMs = 5000;
        m_camera = std::make_unique<AnsweringCamera>();
        m_canvas = std::make_unique<ImageCanvas>();
        m_canvas->resize(WIDGET);
        m_window = std::make_unique<MainWindow>();
        m_window->camera = m_camera.get();
        m_osd = std::make_unique<OSDProcessor>(m_window.get(), m_canvas.get());
        m_osd->setClock([this] { return m_nowMs; });
    }

    void cleanup()
    {
        m_osd.reset();
        m_window.reset();
        m_canvas.reset();
        m_camera.reset();
    }
};
