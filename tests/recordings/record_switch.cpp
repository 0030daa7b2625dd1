// Reads a switch once, records it, and prints what was read as the sidecar of the recording has it,
// to be compared with what the switch is known to be.
//   record_switch FILE NAME serial PATH    [COMMAND...]
//   record_switch FILE NAME udp ADDRESS PORT [COMMAND...]
// The commands go out first and are not recorded.

#include "session/link_recorder.h"
#include "session/serial_switch_link.h"
#include "session/udp_switch_link.h"
#include "tests/recordings/expectation.h"

#include <QCoreApplication>
#include <QTimer>
#include <cstdio>

using namespace std::chrono_literals;

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QStringList arguments = QCoreApplication::arguments().mid(1);
    if (arguments.size() < 4)
        return 2;
    LinkRecorder recorder(arguments.takeFirst());
    const QString name = arguments.takeFirst();
    const bool isSerial = arguments.takeFirst() == QStringLiteral("serial");
    const QString place = arguments.takeFirst();
    std::unique_ptr<SwitchLink> link;
    if (isSerial)
        link = std::make_unique<SerialSwitchLink>(place);
    else
        link =
            std::make_unique<UdpSwitchLink>(QHostAddress(place), arguments.takeFirst().toUShort());

    SwitchSession session(std::move(link), {1s, 5s, 300ms, 0, 2s, 800ms});
    const auto print = [](const QStringList &lines) {
        std::printf("%s\n", qPrintable(lines.join(QLatin1Char('\n'))));
        QCoreApplication::quit();
    };
    QObject::connect(&session, &SwitchSession::opened, &session, [&] {
        for (const QString &command : std::as_const(arguments))
            session.write(command.toStdString());
        // What is said to the commands belongs to no record.
        QTimer::singleShot(1500ms, &session, [&] {
            record(session, recorder, name,
                   isSerial ? LinkRecorder::Road::Serial : LinkRecorder::Road::Udp);
            session.ask();
        });
    });
    QObject::connect(&session, &SwitchSession::answered, &session,
                     [&](const ConfigurationReading &reading) { print(linesOf(reading)); });
    QObject::connect(&session, &SwitchSession::failed, &session, [&](const SessionError &error) {
        print({QStringLiteral("error  ") + errorName(error.kind)});
    });
    session.open();
    return QCoreApplication::exec();
}
