#pragma once

#include <QHash>
#include <QList>
#include <QPair>
#include <QSize>
#include <QString>
#include <QStringList>

/// One row of the table of the skin.
struct SkinImage {
    /// Section of the table: "states", "top" or a folder under ":/icons/".
    QString section;
    QString name;
    /// In device-independent pixels.
    QSize size;
    /// What it stands on in the window: "panel", "frame", "bar", "popup", "picture" or "pill".
    QString ground;
    /// Whether a copy at twice the size is made too.
    bool twice = true;

    /// The drawing, relative to the folder of the table.
    [[nodiscard]] QString source() const;
    /// Where the program finds it, relative to ":/icons/": three paths for an image with states.
    [[nodiscard]] QStringList targets() const;
    /// The section of the palette that draws the target.
    [[nodiscard]] static QString stateOf(const QString &target);
};

using SkinPalette = QHash<QString, QHash<QString, QString>>;

/// Readers of the two text files beside the artwork. Both report the first fault, with its line, in
/// `error` and then return nothing.
namespace SkinTable
{

QStringList states();
/// The path of the copy at twice the size: "a/b.png" gives "a/b@2x.png".
QString twicePath(const QString &path);
QList<SkinImage> readTable(const QString &path, QString *error);
/// Token values for each state.
SkinPalette readPalette(const QString &path, QString *error);
/// Exchanges every @token@ of a drawing for its value; an unknown token is a fault.
QByteArray substitute(const QByteArray &source, const QHash<QString, QString> &values,
                      QString *error);

} // namespace SkinTable
