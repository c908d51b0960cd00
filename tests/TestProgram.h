#pragma once

#include <QtTest>

#include <memory>

/// The tests of one folder are one program, TestProgram.cpp its main function: its first argument
/// names a subject, tst_SUBJECT.cpp, and the others are QtTest's. Each source registers its class.
namespace TestProgram
{

using Make = std::unique_ptr<QObject> (*)();

/// What the test runs in: no application object, one without windows, or one with.
enum class Application { None, Core, Widgets };

/// Registers the test class of a source file before main() runs.
bool registerTest(const char *file, Application application, Make make);

template <typename Test>
std::unique_ptr<QObject> make()
{
    return std::make_unique<Test>();
}

} // namespace TestProgram

#define REGISTER_TEST_IN(KIND, CLASS)                                                              \
    static const bool isRegistered##CLASS = TestProgram::registerTest(                             \
        __FILE__, TestProgram::Application::KIND, &TestProgram::make<CLASS>);
#define REGISTER_TEST(CLASS) REGISTER_TEST_IN(Widgets, CLASS)
#define REGISTER_CORE_TEST(CLASS) REGISTER_TEST_IN(Core, CLASS)
#define REGISTER_PLAIN_TEST(CLASS) REGISTER_TEST_IN(None, CLASS)
