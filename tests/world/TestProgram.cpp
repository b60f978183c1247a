// SPDX-License-Identifier: MIT
#include "tests/world/TestProgram.h"

#include <QApplication>
#include <QTest>

#include <cstdio>
#include <map>
#include <string>

namespace
{

struct Registered {
    TestProgram::Main main = nullptr;
    TestProgram::Application application = TestProgram::Application::None;
    TestProgram::MakeTest make = nullptr;
    void (*prepare)() = nullptr;
};

/// Filled before main() by objects in an unknown order.
std::map<std::string, Registered> &registered()
{
    static std::map<std::string, Registered> all;
    return all;
}

std::unique_ptr<QCoreApplication> makeApplication(TestProgram::Application kind, int &argc,
                                                  char *argv[])
{
    if (kind == TestProgram::Application::None)
        return nullptr;
    if (kind == TestProgram::Application::Events)
        return std::make_unique<QCoreApplication>(argc, argv);
    auto application = std::make_unique<QApplication>(argc, argv);
    // As in QTEST_MAIN: fonts have the same size on every screen.
    QCoreApplication::setAttribute(Qt::AA_Use96Dpi, true);
    return application;
}

int listClasses()
{
    for (const auto &[name, entry] : registered()) {
        if (entry.make)
            std::puts(name.c_str());
    }
    return 2;
}

} // namespace

TestProgram::Entry::Entry(const char *name, Main main)
{
    registered()[name].main = main;
}

TestProgram::Class::Class(const char *name, Application application, MakeTest make,
                          void (*prepare)())
{
    registered()[name] = {nullptr, application, make, prepare};
}

int main(int argc, char *argv[])
{
    const auto found = argc > 1 ? registered().find(argv[1]) : registered().end();
    if (found == registered().end())
        return listClasses();
    const Registered &chosen = found->second;
    // The class is taken from the arguments; the rest is for Qt Test.
    argv[1] = argv[0];
    --argc;
    ++argv;
    if (chosen.main)
        return chosen.main(argc, argv);
    chosen.prepare();
    const std::unique_ptr<QCoreApplication> application =
        makeApplication(chosen.application, argc, argv);
    const std::unique_ptr<QObject> test = chosen.make();
    return QTest::qExec(test.get(), argc, argv);
}
