#pragma once

#include <QDir>
#include <QFile>
#include <QString>
#include <QStringList>
#include <QVector>
#include <QXmlStreamReader>

/// A text of a catalogue and what it is in that language.
struct Message {
    QString context;
    QString source;
    QString translation;
    bool finished = false;

    QString key() const { return context + "/" + source; }
};

/// All of them, in the order of the file; none when it cannot be read. Of several sources in one
/// message the last counts, as for the toolkit.
inline QVector<Message> readCatalogue(const QString &path)
{
    QVector<Message> messages;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return messages;
    QXmlStreamReader xml(&file);
    QString context;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == "name") {
            context = xml.readElementText();
        } else if (xml.name() == "message") {
            messages.append({context, QString(), QString(), false});
        } else if (xml.name() == "source") {
            messages.last().source = xml.readElementText();
        } else if (xml.name() == "translation") {
            messages.last().finished = !xml.attributes().hasAttribute("type");
            messages.last().translation = xml.readElementText();
        }
    }
    return messages;
}

/// The paths of all catalogues.
inline QStringList catalogueFiles()
{
    const QDir folder(SOURCE_ROOT "/resources/translations");
    QStringList files;
    for (const QString &name : folder.entryList({"*.ts"}))
        files.append(folder.filePath(name));
    return files;
}
