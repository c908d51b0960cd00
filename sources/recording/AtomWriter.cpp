#include "sources/recording/AtomWriter.h"

#include <QtEndian>

AtomWriter::AtomWriter(qint64 offset)
    : m_offset(offset)
{
}

void AtomWriter::begin(const char (&type)[5])
{
    const qint64 offset = m_offset;
    put32(0);
    m_open.append(Open{m_pieces.size() - 1, m_pieces.constLast().bytes.size() - 4, offset});
    put(QByteArray(type, 4));
}

void AtomWriter::end()
{
    const Open open = m_open.takeLast();
    qToBigEndian(static_cast<std::uint32_t>(m_offset - open.offset),
                 m_pieces[open.piece].bytes.data() + open.position);
}

void AtomWriter::put8(std::uint8_t value)
{
    put(QByteArray(1, static_cast<char>(value)));
}

void AtomWriter::put16(std::uint16_t value)
{
    char bytes[2];
    qToBigEndian(value, bytes);
    put(QByteArray(bytes, 2));
}

void AtomWriter::put32(std::uint32_t value)
{
    char bytes[4];
    qToBigEndian(value, bytes);
    put(QByteArray(bytes, 4));
}

void AtomWriter::put64(std::uint64_t value)
{
    put32(static_cast<std::uint32_t>(value >> 32));
    put32(static_cast<std::uint32_t>(value));
}

void AtomWriter::put(const QByteArray &bytes)
{
    if (!m_continued)
        m_pieces.append(Piece{m_offset, QByteArray()});
    m_continued = true;
    m_pieces.last().bytes += bytes;
    m_offset += bytes.size();
}

void AtomWriter::zeros(int count)
{
    put(QByteArray(count, '\0'));
}

void AtomWriter::leaveOut(qint64 count)
{
    if (count <= 0)
        return;
    m_offset += count;
    m_continued = false;
}
