#include "hostile.h"

#include "tests/cli/ctl_process.h"
#include "tests/usr/fake_module.h"

#include <QNetworkDatagram>
#include <QUdpSocket>

namespace {
/// A module on the network that leads nowhere; it answers searches with a name that somebody has
/// chosen.
class NamedModule
{
public:
    explicit NamedModule(const QByteArray &name)
    {
        constexpr quint16 modulePort = 1901;
        if (!socket_.bind(QHostAddress(QHostAddress::AnyIPv4), modulePort))
            qFatal("the module's port cannot be had");
        const QByteArray reply = FakeModule::discoveryReply(
            QByteArray("\xC0\x00\x02\x07", 4), QByteArray("\x02\x00\x00\x00\x00\x01", 6), name);
        QObject::connect(&socket_, &QUdpSocket::readyRead, &socket_, [this, reply] {
            while (socket_.hasPendingDatagrams()) {
                const QNetworkDatagram asked = socket_.receiveDatagram();
                socket_.writeDatagram(reply, asked.senderAddress(),
                                      static_cast<quint16>(asked.senderPort()));
            }
        });
    }

private:
    QUdpSocket socket_;
};
} // namespace

/// What no module on the network can do to the command line's user.
class PromisesOfModulesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void noModuleSendsAnEscapeSequenceToTheTerminal_data() { controlRows(); }
    void noModuleSendsAnEscapeSequenceToTheTerminal()
    {
        QFETCH(QByteArray, control);
        const NamedModule module((control + "Desk" + control).left(16));
        for (const char *format : {"", "--json "}) {
            const CtlRun run = ctl(QStringLiteral("--wait 200 ") + QString::fromLatin1(format) +
                                   QStringLiteral("discover"));
            QCOMPARE(run.status, 0);
            QVERIFY2(run.output.contains("Desk"), run.output.constData());
            QVERIFY2(isForEyesOnly(run.output), run.output.toHex().constData());
            QVERIFY2(isForEyesOnly(run.errors), run.errors.toHex().constData());
        }
    }
};

QTEST_GUILESS_MAIN(PromisesOfModulesTest)
#include "tst_promises_of_modules.moc"
