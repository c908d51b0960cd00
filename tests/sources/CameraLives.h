#pragma once

#include "tests/SideBySide.h"

#include <QStringList>

#include <algorithm>
#include <cstring>
#include <iterator>

class VirtualCamera;

/// A short life of a program that uses the camera. `live` is true when it went as it should.
template <typename Rig>
struct CameraLife {
    const char *name;
    bool (*live)(VirtualCamera &, Rig &);
    /// Also with a camera that is pulled in the middle of a transfer.
    bool dirtyToo;
};

/// The life of that name, which there must be.
template <typename Rig, std::size_t count>
auto lifeNamed(const CameraLife<Rig> (&lives)[count], const char *name)
{
    const auto found =
        std::find_if(std::begin(lives), std::end(lives), [name](const CameraLife<Rig> &life) {
            return std::strcmp(life.name, name) == 0;
        });
    if (found == std::end(lives))
        qFatal("no life %s", name);
    return found->live;
}

/// Runs lives in processes of their own, several at once; each must end by itself with exit code 0.
class CameraLives : public QObject
{
    Q_OBJECT

public:
    /// A test program's main(): all lives, or in a process that was started for one of them `live`
    /// with its name. Its result is the exit code.
    template <typename Rig, std::size_t count>
    static int run(const CameraLife<Rig> (&lives)[count], int atOnce, int (*live)(const char *name))
    {
        CameraLives test(atOnce);
        for (const CameraLife<Rig> &life : lives)
            test.add(life.name, life.dirtyToo);
        return test.exec(live);
    }

private slots:
    void initTestCase();
    void everyLifeEndsWell_data();
    void everyLifeEndsWell();

private:
    explicit CameraLives(int atOnce)
        : m_atOnce(atOnce)
    {
    }
    void add(const char *name, bool dirtyToo);
    [[nodiscard]] int exec(int (*live)(const char *name));

    const int m_atOnce;
    std::vector<SideBySide::Run> m_clean;
    std::vector<SideBySide::Run> m_dirty;
    QStringList m_names;
    SideBySide m_runs;
};
