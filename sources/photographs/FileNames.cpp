#include "sources/photographs/FileNames.h"

#include <QFile>

#include <algorithm>

namespace
{

constexpr ushort ESCAPE_BASE = 0xdc00;
constexpr ushort FIRST_ESCAPE = 0xdc80;
constexpr ushort LAST_ESCAPE = 0xdcff;
/// The longest sequence of bytes that makes one character.
constexpr int LONGEST_SEQUENCE = 4;

/// Whether the character at that place stands for a byte; the second half of a pair does not.
bool isEscape(const QString &text, int index)
{
    const ushort unit = text.at(index).unicode();
    return unit >= FIRST_ESCAPE && unit <= LAST_ESCAPE &&
           (index == 0 || !text.at(index - 1).isHighSurrogate());
}

/// The number of bytes at that place that make one character, 0 when none do.
int characterLength(const QByteArray &name, int place)
{
    const int most = std::min(LONGEST_SEQUENCE, name.size() - place);
    for (int length = 1; length <= most; ++length) {
        const QByteArray piece = name.mid(place, length);
        if (QFile::encodeName(QFile::decodeName(piece)) == piece)
            return length;
    }
    return 0;
}

} // namespace

QString FileNames::decode(const QByteArray &name)
{
    QString text = QFile::decodeName(name);
    if (QFile::encodeName(text) == name)
        return text;
    QString pieces;
    for (int place = 0; place < name.size();) {
        const int length = characterLength(name, place);
        if (length == 0)
            pieces += QChar(static_cast<ushort>(ESCAPE_BASE + static_cast<uchar>(name.at(place))));
        else
            pieces += QFile::decodeName(name.mid(place, length));
        place += std::max(length, 1);
    }
    return pieces;
}

QByteArray FileNames::encode(const QString &name)
{
    QByteArray bytes;
    int begin = 0;
    for (int i = 0; i < name.size(); ++i) {
        if (!isEscape(name, i))
            continue;
        bytes += QFile::encodeName(name.mid(begin, i - begin));
        bytes += static_cast<char>(name.at(i).unicode() - ESCAPE_BASE);
        begin = i + 1;
    }
    return bytes + QFile::encodeName(name.mid(begin));
}

QString FileNames::readable(const QString &name)
{
    QString text = name;
    for (int i = 0; i < text.size(); ++i) {
        if (isEscape(name, i))
            text[i] = QChar(QChar::ReplacementCharacter);
    }
    return text;
}
