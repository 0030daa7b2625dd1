#include "simulator/fault_settings.h"

#include <QTest>
#include <chrono>

using namespace std::chrono_literals;

/// Faults by name, as the command line and the console write them.
class FaultSettingsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyFaultReachesItsPlace()
    {
        Faults faults;
        for (const char *assignment :
             {"silence",       "delay=300",       "chunks=7",       "gap=5",
              "garbage",       "missing=Buzzer",  "missing=//FF",   "crlf",
              "oversize=1200", "unsolicited=250", "flood=10",       "bad-port-limit=6",
              "usb-colon",     "blank-padding",   "module-silence", "discovery-size=37:3",
              "late=600",      "duplicates=2",    "truncated=50",   "refuse",
              "keep-old",      "long-name",       "raw-name",       "same-address",
              "split=64"})
            QCOMPARE(setFault(faults, assignment), std::string());

        QVERIFY((faults.ofSwitch == SwitchFaults{.silent = true,
                                                 .delay = 300ms,
                                                 .chunkBytes = 7,
                                                 .chunkGap = 5ms,
                                                 .garbage = true,
                                                 .missingKeys = {"Buzzer", "//FF"},
                                                 .crlf = true,
                                                 .oversizeBytes = 1200,
                                                 .unsolicitedEvery = 250ms,
                                                 .floodBytes = 10,
                                                 .badPortLimitReads = 6,
                                                 .usbColon = true,
                                                 .blankPadding = true}));
        QVERIFY((faults.ofModule == ModuleFaults{.silent = true,
                                                 .discoverySize = 37,
                                                 .discoverySizeTimes = 3,
                                                 .late = 600ms,
                                                 .duplicates = 2,
                                                 .truncatedBytes = 50,
                                                 .refuse = true,
                                                 .keepOld = true,
                                                 .longName = true,
                                                 .rawName = true,
                                                 .sameAddress = true,
                                                 .splitBytes = 64}));
        QCOMPARE(
            faultsText(faults),
            std::string("silence\ndelay=300\nchunks=7\ngap=5\ngarbage\n"
                        "missing=//FF, Buzzer\ncrlf\noversize=1200\nunsolicited=250\n"
                        "flood=10\nbad-port-limit=6\nusb-colon\nblank-padding\nmodule-silence\n"
                        "discovery-size=37:3\nlate=600\nduplicates=2\ntruncated=50\nrefuse\n"
                        "keep-old\nlong-name\nraw-name\nsame-address\nsplit=64\n"));
        QCOMPARE(setFault(faults, "none"), std::string());
        QVERIFY(faults == Faults{});
        QCOMPARE(faultsText(faults), std::string());
    }

    void faultsHaveDefaultValues()
    {
        Faults faults;
        QCOMPARE(setFault(faults, "delay"), std::string());
        QVERIFY(faults.ofSwitch.delay == 500ms);
        QCOMPARE(setFault(faults, "oversize"), std::string());
        QCOMPARE(faults.ofSwitch.oversizeBytes, 1500);
        QCOMPARE(setFault(faults, "flood"), std::string());
        QCOMPARE(faults.ofSwitch.floodBytes, 200000);
    }

    void faultsTurnOffOneByOne()
    {
        Faults faults;
        setFault(faults, "delay=300");
        setFault(faults, "gap=1");
        setFault(faults, "missing=C1");
        setFault(faults, "discovery-size=35");
        for (const char *assignment : {"delay=off", "gap=off", "missing=off", "discovery-size=off"})
            QCOMPARE(setFault(faults, assignment), std::string());
        QVERIFY(faults == Faults{});
    }

    void theLimitsThemselvesAreTaken()
    {
        Faults faults;
        for (const char *assignment : {"split=1400", "delay=1", "discovery-size=37:1"})
            QCOMPARE(setFault(faults, assignment), std::string());
        QCOMPARE(faults.ofModule.splitBytes, 1400);
    }

    void mistakesAreNamedAndChangeNothing_data()
    {
        QTest::addColumn<QString>("assignment");
        QTest::addColumn<QString>("mistake");

        const auto row = [](const char *assignment, const char *mistake) {
            QTest::newRow(assignment)
                << QString::fromLatin1(assignment) << QString::fromLatin1(mistake);
        };
        row("nope", "there is no fault \"nope\"");
        row("", "there is no fault \"\"");
        row("silence=1", "the fault silence takes no value");
        row("delay=x", "the fault delay needs MS, not \"x\"");
        row("delay=0", "the fault delay needs MS, not \"0\"");
        row("delay=-5", "the fault delay needs MS, not \"-5\"");
        row("delay=5ms", "the fault delay needs MS, not \"5ms\"");
        row("delay=99999999999", "the fault delay needs MS, not \"99999999999\"");
        row("gap", "the fault gap needs MS, not \"\"");
        row("missing", "the fault missing needs KEY, not \"\"");
        row("missing=Beep", "the fault missing needs KEY, not \"Beep\"");
        row("discovery-size=37:0", "the fault discovery-size needs BYTES[:TIMES], not \"37:0\"");
        row("discovery-size=37:", "the fault discovery-size needs BYTES[:TIMES], not \"37:\"");
        row("split=1401", "the fault split needs BYTES, not \"1401\"");
    }

    void mistakesAreNamedAndChangeNothing()
    {
        QFETCH(QString, assignment);
        QFETCH(QString, mistake);
        Faults faults;
        QCOMPARE(QString::fromStdString(setFault(faults, assignment.toStdString())), mistake);
        QVERIFY(faults == Faults{});
    }

    void helpNamesEveryFault()
    {
        const QString help = QString::fromStdString(faultHelp());
        QCOMPARE(help.count(QLatin1Char('\n')), 24);
        QVERIFY(help.contains(QLatin1String("  delay=MS ")));
        QVERIFY(help.contains(QLatin1String("  discovery-size=BYTES[:TIMES] ")));
    }
};

QTEST_GUILESS_MAIN(FaultSettingsTest)
#include "tst_fault_settings.moc"
