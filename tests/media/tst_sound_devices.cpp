#include "tests/OwnProcess.h"
#include "tests/TestProgram.h"
#include "tests/Timeout.h"
#include "tests/media/SoundServer.h"

#include "sources/recording/SoundDevices.h"

#include <QtTest>

namespace
{

/// As often as a recording of forty minutes looks for the microphone.
constexpr int LOOKS = 40 * 60 / 2;

bool microphoneFound()
{
    return SoundDevices::instance().find(SoundServer::CAMERA_ID) != nullptr;
}

} // namespace

class SoundDevicesTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_server = std::make_unique<SoundServer>(m_folder.path());
        m_server->pretendAbsent();
        // What the library keeps from the first look on.
        QVERIFY(!microphoneFound());
        m_before = OwnProcess::openDescriptors();
    }
    void cleanup()
    {
        SoundDevices::instance().rest();
        m_server.reset();
    }

    void looksWithoutASoundServerCostNoDescriptors()
    {
        for (int n = 0; n < LOOKS; ++n)
            QVERIFY(!microphoneFound());
        QCOMPARE(OwnProcess::openDescriptors(), m_before);
    }

    void looksAtAServerWithoutTheMicrophoneCostNone()
    {
        QVERIFY(m_server->start(QString()));
        QVERIFY(!microphoneFound());
        const int before = OwnProcess::openDescriptors();
        for (int n = 0; n < LOOKS; ++n)
            QVERIFY(!microphoneFound());
        QCOMPARE(OwnProcess::openDescriptors(), before);
    }

    void aServerThatComesLateDiesAndComesBackIsFoundEachTime()
    {
        for (int round = 0; round < 3; ++round) {
            QVERIFY(!microphoneFound());
            QVERIFY(m_server->start());
            QVERIFY(microphoneFound());
            QVERIFY(!SoundDevices::instance().removed(SoundServer::CAMERA_ID));
            QVERIFY(microphoneFound()); // again, while it is watched
            m_server->kill();
            for (int n = 0; n < LOOKS / 10; ++n)
                QVERIFY(!microphoneFound());
            QCOMPARE(OwnProcess::openDescriptors(), m_before);
        }
    }

    void aMicrophoneThatIsPulledIsToldOnce()
    {
        QVERIFY(m_server->start());
        QVERIFY(microphoneFound());
        QVERIFY(m_server->unplugMicrophone());
        QVERIFY(QTest::qWaitFor(
            [] { return SoundDevices::instance().removed(SoundServer::CAMERA_ID); }, TIMEOUT_MS));
        QVERIFY(!SoundDevices::instance().removed(SoundServer::CAMERA_ID));
        QVERIFY(!microphoneFound());
        QVERIFY(m_server->plugMicrophone());
        QVERIFY(microphoneFound());
    }

private:
    QTemporaryDir m_folder;
    std::unique_ptr<SoundServer> m_server;
    int m_before = 0;
};

REGISTER_CORE_TEST(SoundDevicesTest)
#include "tst_sound_devices.moc"
