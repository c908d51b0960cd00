#pragma once

#include "sources/photographs/FolderLister.h"
#include "sources/photographs/FolderWatch.h"
#include "sources/photographs/PictureProblem.h"
#include "sources/threads/PostedCalls.h"

#include <QDir>
#include <QObject>
#include <QStringList>
#include <QTimer>

#include <memory>

class ICaptureCB;
class MainWindow;
class PicturePreloader;

/// A folder of pictures as a source: shows one at a time, steps through them and plays them as a
/// slideshow. Pictures are handed over on the GUI thread; other threads read them, the neighbours
/// of the shown one ahead of time. A step of the slideshow waits for its picture without holding
/// the GUI thread. A picture that changes on the disk is delivered again, and one that is added to
/// the folder joins the list; one that is removed keeps its place. A child of the main window.
class PhotographSource : public QObject
{
    Q_OBJECT

public:
    PhotographSource(ICaptureCB *callback, MainWindow *window);
    ~PhotographSource() override;

    /// Opens `dir` and shows `fileName`, one of its pictures. False, with nothing changed but
    /// refusal(), when that is not a picture of the folder, or when its drive does not answer.
    bool setDirectory(QDir dir, QString fileName);
    [[nodiscard]] int photographCount() const;
    /// Milliseconds between two pictures of the slideshow, from the next play() on.
    void setPlayInterval(int ms);
    [[nodiscard]] int playInterval() const;
    /// Why the photograph that was delivered last is null.
    [[nodiscard]] PictureProblem problem() const { return m_problem; }
    /// Why the folder that was to be opened last was not: NoAnswer, Gone for a file that is not
    /// there, Unreadable for one that is there and no picture that may be read. None when it was.
    [[nodiscard]] PictureProblem refusal() const { return m_refusal; }
    /// The photograph shown last, counted from 0.
    [[nodiscard]] int current() const { return m_current; }
    /// Whether the slideshow runs.
    [[nodiscard]] bool playing() const;
    /// Full paths, in the order shown.
    [[nodiscard]] QStringList fileNameList() const;

public slots:
    /// Shows picture `id`; nothing happens outside the list. A file that cannot be read is
    /// delivered as a null picture.
    void selectPhotograph(int id);
    void pauseCapture();
    /// Reads the folder again and returns to the picture that it was opened with.
    void resumeCapture();
    void play();
    void stop();
    void previous();
    void next();

signals:
    /// Picture `id`, counted from 0, has been delivered.
    void photographChanged(int id);
    /// The list has grown or one of its files was written; the photograph shown last is `id` now.
    void folderChanged(int id);
    /// The slideshow was stopped by stop().
    void playDone();

private slots:
    void nextPhotograph();

private:
    [[nodiscard]] bool isOpen(const QDir &dir) const;
    void open(QDir dir, const QStringList &names);
    /// Hands the current picture over.
    void deliver();
    /// Starts reading the pictures that a step leads to, first the one in the direction of the last
    /// step.
    void prepareNeighbours(bool forward);
    void takeChange(const FolderWatch::Change &change);
    void takeLate(const QString &path);
    [[nodiscard]] QString pathOf(int id) const;

    int m_playIntervalMs = 1000;
    int m_current = 0;
    QTimer m_slideshow;
    QStringList m_fileNames;
    QDir m_dir;
    bool m_hasDir = false;
    /// The slideshow waits for its next picture, as its time has come before the picture.
    bool m_stepIsDue = false;
    PictureProblem m_refusal = PictureProblem::None;
    PictureProblem m_problem = PictureProblem::None;
    QString m_openedFileName;
    ICaptureCB *m_callback;
    MainWindow *m_window;
    FolderLister m_lister;
    /// What the threads of the two below have found out.
    PostedCalls m_calls;
    /// The preloader of the open folder.
    std::unique_ptr<PicturePreloader> m_preloader;
    std::unique_ptr<FolderWatch> m_watch;
};
