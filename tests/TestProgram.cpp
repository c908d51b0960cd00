#include "tests/TestProgram.h"

#include "sources/threads/DetachedThreads.h"

#ifdef TESTS_WITH_WIDGETS
#include <QApplication>
#else
#include <QGuiApplication>
#endif

#include <QFileInfo>

#include <chrono>
#include <cstdio>
#include <map>

namespace
{

/// For the threads that nobody joins. Those that hang are left to themselves.
constexpr std::chrono::seconds END_TIMEOUT{5};

struct Entry {
    TestProgram::Application application;
    TestProgram::Make make;
};

std::map<QString, Entry> &entries()
{
    static std::map<QString, Entry> all;
    return all;
}

int usage(const char *program)
{
    std::fprintf(stderr, "usage: %s SUBJECT [QTTEST ARGUMENT...]\nsubjects:\n", program);
    for (const auto &entry : entries())
        std::fprintf(stderr, "    %s\n", qPrintable(entry.first));
    return 2;
}

std::unique_ptr<QCoreApplication> makeApplication(TestProgram::Application kind, int &argc,
                                                  char **argv)
{
    std::unique_ptr<QCoreApplication> application;
    if (kind == TestProgram::Application::Core)
        application = std::make_unique<QCoreApplication>(argc, argv);
    else if (kind == TestProgram::Application::Widgets)
#ifdef TESTS_WITH_WIDGETS
        application = std::make_unique<QApplication>(argc, argv);
#else
        application = std::make_unique<QGuiApplication>(argc, argv);
#endif
    if (application)
        application->setAttribute(Qt::AA_Use96Dpi, true);
    return application;
}

int run(const Entry &entry, int argc, char **argv)
{
    const auto application = makeApplication(entry.application, argc, argv);
    const std::unique_ptr<QObject> test = entry.make();
    return QTest::qExec(test.get(), argc, argv);
}

} // namespace

bool TestProgram::registerTest(const char *file, Application application, Make make)
{
    const QString subject =
        QFileInfo(QString::fromUtf8(file)).completeBaseName().mid(int(sizeof("tst_")) - 1);
    return entries().emplace(subject, Entry{application, make}).second;
}

int main(int argc, char **argv)
{
    const auto entry = argc < 2 ? entries().end() : entries().find(QString::fromUtf8(argv[1]));
    if (entry == entries().end())
        return usage(argv[0]);
    // The subject is ours; what remains is QtTest's.
    argv[1] = argv[0];
    --argc;
    ++argv;
    const int result = run(entry->second, argc, argv);
    // A thread that loads a library while the libraries are torn down begins them anew.
    (void)DetachedThreads::allEnded(END_TIMEOUT);
    return result;
}
