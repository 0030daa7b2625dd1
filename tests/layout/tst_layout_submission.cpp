#include "grid_bench.h"

#include "layout/layout_submission.h"
#include "log/event_log.h"
#include "support/dialog_recorder.h"
#include "support/link_bench.h"

#include <QComboBox>
#include <QFile>
#include <QTest>
#include <iostream>
#include <sstream>
#include <stdexcept>

/// Sending the layout and loading the reported one.
class LayoutSubmissionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QCOMPARE(openLog(), 1); }
    void cleanupTestCase() { closeLog(); }

    void init()
    {
        s_ = std::make_unique<Scene>();
        s_->bench.open();
    }
    void cleanup() { s_.reset(); }

    void buildsTheCommandOfTheInitialLayout()
    {
        QCOMPARE(s_->submission.buildLayoutCommand(),
                 std::string("//FF01B01FF02B02FF03B03FF04B04"));
    }

    void submitTellsAndSends_data()
    {
        QTest::addColumn<QList<int>>("cells"); // row and column of channels 1 to 4
        QTest::addColumn<bool>("connected");
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("row") << QList<int>{1, 0, 1, 1, 1, 2, 1, 3} << true
                             << QByteArray("//FF01B05FF02B06FF03B07FF04B08\r");
        QTest::newRow("column") << QList<int>{0, 2, 1, 2, 2, 2, 3, 2} << true
                                << QByteArray("//FF01B03FF02B07FF03B11FF04B15\r");
        QTest::newRow("square") << QList<int>{0, 0, 0, 1, 1, 0, 1, 1} << true
                                << QByteArray("//FF01B01FF02B02FF03B05FF04B06\r");
        QTest::newRow("two pairs apart") << QList<int>{0, 0, 0, 1, 2, 0, 2, 1} << false
                                         << QByteArray("//FF01B01FF02B02FF03B09FF04B10\r");
        QTest::newRow("corners") << QList<int>{0, 0, 0, 3, 3, 0, 3, 3} << false
                                 << QByteArray("//FF01B01FF02B04FF03B13FF04B16\r");
        QTest::newRow("outside the grid") << QList<int>{0, -1, 4, 0, 24, 2, -1, -1} << false
                                          << QByteArray("//FF01B00FF02B05FF03B07FF04B04\r");
    }

    void submitTellsAndSends()
    {
        QFETCH(QList<int>, cells);
        QFETCH(bool, connected);
        QFETCH(QByteArray, bytes);
        s_->grid().place({{{cells[0], cells[1]},
                           {cells[2], cells[3]},
                           {cells[4], cells[5]},
                           {cells[6], cells[7]}}},
                         2);
        const qsizetype before = sentApart();
        s_->submission.submit();
        QCOMPARE(sentApart(), before + (connected ? 0 : 1));
        QCOMPARE(s_->user.seen().size(), 1);
        const auto &notice = s_->user.seen().first();
        QCOMPARE(notice.title, QStringLiteral("Information"));
        QCOMPARE(notice.text, connected ? QStringLiteral("Display topology has been updated")
                                        : QStringLiteral("Failed to update, connect all displays"));
        QCOMPARE(notice.icon, connected ? QMessageBox::Information : QMessageBox::Warning);
        QCOMPARE(s_->bench.commands(1), QByteArrayList{bytes});
        QVERIFY(s_->bench.isSilent());
    }

    void anEmptyLayoutIsNotConnected()
    {
        QTableWidget table(4, 4);
        LayoutGrid grid(table);
        LayoutSubmission submission(grid, s_->bench.link, s_->activePorts);
        submission.submit();
        QVERIFY(s_->user.sawText(QStringLiteral("Failed to update, connect all displays")));
        QCOMPARE(s_->bench.commands(1), QByteArrayList{"//\r"});
    }

    void allChannelsAreActiveWhileTheLayoutIsSent()
    {
        s_->bench.controls.setHandlersArmed(true);
        s_->activePorts.setCurrentIndex(0);
        QCOMPARE(s_->table.picture(), QStringLiteral("123-4-/..../..../...."));
        QCOMPARE(s_->bench.commands(1), QByteArrayList{"//D2\r"});

        s_->submission.submit();
        QCOMPARE(s_->bench.commands(3),
                 (QByteArrayList{"//D4\r", "//FF01B01FF02B02FF03B03FF04B04\r", "//D2\r"}));
        QCOMPARE(s_->activePorts.currentIndex(), 0);
        QCOMPARE(s_->table.picture(), QStringLiteral("123-4-/..../..../...."));
    }

    void whatWasJudgedIsSentWhateverIsReadBackUnderTheNotice()
    {
        s_->bench.controls.setHandlersArmed(true);
        s_->grid().place({{{1, 0}, {1, 1}, {1, 2}, {1, 3}}}, 2);
        s_->user.beforeButton([this](QMessageBox & /*box*/) {
            s_->submission.load("//FF01B01FF02B02FF03B09FF04B10");
            QCOMPARE(s_->table.picture(), QStringLiteral("12../..../34../...."));
        });
        s_->submission.submit();
        QCOMPARE(s_->user.texts(),
                 QStringList{QStringLiteral("Display topology has been updated")});
        QCOMPARE(s_->bench.commands(1), QByteArrayList{"//FF01B05FF02B06FF03B07FF04B08\r"});
        QCOMPARE(s_->table.picture(), QStringLiteral("..../1234/..../...."));
        QVERIFY(s_->bench.isSilent());
    }

    void aPortLimitThatIsReadBackUnderTheNoticeStays()
    {
        s_->grid().place({{{0, 1}, {1, 1}, {2, 1}, {3, 2}}}, 2);
        s_->user.beforeButton([this](QMessageBox & /*box*/) {
            s_->activePorts.setCurrentIndex(0);
            s_->submission.load("//FF01B01FF02B02FF03B03FF04B04");
            s_->bench.controls.setHandlersArmed(true);
        });
        s_->submission.submit();
        QCOMPARE(s_->user.texts(),
                 QStringList{QStringLiteral("Failed to update, connect all displays")});
        QCOMPARE(s_->bench.commands(3),
                 (QByteArrayList{"//D4\r", "//FF01B02FF02B06FF03B10FF04B15\r", "//D2\r"}));
        QCOMPARE(s_->table.picture(), QStringLiteral(".1../.2../.3-../..4-."));
    }

    void withDisarmedHandlersAGreyChannelIsWrittenAsThree()
    {
        s_->grid().repaintActivePorts(1);
        s_->activePorts.setCurrentIndex(1);
        s_->submission.submit();
        QCOMPARE(s_->bench.commands(1), QByteArrayList{"//FF01B01FF02B02FF03B03FF03B04\r"});
        QCOMPARE(s_->activePorts.currentIndex(), 1);
    }

    void submitGoesPastTheSendGate()
    {
        s_->bench.link.setSendEnabled(false);
        s_->submission.submit();
        QCOMPARE(s_->bench.commands(1), QByteArrayList{"//FF01B01FF02B02FF03B03FF04B04\r"});
    }

    void submitWithoutALinkTellsAndWritesNothing()
    {
        s_->bench.link.closeNetworkLink();
        s_->submission.submit();
        QVERIFY(s_->user.sawText(QStringLiteral("Display topology has been updated")));
        QCOMPARE(s_->table.picture(), QStringLiteral("1234/..../..../...."));
        s_->bench.open();
        QVERIFY(s_->bench.isSilent());
    }

    void aLayoutThatWentNowhereIsNotLoggedAsSent()
    {
        const qsizetype before = sentApart();
        s_->bench.link.closeNetworkLink();
        s_->grid().place({{{0, 0}, {0, 1}, {2, 0}, {2, 1}}}, 2);
        s_->submission.submit();
        QVERIFY(s_->user.sawText(QStringLiteral("Failed to update, connect all displays")));
        QCOMPARE(sentApart(), before);
    }

    void aReplyPlacesTheChannels()
    {
        s_->submission.load("01B05 02B06 03B07 04B08");
        QCOMPARE(s_->table.picture(), QStringLiteral("..../1234/..../...."));
        QVERIFY(s_->table.heedsMoves());
        QVERIFY(s_->bench.isSilent());
    }

    void aReplyIsGreyedByTheActivePortsSelector()
    {
        s_->activePorts.setCurrentIndex(0);
        s_->submission.load("01B05FF02B06FF03B07FF04B08");
        QCOMPARE(s_->table.picture(), QStringLiteral("..../123-4-/..../...."));
    }

    void aCodeWithALetterBehindItsDigitIsRead()
    {
        s_->submission.load("FF01B1xFF02B06FF03B07FF04B08");
        QCOMPARE(s_->table.picture(), QStringLiteral("1.../.234/..../...."));
    }

    void aCodeWithoutANumberLeavesItsDisplayOutAndPlacesTheOthers()
    {
        std::ostringstream output;
        std::streambuf *before = std::cout.rdbuf(output.rdbuf());
        s_->submission.load("FF01BxyFF02B06FF03B07FF04B08");
        std::cout.rdbuf(before);
        QCOMPARE(output.str(), std::string("Invalid argument: stoi\n"));
        QCOMPARE(s_->table.picture(), QStringLiteral("..../.234/..../...."));
        QCOMPARE(s_->table.model(), QStringLiteral("1@-1,-1 2@1,1 3@1,2 4@1,3"));
        QCOMPARE(s_->submission.buildLayoutCommand(),
                 std::string("//FF01B04FF02B06FF03B07FF04B08"));
    }

    void codesOutsideTheGridAreEncodedAgain_data()
    {
        QTest::addColumn<QByteArray>("code");
        QTest::addColumn<QByteArray>("again");
        QTest::newRow("00") << QByteArray("00") << QByteArray("00");
        QTest::newRow("17") << QByteArray("17") << QByteArray("05");
        QTest::newRow("99") << QByteArray("99") << QByteArray("07");
    }

    void codesOutsideTheGridAreEncodedAgain()
    {
        QFETCH(QByteArray, code);
        QFETCH(QByteArray, again);
        s_->submission.load(("FF01B01FF02B02FF03B03FF04B" + code).toStdString());
        QCOMPARE(s_->table.picture(), QStringLiteral("123./..../..../...."));
        for (const int mode : {0, 1, 2})
            s_->grid().repaintActivePorts(mode);
        QCOMPARE(QByteArray::fromStdString(s_->submission.buildLayoutCommand()),
                 "//FF01B01FF02B02FF03B03FF04B" + again);
    }

    void aMalformedReplyLeavesTheGrid_data()
    {
        QTest::addColumn<QByteArray>("reply");
        QTest::newRow("empty") << QByteArray("");
        QTest::newRow("a marker is missing") << QByteArray("FF01B05FF02B06FF03B07");
        QTest::newRow("a code is too short") << QByteArray("FF04B08FF03B07FF02B06FF01B5");
    }

    void aMalformedReplyLeavesTheGrid()
    {
        QFETCH(QByteArray, reply);
        s_->grid().place({{{3, 0}, {3, 1}, {3, 2}, {3, 3}}}, 2);
        QVERIFY_EXCEPTION_THROWN(s_->submission.load(reply.toStdString()), std::out_of_range);
        QCOMPARE(s_->table.picture(), QStringLiteral("..../..../..../1234"));
        QVERIFY(s_->table.heedsMoves());
    }

