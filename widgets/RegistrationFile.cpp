#include "widgets/RegistrationFile.h"

#include <QDataStream>
#include <QSaveFile>

std::optional<QVector<RegistrationItem>> RegistrationFile::read(QIODevice &device)
{
    QDataStream stream(&device);
    qint32 count = 0;
    stream >> count;
    if (stream.status() != QDataStream::Ok || count < 0)
        return std::nullopt;

    QVector<RegistrationItem> items;
    for (qint32 i = 0; i < count; ++i) {
        RegistrationItem item;
        stream >> item.name >> item.content;
        if (stream.status() != QDataStream::Ok)
            return std::nullopt;
        items.append(item);
    }
    return items;
}

bool RegistrationFile::write(QIODevice &device, const QVector<RegistrationItem> &items)
{
    QDataStream stream(&device);
    stream << qint32(items.size());
    for (const RegistrationItem &item : items)
        stream << item.name << item.content;
    return stream.status() == QDataStream::Ok;
}

bool RegistrationFile::write(const QString &fileName, const QVector<RegistrationItem> &items)
{
    QSaveFile file(fileName);
    return file.open(QIODevice::WriteOnly) && write(file, items) && file.commit();
}
