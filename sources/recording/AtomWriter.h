#pragma once

#include <QByteArray>
#include <QVector>

#include <cstdint>

/// Builds a tree of QuickTime atoms, numbers with their highest byte first, as the pieces to be
/// written into a file. What the file holds already is left out.
class AtomWriter
{
public:
    struct Piece {
        /// From the start of the file.
        qint64 offset;
        QByteArray bytes;
    };

    /// The first atom begins at `offset` of the file.
    explicit AtomWriter(qint64 offset);

    /// Opens an atom inside the one that is open; its size is filled in by end().
    void begin(const char (&type)[5]);
    void end();

    void put8(std::uint8_t value);
    void put16(std::uint16_t value);
    void put32(std::uint32_t value);
    void put64(std::uint64_t value);
    void put(const QByteArray &bytes);
    void zeros(int count);
    /// The file keeps these bytes.
    void leaveOut(qint64 count);

    /// Where the next byte belongs.
    [[nodiscard]] qint64 offset() const { return m_offset; }
    /// In the order of the file; without anything left out it is one.
    [[nodiscard]] const QVector<Piece> &pieces() const { return m_pieces; }

private:
    struct Open {
        int piece;
        int position;
        qint64 offset;
    };

    qint64 m_offset;
    QVector<Piece> m_pieces;
    QVector<Open> m_open;
    bool m_continued = false;
};
