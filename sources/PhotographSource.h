#pragma once

#include <QDir>
#include <QObject>
#include <QStringList>
#include <QTimer>

class ICaptureCB;
class MainWindow;

/// A folder of pictures as a source: shows one at a time, steps through them and plays them as a
/// slideshow. Pictures are loaded and handed over on the GUI thread; a child of the main window.
class PhotographSource : public QObject
{
    Q_OBJECT

public:
    PhotographSource(ICaptureCB *callback, MainWindow *window);

    /// Opens `dir` and shows `fileName`, one of its pictures. False, with nothing changed, when
    /// that is not a picture of the folder.
    bool setDirectory(QDir dir, QString fileName);
    [[nodiscard]] int photographCount() const;
    /// Milliseconds between two pictures of the slideshow, from the next play() on.
    void setPlayInterval(int ms);
    [[nodiscard]] int playInterval() const;
    /// Whether the photograph that was delivered last could be read.
    [[nodiscard]] bool readable() const;
    /// Whether the slideshow runs.
    [[nodiscard]] bool playing() const;
    /// Full paths, in the order shown.
    [[nodiscard]] QStringList fileNameList() const;

public slots:
    /// Shows picture `id`; nothing happens outside the list. A file that cannot be read is
    /// delivered as a null picture.
    void selectPhotograph(int id);
    void pauseCapture();
    /// Reads the folder anew and returns to the picture that it was opened with.
    void resumeCapture();
    void play();
    void stop();
    void previous();
    void next();

signals:
    /// Picture `id`, counted from 0, has been delivered.
    void photographChanged(int id);
    /// The slideshow was stopped by stop().
    void playDone();

private slots:
    void nextPhotograph();

private:
    int m_playIntervalMs = 1000;
    int m_current = 0;
    QTimer m_slideshow;
    QStringList m_fileNames;
    QDir m_dir;
    bool m_hasDir = false;
    bool m_readable = false;
    QString m_openedFileName;
    ICaptureCB *m_callback;
    MainWindow *m_window;
};