private:
    /// How often the log tells of a layout whose displays do not touch.
    static qsizetype sentApart()
    {
        QFile log(eventLogPath());
        return log.open(QIODevice::ReadOnly)
                   ? log.readAll().count(
                         "The displays do not touch; the layout was sent as it is   ")
                   : -1;
    }

    struct Scene
    {
        Scene()
        {
            activePorts.addItems({QStringLiteral("Ports 1 and 2"),
                                  QStringLiteral("Ports 1, 2, and 3"),
                                  QStringLiteral("Ports 1, 2, 3, and 4")});
            activePorts.setCurrentIndex(2);
            // as the settings page handles the selector
            QObject::connect(&activePorts, &QComboBox::currentIndexChanged, &activePorts,
                             [this](int index) {
                                 if (!bench.controls.areHandlersArmed())
                                     return;
                                 bench.link.forwardCommand("//D" + std::to_string(index + 2));
                                 grid().repaintActivePorts(index);
                             });
        }
        LayoutGrid &grid() { return table.grid; }

        DialogRecorder user;
        GridBench table;
        LinkBench bench;
        QComboBox activePorts;
        LayoutSubmission submission{table.grid, bench.link, activePorts};
    };

    std::unique_ptr<Scene> s_;
};

QTEST_MAIN(LayoutSubmissionTest)
#include "tst_layout_submission.moc"
