#include "command_watch.h"
#include "figures.h"
#include "steps.h"
#include "switch_picture.h"

#include <QTemporaryDir>
#include <QTest>

/// The parts of the walk that judge: each has to see what is wrong.
class WalkPartsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aSeedMeansTheSameEverywhere()
    {
        const QByteArrayList drawn = drawSteps(7, 45, Road::Serial);
        QCOMPARE(drawn, drawSteps(7, 45, Road::Serial));
        QVERIFY(drawn != drawSteps(8, 45, Road::Serial));
        QCOMPARE(drawn.size(), 48);
        QCOMPARE(stepsIn(drawn), 45);
        QCOMPARE(drawn.at(20), QByteArray("check"));
        QCOMPARE(drawn.at(41), QByteArray("check"));
        QCOMPARE(drawn.last(), QByteArray("check"));
        QCOMPARE(drawn.mid(0, 3),
                 (QByteArrayList{"flood 1 8251", "move 2 Left ~317", "move 2 Up ~4084"}));
    }

    void aStepIsRead()
    {
        const Step step = readStep("custom 1|20|30|TWO WORDS ~815");
        QCOMPARE(step.action, QByteArray("custom"));
        QCOMPARE(step.rest, QByteArray("1|20|30|TWO WORDS"));
        QCOMPARE(step.answers, 815U);
        QVERIFY(!isOfDesk(step));
        const Step fault = readStep("fault 2 delay 40");
        QVERIFY(isOfDesk(fault));
        QCOMPARE(fault.number(0), 2);
        QCOMPARE(fault.word(1), QByteArray("delay"));
        QCOMPARE(readStep("restart ~4").action, QByteArray("restart"));
    }

    void aPlanIsWrittenAndRead()
    {
        const QTemporaryDir folder;
        const QString file = folder.filePath(QStringLiteral("steps.txt"));
        QVERIFY(!readPlan(file));
        QVERIFY(writePlan(file, {12, Road::Udp, {"wait 3", "press pushButton_Refresh ~9"}}));
        const auto plan = readPlan(file);
        QVERIFY(plan);
        QCOMPARE(plan->seed, 12U);
        QVERIFY(plan->road == Road::Udp);
        QCOMPARE(plan->steps, (QByteArrayList{"wait 3", "press pushButton_Refresh ~9"}));
    }

    void whatWasAskedForIsNoComplaint()
    {
        CommandWatch watch;
        watch.choose(2);
        watch.announce("//c3");
        watch.announce("//FF0*");
        watch.take({DeskEvent::Kind::Command, 2, "//c3", {}});
        watch.take({DeskEvent::Kind::Command, 2, "//FF01B01FF02B02FF03B03FF04B04", {}});
        watch.take({DeskEvent::Kind::Command, 2, "//rl", {}});
        QCOMPARE(watch.takeComplaints(), QStringList());
        QCOMPARE(watch.commands(), 3);
    }

    void aCommandNobodyAskedForIsAComplaint()
    {
        CommandWatch watch;
        watch.choose(1);
        watch.announce("//c3");
        watch.take({DeskEvent::Kind::Command, 1, "//c3", {}});
        watch.take({DeskEvent::Kind::Command, 1, "//c3", {}}); // once is what was asked for
        QCOMPARE(watch.takeComplaints().size(), 1);
        watch.announce("//u1");
        watch.settle();
        watch.take({DeskEvent::Kind::Command, 1, "//u1", {}});
        QCOMPARE(watch.takeComplaints().size(), 1);
    }

    void aCommandToAnotherSwitchIsAComplaint()
    {
        CommandWatch watch;
        watch.choose(1);
        watch.announce("//B0");
        watch.choose(2);
        watch.take({DeskEvent::Kind::Command, 2, "//B0", {}});
        QCOMPARE(watch.takeComplaints().size(), 1);
        watch.take({DeskEvent::Kind::Command, 1, "//B0", {}}); // on its way when 2 was chosen
        QCOMPARE(watch.takeComplaints(), QStringList());
    }

    void aQuestionToASwitchThatWasNeverChosenIsAComplaint()
    {
        CommandWatch watch;
        watch.choose(1);
        watch.take({DeskEvent::Kind::Command, 2, "//rl", {}});
        QCOMPARE(watch.takeComplaints().size(), 1);
    }

    void aCommandThatNeverCameIsAComplaintInCalmTimes()
    {
        CommandWatch watch;
        watch.choose(1);
        watch.announceSurely("//c1"); // nobody knows yet what there was before
        watch.noteTrouble();
        QTest::qWait(700);
        watch.announceSurely("//c2");
        watch.announce("//c3");
        watch.settle();
        QCOMPARE(watch.takeComplaints(),
                 QStringList{QStringLiteral("//c2 at switch 1 was asked for and never came")});
        watch.announceSurely("//c4");
        watch.noteTrouble();
        watch.settle();
        QCOMPARE(watch.takeComplaints(), QStringList());
    }

    void aRefusedCommandIsAComplaint()
    {
        CommandWatch watch;
        watch.choose(1);
        watch.announce("//c9");
        watch.take({DeskEvent::Kind::Rejected, 1, "//c9", "the number must be 1 to 4"});
        QCOMPARE(watch.takeComplaints().size(), 1);
        watch.announce("//c1");
        watch.take({DeskEvent::Kind::Rejected, 1, "//c1", "the switch is restarting"});
        watch.take({DeskEvent::Kind::Rejected, 1, "press 3", "the switch is restarting"});
        QCOMPARE(watch.takeComplaints(), QStringList());
    }

    void aFrameThatAModuleRejectsIsAComplaint()
    {
        CommandWatch watch;
        const QByteArray reason = "frame rejected: the checksum is 03, not 02";
        watch.take({DeskEvent::Kind::ModuleRejected, 0, reason, reason});
        QCOMPARE(watch.takeComplaints().size(), 1);
        const QByteArray refusal = "login with wrong credentials, refused";
        watch.take({DeskEvent::Kind::ModuleRejected, 1, refusal, refusal});
        watch.take({DeskEvent::Kind::ModuleRequest, 1, "search", {}});
        QCOMPARE(watch.takeComplaints(), QStringList());
    }

    void aFileIsHeldAgainstTheSwitch()
    {
        const QByteArray file = "KM Control: //c2\nUSB Control: //u1\nLimit Ports: //D3\n"
                                "Cursor Rolling: //o1\nResolution channel 1: //CE 1 10\n"
                                "Resolution channel 2: //CE 2 1\nResolution channel 3: //CE 3 1\n"
                                "Resolution channel 4: //CE 4 9\n"
                                "Custom mouse movement setting 1: //MM C1 100 020 TWOWORDS\n"
                                "Custom mouse movement setting 2: //MM C2 001 500 B\xc3\x9cRO\n"
                                "Custom mouse movement setting 3: //MM C3 100 100 CUSTOM3\n"
                                "Custom mouse movement setting 4: //MM C4 100 100 CUSTOM4\n"
                                "Data from mouse movement label 1: 100 020 TWO WORDS\n"
                                "Data from mouse movement label 2: 001 500 B\xc3\x9cRO\n"
                                "Data from mouse movement label 3: 100 100 CUSTOM3\n"
                                "Data from mouse movement label 4: 100 100 CUSTOM4\n"
                                "Grid settings: //FF01B01FF02B06FF03B11FF03B16\n"
                                "Coordinates channel 1: 0 0\nCoordinates channel 2: 1 1\n"
                                "Coordinates channel 3: 2 2\nCoordinates channel 4: 3 3\n"
                                "Buzzer: //B0\nMouse Mode: //km\n";
        const QList<SwitchPicture> pictures = picturesIn(printedState);
        QCOMPARE(pictures.size(), 2);
        QCOMPARE(differenceToFile(pictures.first(), file), QString());
        QCOMPARE(differenceToFile(pictures.last(), file),
                 QStringLiteral("line 1 is \"KM Control: //c2\", not \"KM Control: //c4\""));
        QByteArray other = file;
        other.replace("//FF01B01", "//FF01B02");
        QVERIFY(!differenceToFile(pictures.first(), other).isEmpty());
        QVERIFY(!differenceToFile(pictures.first(), file + "\n").isEmpty());
    }

    void figuresComeTogether()
    {
        Figures first;
        first.steps = 40;
        first.longestGap = 30;
        first.firstMemory = 50000;
        first.mostMemory = 60000;
        Figures second;
        second.steps = 2;
        second.longestGap = 700;
        second.firstMemory = 40000;
        second.lastMemory = 45000;
        const Figures back = Figures::from(second.text());
        first.add(back);
        QCOMPARE(first.steps, 42);
        QCOMPARE(first.longestGap, 700);
        QCOMPARE(first.firstMemory, 50000);
        QCOMPARE(first.mostMemory, 60000);
        QCOMPARE(first.lastMemory, 45000);
    }

