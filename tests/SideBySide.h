#pragma once

#include "tests/TestProgram.h"

#include <QObject>
#include <QProcess>
#include <QString>
#include <QStringList>

#include <deque>
#include <map>
#include <memory>
#include <vector>

/// Runs this program over and over with other arguments, several at once, for tests that spend
/// their time waiting or need a process of their own. GUI thread, with an event loop.
class SideBySide
{
public:
    struct Run {
        QString name;
        QStringList arguments;
        QStringList variables; ///< "NAME=value", beside those of this process
    };

    /// Starts the first `atOnce` of them; the others follow when one has ended, in order.
    void start(std::vector<Run> runs, int atOnce);
    ~SideBySide();

    /// Waits for that run: what it printed if it did not end by itself with exit code 0, and
    /// otherwise nothing.
    [[nodiscard]] QString fault(const QString &name);

private:
    struct Process {
        QProcess process;
        bool ended = false;
    };

    void startNext();

    std::map<QString, Process> m_processes;
    std::deque<Run> m_waiting;
};

/// Stands for a test class whose functions know nothing of each other: runs each of them, and of
/// those with data each row, in a process of its own, several at once, as a row of that name.
class FunctionsSideBySide : public QObject
{
    Q_OBJECT

public:
    /// `file`: the source of the test class.
    explicit FunctionsSideBySide(const char *file);

    /// Whether this process is to run functions of the class itself: those that its arguments name.
    [[nodiscard]] static bool named();

private slots:
    void initTestCase();
    void every_data();
    void every();

private:
    [[nodiscard]] QStringList listFunctions() const;

    const QString m_subject;
    QStringList m_functions;
    SideBySide m_runs;
};

/// As REGISTER_TEST_IN, for a class whose functions are to run side by side.
#define REGISTER_TEST_SIDE_BY_SIDE_IN(KIND, CLASS)                                                 \
    static std::unique_ptr<QObject> make##CLASS()                                                  \
    {                                                                                              \
        if (FunctionsSideBySide::named())                                                          \
            return std::make_unique<CLASS>();                                                      \
        return std::make_unique<FunctionsSideBySide>(__FILE__);                                    \
    }                                                                                              \
    static const bool isRegistered##CLASS =                                                        \
        TestProgram::registerTest(__FILE__, TestProgram::Application::KIND, &make##CLASS);
#define REGISTER_TEST_SIDE_BY_SIDE(CLASS) REGISTER_TEST_SIDE_BY_SIDE_IN(Widgets, CLASS)
#define REGISTER_CORE_TEST_SIDE_BY_SIDE(CLASS) REGISTER_TEST_SIDE_BY_SIDE_IN(Core, CLASS)
