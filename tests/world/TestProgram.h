// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <memory>

/// The tests of a room are one program, which contains several classes and runs one of them:
/// `tray_tests CLASS [FUNCTION...]`, with Qt Test's options. When all tests run, each class has a
/// process of its own, so that none sees what another one left behind. Without a class, the program
/// lists its classes.
namespace TestProgram
{

/// What exists while a class runs.
enum class Application { Widgets, Events, None };

using Main = int (*)(int argc, char *argv[]);
using MakeTest = std::unique_ptr<QObject> (*)();

/// A function of the program by its name, besides the classes: something that a test starts as
/// another process.
struct Entry {
    Entry(const char *name, Main main);
};

struct Class {
    /// `prepare` runs before the application is created.
    Class(const char *name, Application application, MakeTest make, void (*prepare)());
};

template <typename Test>
std::unique_ptr<QObject> make()
{
    return std::make_unique<Test>();
}

template <typename Test>
void prepare()
{
    if constexpr (requires { Test::initMain(); })
        Test::initMain();
}

} // namespace TestProgram

/// One of these goes below each class: with widgets, with an event loop, with neither.
#define VELMORA_WIDGETS_TEST(Test) VELMORA_TEST_CLASS(Test, Widgets)
#define VELMORA_EVENTS_TEST(Test) VELMORA_TEST_CLASS(Test, Events)
#define VELMORA_PLAIN_TEST(Test) VELMORA_TEST_CLASS(Test, None)

#define VELMORA_TEST_CLASS(Test, application)                                                      \
    static const TestProgram::Class registered##Test(#Test, TestProgram::Application::application, \
                                                     TestProgram::make<Test>,                      \
                                                     TestProgram::prepare<Test>);