private:
    const QByteArray printedState = "Unit 1:\nKM control: 2\nUSB control: 1\n"
                                    "Mouse mode: relative\nCursor rolling: on\nActive ports: 3\n"
                                    "Buzzer: off\nLayout: 01 06 11 16\nResolutions: 10 1 1 9\n"
                                    "Custom 1: 100 20 TWO WORDS\nCustom 2: 1 500 B\\xC3\\x9CRO\n"
                                    "Custom 3: 100 100 CUSTOM3\nCustom 4: 100 100 CUSTOM4\n"
                                    "Hotkey trigger: Left Ctrl\nModule name: PELORA-SIM\n"
                                    "Unit 2:\nKM control: 4\nUSB control: 1\n"
                                    "Mouse mode: relative\nCursor rolling: on\nActive ports: 3\n"
                                    "Buzzer: off\nLayout: 01 06 11 16\nResolutions: 10 1 1 9\n"
                                    "Custom 1: 100 20 TWO WORDS\nCustom 2: 1 500 B\\xC3\\x9CRO\n"
                                    "Custom 3: 100 100 CUSTOM3\nCustom 4: 100 100 CUSTOM4\n"
                                    "Hotkey trigger: Left Ctrl\nModule name: PELORA-SIM-2\n";
};

QTEST_GUILESS_MAIN(WalkPartsTest)
#include "tst_walk_parts.moc"
