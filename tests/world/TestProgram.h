// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <memory>

/// The tests of a room are one program, which holds several classes and runs one of them:
/// `tray_tests CLASS [FUNCTION...]`, with Qt Test's options. Every class is a process of its own
/// when all tests run, so that none sees what another one left behind. Without a class the program
/// lists those that it has.
namespace TestProgram
{

/// What there is while a class runs.
enum class Application { Widgets, Events, None };

using Main = int (*)(int argc, char *argv[]);
using MakeTest = std::unique_ptr<QObject> (*)();

/// A function of the program by its name, beside the classes: what a test starts as another
/// process.
struct Entry {
    Entry(const char *name, Main main);
};

struct Class {
    /// `prepare` runs before there is an application.
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

/// Each stands once below its class: with widgets, with an event loop, with neither.
#define VELMORA_WIDGETS_TEST(Test) VELMORA_TEST_CLASS(Test, Widgets)
#define VELMORA_EVENTS_TEST(Test) VELMORA_TEST_CLASS(Test, Events)
#define VELMORA_PLAIN_TEST(Test) VELMORA_TEST_CLASS(Test, None)

#define VELMORA_TEST_CLASS(Test, application)                                                      \
    static const TestProgram::Class registered##Test(#Test, TestProgram::Application::application, \
                                                     TestProgram::make<Test>,                      \
                                                     TestProgram::prepare<Test>);
