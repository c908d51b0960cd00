#include "tests/e2e/AccessibleTree.h"

#include "tests/Timeout.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QProcessEnvironment>

namespace
{

constexpr const char *ACCESSIBLE = "org.a11y.atspi.Accessible";
constexpr const char *ACTION = "org.a11y.atspi.Action";
constexpr const char *PROPERTIES = "org.freedesktop.DBus.Properties";
constexpr const char *SESSION = "accessible-session";
constexpr const char *READERS = "accessible-readers";

/// Bits of the protocol's states.
constexpr int CHECKED = 4;
constexpr int SHOWING = 25;

/// What a reply holds, as one value; invalid for an error.
QVariant first(const QDBusMessage &reply)
{
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return {};
    const QVariant value = reply.arguments().constFirst();
    return value.userType() == qMetaTypeId<QDBusVariant>() ? value.value<QDBusVariant>().variant()
                                                           : value;
}

QVector<QPair<QString, QString>> references(const QVariant &list)
{
    QVector<QPair<QString, QString>> found;
    if (!list.isValid())
        return found;
    const auto argument = list.value<QDBusArgument>();
    argument.beginArray();
    while (!argument.atEnd()) {
        QString service;
        QDBusObjectPath path;
        argument.beginStructure();
        argument >> service >> path;
        argument.endStructure();
        found.append({service, path.path()});
    }
    argument.endArray();
    return found;
}

QStringList actionNames(const QVariant &list)
{
    QStringList found;
    if (!list.isValid())
        return found;
    const auto argument = list.value<QDBusArgument>();
    argument.beginArray();
    while (!argument.atEnd()) {
        QString name, description, key;
        argument.beginStructure();
        argument >> name >> description >> key;
        argument.endStructure();
        found << name;
    }
    argument.endArray();
    return found;
}

} // namespace

AccessibleTree::AccessibleTree()
{
    // The session's services must not see the camera's file system.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove("LD_PRELOAD");
    m_bus.setProcessEnvironment(environment);
    m_bus.start("dbus-daemon", {"--session", "--nofork", "--print-address"});
    if (!m_bus.waitForReadyRead(TIMEOUT_MS))
        return;
    const QByteArray address = m_bus.readLine().trimmed();
    qputenv("DBUS_SESSION_BUS_ADDRESS", address);
    QDBusConnection session = QDBusConnection::connectToBus(QString::fromLatin1(address), SESSION);
    const auto ask = [&session](const char *path, const char *interface, const char *method,
                                const QVariantList &arguments) {
        QDBusMessage message =
            QDBusMessage::createMethodCall("org.a11y.Bus", path, interface, method);
        message.setArguments(arguments);
        return session.call(message, QDBus::Block, TIMEOUT_MS);
    };
    // A screen reader says that it is there; without one programs tell nothing.
    const QDBusMessage enabled =
        ask("/org/a11y/bus", PROPERTIES, "Set",
            {"org.a11y.Status", "IsEnabled", QVariant::fromValue(QDBusVariant(true))});
    const QString readers =
        first(ask("/org/a11y/bus", "org.a11y.Bus", "GetAddress", {})).toString();
    if (enabled.type() != QDBusMessage::ReplyMessage || readers.isEmpty())
        return;
    QDBusConnection bus = QDBusConnection::connectToBus(readers, READERS);
    const bool listening = bus.connect({}, {}, "org.a11y.atspi.Event.Object", "StateChanged", this,
                                       SLOT(stateChanged(QDBusMessage)));
    const QDBusMessage registered =
        call("org.a11y.atspi.Registry", "/org/a11y/atspi/registry", "org.a11y.atspi.Registry",
             "RegisterEvent", {"object:state-changed:showing"});
    m_works = listening && registered.type() == QDBusMessage::ReplyMessage;
}

AccessibleTree::~AccessibleTree()
{
    QDBusConnection::disconnectFromBus(READERS);
    QDBusConnection::disconnectFromBus(SESSION);
    m_bus.terminate();
    m_bus.waitForFinished();
}

QDBusMessage AccessibleTree::call(const QString &service, const QString &path,
                                  const char *interface, const char *method,
                                  const QVariantList &arguments) const
{
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    return QDBusConnection(READERS).call(message, QDBus::Block, TIMEOUT_MS);
}

AccessiblePart AccessibleTree::read(const QString &service, const QString &path) const
{
    AccessiblePart part{service, path, {}, {}, {}};
    part.name = first(call(service, path, PROPERTIES, "Get", {ACCESSIBLE, "Name"})).toString();
    part.role = first(call(service, path, ACCESSIBLE, "GetRoleName")).toString();
    const QVariant states = first(call(service, path, ACCESSIBLE, "GetState"));
    const auto bits =
        states.isValid() ? qdbus_cast<QList<uint>>(states.value<QDBusArgument>()) : QList<uint>();
    const uint low = bits.value(0);
    part.checked = low & (1u << CHECKED);
    part.shown = low & (1u << SHOWING);
    part.actions = actionNames(first(call(service, path, ACTION, "GetActions")));
    return part;
}

void AccessibleTree::collect(const QString &service, const QString &path, const QString &name,
                             QVector<AccessiblePart> &found) const
{
    if (name == first(call(service, path, PROPERTIES, "Get", {ACCESSIBLE, "Name"})).toString()) {
        const AccessiblePart part = read(service, path);
        if (part.shown)
            found.append(part);
    }
    for (const auto &child : references(first(call(service, path, ACCESSIBLE, "GetChildren"))))
        collect(child.first, child.second, name, found);
}

QVector<AccessiblePart> AccessibleTree::parts(const QString &name) const
{
    QVector<AccessiblePart> found;
    const auto programs = references(first(call(
        "org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root", ACCESSIBLE, "GetChildren")));
    QDBusConnectionInterface *bus = QDBusConnection(READERS).interface();
    for (const auto &program : programs) {
        // This process is a program with a window platform, too, and cannot ask itself.
        if (bus->servicePid(program.first) != QCoreApplication::applicationPid())
            collect(program.first, program.second, name, found);
    }
    return found;
}

AccessiblePart AccessibleTree::part(const QString &name) const
{
    const QVector<AccessiblePart> found = parts(name);
    return found.size() == 1 ? found.first() : AccessiblePart();
}

bool AccessibleTree::act(const AccessiblePart &part, const QString &action) const
{
    const int index = part.actions.indexOf(action);
    return index >= 0 && first(call(part.service, part.path, ACTION, "DoAction", {index})).toBool();
}

double AccessibleTree::value(const AccessiblePart &part) const
{
    const QVariant value = first(
        call(part.service, part.path, PROPERTIES, "Get", {"org.a11y.atspi.Value", "CurrentValue"}));
    return value.isValid() ? value.toDouble() : -1;
}

void AccessibleTree::stateChanged(const QDBusMessage &event)
{
    const QVariantList arguments = event.arguments();
    if (arguments.size() < 2 || arguments[0].toString() != "showing" || arguments[1].toInt() != 1)
        return;
    const AccessiblePart part = read(event.service(), event.path());
    if (part.role == "notification")
        m_notified << part.name;
}
