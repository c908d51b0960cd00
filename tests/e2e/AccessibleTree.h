#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QProcess>
#include <QStringList>
#include <QVector>

#include <memory>

/// A part of a program as a screen reader knows it.
struct AccessiblePart {
    QString service;
    QString path;
    QString name;
    QString role;
    QStringList actions;
    bool shown = false;
    bool checked = false;
};

/// A desktop's session with the bus on which programs tell screen readers what they show, and the
/// part of a screen reader: it reads the tree of the one program that runs in the session, and
/// notes what it is notified of. Programs find the session through the environment of this process.
/// GUI thread; calls wait for the other process.
class AccessibleTree : public QObject
{
    Q_OBJECT

public:
    AccessibleTree();
    ~AccessibleTree() override;

    /// Whether the session has come up.
    [[nodiscard]] bool works() const { return m_works; }
    /// The parts of the program of that name that are shown at this moment; none while there is no
    /// program.
    [[nodiscard]] QVector<AccessiblePart> parts(const QString &name) const;
    /// The shown part of that name; without a path when there is none or more than one.
    [[nodiscard]] AccessiblePart part(const QString &name) const;
    /// Does what the part calls by that name.
    bool act(const AccessiblePart &part, const QString &action) const;
    /// What a slider stands at; negative when it is none.
    [[nodiscard]] double value(const AccessiblePart &part) const;
    /// The names of the notifications that were shown, in their order.
    [[nodiscard]] QStringList notified() const { return m_notified; }

private slots:
    void stateChanged(const QDBusMessage &event);

private:
    [[nodiscard]] QDBusMessage call(const QString &service, const QString &path,
                                    const char *interface, const char *method,
                                    const QVariantList &arguments = {}) const;
    [[nodiscard]] AccessiblePart read(const QString &service, const QString &path) const;
    /// Adds what is found in that part and below it.
    void collect(const QString &service, const QString &path, const QString &name,
                 QVector<AccessiblePart> &found) const;

    QProcess m_bus;
    QStringList m_notified;
    bool m_works = false;
};
