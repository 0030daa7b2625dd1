#include "desk.h"

#include <QFile>
#include <QTest>
#include <csignal>
#include <memory>
#include <sys/resource.h>
#include <vector>

namespace {
/// Desks in a list file.
struct Floor
{
    explicit Floor(int size)
    {
        QByteArray text;
        for (int number = 1; number <= size; ++number) {
            desks.push_back(std::make_unique<Desk>());
            text += QStringLiteral("desk-%1 udp:127.0.0.1:%2\n")
                        .arg(number)
                        .arg(desks.back()->port())
                        .toUtf8();
        }
        write("list.txt", text);
    }

    void write(const char *name, const QByteArray &text) const
    {
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
            qFatal("no test file");
    }

    QString path(const char *name) const { return folder.filePath(QLatin1String(name)); }
    QStringList list() const { return {QStringLiteral("-D"), path("list.txt")}; }
    int commandCount() const
    {
        int count = 0;
        for (const auto &desk : desks)
            count += static_cast<int>(desk->commands().size());
        return count;
    }

    QTemporaryDir folder;
    std::vector<std::unique_ptr<Desk>> desks;
};

const QString impatient = QStringLiteral("--timeout 300 --retries 0 ");
} // namespace

/// peloractl with several devices.
class CtlManyTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void eachStandsUnderItsNameInTheOrderOfTheList()
    {
        Floor floor(3);
        floor.desks[0]->answers.clear(); // the last one to be done
        const CtlRun run = ctl(impatient + QStringLiteral("get km-control"), floor.list());
        QCOMPARE(run.output, QByteArray("desk-2\nkm-control  2\ndesk-3\nkm-control  2\n"));
        QVERIFY(run.errors.startsWith("peloractl: desk-1: no answer from the switch"));
        QVERIFY(run.errors.endsWith("peloractl: 2 done, 1 failed, of 3\n"));
        QCOMPARE(run.status, 3);
    }

    void jsonComesAsItIsDone()
    {
        Floor floor(3);
        floor.desks[0]->answers.clear();
        const CtlRun run = ctl(impatient + QStringLiteral("--json get km-control"), floor.list());
        const QList<QJsonObject> objects = run.objects();
        QCOMPARE(objects.size(), 3);
        QCOMPARE(objects.at(2).value(QStringLiteral("name")), QJsonValue(QStringLiteral("desk-1")));
        QCOMPARE(objects.at(2).value(QStringLiteral("ok")), QJsonValue(false));
        QCOMPARE(objects.at(0).value(QStringLiteral("ok")), QJsonValue(true));
    }

    void theHighestStatusCounts()
    {
        Floor floor(3);
        floor.desks[0]->answers.clear();                                     // 3
        floor.desks[1]->replace("//??\r", "KM Control: 2", "KM Control: 1"); // well
        const CtlRun run = ctl(impatient + QStringLiteral("set km-control=1"), floor.list()); // 5
        QCOMPARE(run.status, 5);
    }

    void aListMayComeFromStandardInput()
    {
        Floor floor(1);
        const CtlRun run = ctl(QStringLiteral("-D - get buzzer"), {},
                               QByteArray("x udp:127.0.0.1:") +
                                   QByteArray::number(floor.desks[0]->port()) + "\r\n");
        QCOMPARE(run.output, QByteArray("buzzer  on\n"));
    }

    void aBadListStopsAll()
    {
        Floor floor(2);
        floor.write("list.txt",
                    "desk-1 udp:127.0.0.1:" + QByteArray::number(floor.desks[0]->port()) +
                        "\ndesk-2 nowhere\n");
        const CtlRun run = ctl(QStringLiteral("get"), floor.list());
        QCOMPARE(run.status, 2);
        QVERIFY2(run.errors.contains("list.txt, line 2: \"nowhere\" is no device"),
                 run.errors.constData());
        QCOMPARE(floor.commandCount(), 0);
        floor.write("list.txt", "# nobody\n");
        QVERIFY(
            ctl(QStringLiteral("get"), floor.list()).errors.contains("list.txt names no device"));
        QCOMPARE(ctl(QStringLiteral("-D /nowhere/list get")).status, 2);
        const CtlRun folder = ctl(QStringLiteral("get -D"), {floor.path("")});
        QCOMPARE(folder.status, 2);
        QVERIFY2(folder.errors.contains("cannot be read"), folder.errors.constData());
    }

    void aPortThatStandsTwiceStopsAll()
    {
        Floor floor(1);
        const CtlRun run = ctl(floor.desks[0]->option() + QStringLiteral("get"), floor.list());
        QCOMPARE(run.status, 2);
        QVERIFY(run.errors.contains("are the same port"));
        QCOMPARE(floor.commandCount(), 0);
    }

    void notMoreThanTheJobsAtOnce()
    {
        Floor floor(4);
        for (const auto &desk : floor.desks)
            desk->answers.clear();
        CtlProcess process;
        process.start(QStringList{QStringLiteral("--jobs"), QStringLiteral("2"),
                                  QStringLiteral("--timeout"), QStringLiteral("700"),
                                  QStringLiteral("--retries"), QStringLiteral("0"),
                                  QStringLiteral("get")} +
                      floor.list());
        QTRY_COMPARE(floor.commandCount(), 6);
        QVERIFY(floor.desks[2]->commands().isEmpty());
        QVERIFY(floor.desks[3]->commands().isEmpty());
        QCOMPARE(process.wait().status, 3);
        QCOMPARE(floor.commandCount(), 12);
    }

    void eachIsSavedToItsOwnFile()
    {
        Floor floor(2);
        floor.desks[1]->replace("//??\r", "KM Control: 2", "KM Control: 4");
        const CtlRun run =
            ctl(QStringLiteral("save"), floor.list() + QStringList{floor.path("{name}.txt")});
        QCOMPARE(run.status, 0);
        for (const char *name : {"desk-1.txt", "desk-2.txt"}) {
            QFile file(floor.path(name));
            QVERIFY(file.open(QIODevice::ReadOnly));
            QCOMPARE(file.readLine(),
                     QByteArray(name[5] == '1' ? "KM Control: //c2\n" : "KM Control: //c4\n"));
        }
        // Each matches its own file, and the first one's the second not.
        QCOMPARE(ctl(QStringLiteral("diff"), floor.list() + QStringList{floor.path("{name}.txt")})
                     .status,
                 0);
        QCOMPARE(ctl(QStringLiteral("diff"), floor.list() + QStringList{floor.path("desk-1.txt")})
                     .status,
                 1);
    }

    void severalAreNotSavedToOneFile()
    {
        Floor floor(2);
        const CtlRun run =
            ctl(QStringLiteral("save"), floor.list() + QStringList{floor.path("one.txt")});
        QCOMPARE(run.status, 2);
        QVERIFY(run.errors.contains("put {name} into its name"));
        QCOMPARE(floor.commandCount(), 0);
    }

    void aNameThatLeadsElsewhereStopsAll()
    {
        Floor floor(1);
        floor.write("list.txt",
                    "../desk udp:127.0.0.1:" + QByteArray::number(floor.desks[0]->port()) + "\n");
        const CtlRun run =
            ctl(QStringLiteral("save"), floor.list() + QStringList{floor.path("{name}.txt")});
        QCOMPARE(run.status, 2);
        QVERIFY(run.errors.contains("\"../desk\" cannot be part of a file's name"));
        QCOMPARE(floor.commandCount(), 0);
    }

    void oneBadFileStopsAll()
    {
        Floor floor(2);
        QCOMPARE(ctl(QStringLiteral("save"), floor.list() + QStringList{floor.path("{name}.txt")})
                     .status,
                 0);
        for (const auto &desk : floor.desks)
            desk->forget();
        floor.write("desk-2.txt", "KM Control: //F\n");
        const CtlRun run =
            ctl(QStringLiteral("apply"), floor.list() + QStringList{floor.path("{name}.txt")});
        QCOMPARE(run.status, 2);
        QVERIFY(run.errors.contains("desk-2.txt, line 1: \"//F\" is no value of \"KM Control:\""));
        QCOMPARE(floor.commandCount(), 0);
    }

    void anInterruptReportsEachAndLeavesWholeFiles()
    {
        Floor floor(3);
        floor.write("f.txt", "KM Control: //c1\nBuzzer: //B0\n");
        CtlProcess process;
        process.start(QStringList{QStringLiteral("--jobs"), QStringLiteral("2"),
                                  QStringLiteral("apply"), floor.path("f.txt")} +
                      floor.list());
        // Between the halves is a rest of two seconds.
        QTRY_COMPARE(floor.desks[0]->sentCommands(), QByteArrayList{"//c1\r"});
        QTRY_COMPARE(floor.desks[1]->sentCommands(), QByteArrayList{"//c1\r"});
        ::kill(static_cast<pid_t>(process.process.processId()), SIGINT);
        const CtlRun run = process.wait();
        QCOMPARE(run.status, 130);
        QVERIFY(run.errors.contains("desk-1: interrupted; sent 1 of 2 commands: //c1\n"));
        QVERIFY(run.errors.contains("desk-2: interrupted; sent 1 of 2 commands: //c1\n"));
        QVERIFY(run.errors.contains("desk-3: interrupted before it was begun; nothing was sent\n"));
        QVERIFY(run.errors.endsWith("0 done, 3 failed, of 3\n"));
        QVERIFY(floor.desks[2]->commands().isEmpty());
    }

    void anInterruptedSaveLeavesNoHalfFile()
    {
        Floor floor(2);
        floor.desks[1]->answers.clear();
        floor.write("desk-2.txt", "as before");
        CtlProcess process;
        process.start(QStringList{QStringLiteral("save"), floor.path("{name}.txt")} + floor.list());
        QTRY_VERIFY(QFile::exists(floor.path("desk-1.txt")));
        ::kill(static_cast<pid_t>(process.process.processId()), SIGINT);
        QCOMPARE(process.wait().status, 130);
        QFile file(floor.path("desk-2.txt"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("as before"));
        QCOMPARE(QDir(floor.folder.path()).entryList(QDir::Files).size(), 3);
    }

    void watchingNamesEach()
    {
        Floor floor(2);
        CtlProcess process;
        process.start(
            QStringList{QStringLiteral("--jobs"), QStringLiteral("1"), QStringLiteral("watch")} +
            floor.list());
        QVERIFY(process.hasSaid("desk-1 usb-control 3\n"));
        QVERIFY(process.hasSaid("desk-2 usb-control 3\n")); // all at once, whatever the jobs
        ::kill(static_cast<pid_t>(process.process.processId()), SIGTERM);
        QCOMPARE(process.wait().status, 130);
    }

    void whereTheSystemAllowsFewOpenFilesItTakesTurns()
    {
        Floor floor(60);
        const auto allowFew = [](CtlProcess &process) {
            process.process.setChildProcessModifier([] {
                const rlimit limit{40, 40};
                ::setrlimit(RLIMIT_NOFILE, &limit);
            });
        };
        CtlProcess process;
        allowFew(process);
        process.start(QStringList{QStringLiteral("get"), QStringLiteral("buzzer")} + floor.list());
        CtlRun run = process.wait();
        QVERIFY2(run.status == 0, run.errors.constData());
        QCOMPARE(run.errors, QByteArray("peloractl: 60 done, 0 failed, of 60\n"));
        CtlProcess watch;
        allowFew(watch);
        watch.start(QStringList{QStringLiteral("watch")} + floor.list());
        run = watch.wait();
        QCOMPARE(run.status, 2);
        QVERIFY2(run.errors.contains("60 devices cannot be watched at once: the system allows 8"),
                 run.errors.constData());
    }

    void aSoftLimitIsRaised()
    {
        Floor floor(60);
        CtlProcess process;
        process.process.setChildProcessModifier([] {
            const rlimit limit{40, 200};
            ::setrlimit(RLIMIT_NOFILE, &limit);
        });
        process.start(QStringList{QStringLiteral("watch")} + floor.list());
        QVERIFY(process.hasSaid("desk-60 usb-control 3\n"));
        ::kill(static_cast<pid_t>(process.process.processId()), SIGINT);
        QCOMPARE(process.wait().status, 130);
    }

    void aHundredAreReadInOneGo()
    {
        Floor floor(100);
        const CtlRun run = ctl(QStringLiteral("--json get"), floor.list());
        QCOMPARE(run.status, 0);
        QCOMPARE(run.objects().size(), 100);
        QCOMPARE(run.errors, QByteArray("peloractl: 100 done, 0 failed, of 100\n"));
        QCOMPARE(floor.commandCount(), 300);
    }
};

QTEST_GUILESS_MAIN(CtlManyTest)
#include "tst_ctl_many.moc"
