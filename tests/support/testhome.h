// The main() of every test program: a home of its own, a fixed seed, no unexpected warning.
#pragma once

#include <QTemporaryDir>
#include <QTest>

// Points HOME and the XDG folders at a fresh folder, and Qt's offscreen platform at no screen of
// the user's. Must exist before the application object.
class TestHome {
public:
    TestHome();
    QString path() const { return m_dir.path(); }

private:
    QTemporaryDir m_dir;
};

// Fails the running test on a toolkit warning, unless QTest was told to expect or ignore it.
void failOnWarnings();

// What a random test takes from the command line: "--seed N" and "--count N". QTest doesn't know
// them, so they are taken off before it reads the rest.
class RandomTest {
public:
    static void takeArguments(int &argc, char **argv);
    // Another one each day. Print it where the test fails.
    static unsigned int seed();
    static int count(int byDefault);
};

#define MORVANE_TEST_MAIN(Application, Class)                                                      \
    int main(int argc, char **argv)                                                                \
    {                                                                                              \
        TestHome home;                                                                             \
        RandomTest::takeArguments(argc, argv);                                                     \
        Application app(argc, argv);                                                               \
        app.setOrganizationName(QStringLiteral("Tolbrick"));                                       \
        app.setApplicationName(QStringLiteral("Morvane"));                                         \
        Class test;                                                                                \
        return QTest::qExec(&test, argc, argv);                                                    \
    }
