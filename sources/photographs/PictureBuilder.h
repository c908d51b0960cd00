#pragma once

#include <QImage>
#include <QSize>
#include <QVector>

/// Puts a picture together from its rows, in full size or averaged into a smaller one, without
/// holding more than the answer. What is not given stays white. Any thread.
class PictureBuilder
{
public:
    /// `size` is no larger than `whole` in either direction.
    PictureBuilder(QSize whole, QSize size);

    /// Whether the memory cannot be had; then only picture() may be called.
    [[nodiscard]] bool isNull() const { return m_picture.isNull(); }

    /// The next rows of the whole picture, RGB888.
    void addRows(const QImage &rows);
    /// Leaves out the next rows of the whole picture.
    void skipRows(int count);
    /// Fills a rectangle of the whole picture with one colour of three bytes. Nothing is averaged:
    /// the last colour of a place counts.
    void fill(const QRect &part, const uchar *rgb);

    /// Null without memory.
    [[nodiscard]] QImage picture() const { return m_picture; }

private:
    void sum(const uchar *rgb);
    void endRow();
    void writeAverages(int row);

    QSize m_whole;
    QImage m_picture;
    /// The next row of the whole picture.
    int m_row = 0;
    /// Where each column of the answer begins in the whole picture, and the end; empty where both
    /// have one size.
    QVector<int> m_columns;
    /// The three sums of each column in the row of the answer that is under way.
    QVector<quint32> m_sums;
    int m_summedRows = 0;
};
