#pragma once

#include <QFile>
#include <QStringList>

/// What a test found out about the files of a corpus, for the tables of the documents.
namespace CorpusResults
{

/// Adds a line to the file that the environment names in CORPUS_RESULTS; nothing without one.
inline void add(const QStringList &columns)
{
    QFile file(qEnvironmentVariable("CORPUS_RESULTS"));
    if (!file.fileName().isEmpty() && file.open(QIODevice::Append))
        file.write(columns.join('\t').toUtf8() + '\n');
}

} // namespace CorpusResults
