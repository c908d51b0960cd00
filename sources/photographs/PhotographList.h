#pragma once

#include <QDir>
#include <QStringList>

/// The names and the arithmetic of a folder of photographs, without a player or a timer.
namespace PhotographList
{

/// The bare names of the pictures of a folder: readable plain files, or links to such, with one of
/// the five known suffixes in lower case, sorted by name with upper case first. Any thread; on a
/// drive that does not answer the call does not return. The names are those of FileNames.
[[nodiscard]] QStringList list(const QDir &dir);

/// Both sorted lists in one: a name that has gone from the folder keeps its place.
[[nodiscard]] QStringList merged(const QStringList &old, const QStringList &now);

/// Whether a bare name has one of those suffixes.
[[nodiscard]] bool isPictureName(const QString &name);

/// One step back; stays on the first.
[[nodiscard]] int previousIndex(int current);
/// One step forward; stays on the last. -1 for an empty list.
[[nodiscard]] int nextIndex(int current, int count);
/// The slideshow's step, from the last to the first again. -1 for an empty list.
[[nodiscard]] int wrappedIndex(int current, int count);

} // namespace PhotographList
