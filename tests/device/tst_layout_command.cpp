#include "device/layout_command.h"

#include <QTest>
#include <iostream>
#include <sstream>
#include <stdexcept>

namespace {
/// Keeps what is written to standard output while it lives.
class CapturedOutput
{
public:
    CapturedOutput() : before_(std::cout.rdbuf(text_.rdbuf())) {}
    ~CapturedOutput() { std::cout.rdbuf(before_); }
    CapturedOutput(const CapturedOutput &) = delete;
    CapturedOutput &operator=(const CapturedOutput &) = delete;

    std::string text() const { return text_.str(); }

private:
    std::ostringstream text_;
    std::streambuf *before_;
};

std::vector<GridPosition> positionsOf(const std::vector<PlacedDisplay> &displays)
{
    std::vector<GridPosition> positions;
    for (const PlacedDisplay &display : displays)
        positions.push_back(display.position);
    return positions;
}

int neighboursAmong(const std::vector<GridPosition> &displays)
{
    return neighbourCount(displays, [&](GridPosition wanted) {
        return std::find(displays.begin(), displays.end(), wanted) != displays.end();
    });
}
} // namespace

Q_DECLARE_METATYPE(std::vector<PlacedDisplay>)

/// The layout command: every text here is typed by hand.
class LayoutCommandTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void positionCodes_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<int>("column");
        QTest::addColumn<QByteArray>("code");
        QTest::newRow("0 0") << 0 << 0 << QByteArray("01");
        QTest::newRow("0 1") << 0 << 1 << QByteArray("02");
        QTest::newRow("0 2") << 0 << 2 << QByteArray("03");
        QTest::newRow("0 3") << 0 << 3 << QByteArray("04");
        QTest::newRow("1 0") << 1 << 0 << QByteArray("05");
        QTest::newRow("1 1") << 1 << 1 << QByteArray("06");
        QTest::newRow("1 2") << 1 << 2 << QByteArray("07");
        QTest::newRow("1 3") << 1 << 3 << QByteArray("08");
        QTest::newRow("2 0") << 2 << 0 << QByteArray("09");
        QTest::newRow("2 1") << 2 << 1 << QByteArray("10");
        QTest::newRow("2 2") << 2 << 2 << QByteArray("11");
        QTest::newRow("2 3") << 2 << 3 << QByteArray("12");
        QTest::newRow("3 0") << 3 << 0 << QByteArray("13");
        QTest::newRow("3 1") << 3 << 1 << QByteArray("14");
        QTest::newRow("3 2") << 3 << 2 << QByteArray("15");
        QTest::newRow("3 3") << 3 << 3 << QByteArray("16");
    }

    void positionCodes()
    {
        QFETCH(int, row);
        QFETCH(int, column);
        QFETCH(QByteArray, code);
        QCOMPARE(QByteArray::fromStdString(positionCode({row, column})), code);
        QCOMPARE(gridPosition(code.toStdString()), (GridPosition{row, column}));
    }

    void positionsOutsideTheGridAreCodedAllTheSame_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<int>("column");
        QTest::addColumn<QByteArray>("code");
        QTest::newRow("unread") << -1 << -1 << QByteArray("04");
        QTest::newRow("behind 00") << 0 << -1 << QByteArray("00");
        QTest::newRow("behind 17") << 4 << 0 << QByteArray("05");
        QTest::newRow("behind 99") << 24 << 2 << QByteArray("07");
    }

    void positionsOutsideTheGridAreCodedAllTheSame()
    {
        QFETCH(int, row);
        QFETCH(int, column);
        QFETCH(QByteArray, code);
        QCOMPARE(QByteArray::fromStdString(positionCode({row, column})), code);
    }

    void codesThatNameNoCell_data()
    {
        QTest::addColumn<QByteArray>("code");
        QTest::addColumn<int>("row");
        QTest::addColumn<int>("column");
        QTest::newRow("zero: division truncates toward zero") << QByteArray("00") << 0 << -1;
        QTest::newRow("first behind the grid") << QByteArray("17") << 4 << 0;
        QTest::newRow("far behind the grid") << QByteArray("99") << 24 << 2;
        QTest::newRow("negative") << QByteArray("-3") << -1 << 0;
    }

    void codesThatNameNoCell()
    {
        QFETCH(QByteArray, code);
        QFETCH(int, row);
        QFETCH(int, column);
        QCOMPARE(gridPosition(code.toStdString()), (GridPosition{row, column}));
    }

    void leadingDigitsCount()
    {
        QCOMPARE(gridPosition("1x"), (GridPosition{0, 0}));
        QCOMPARE(gridPosition("01 "), (GridPosition{0, 0}));
        QCOMPARE(gridPosition(" 7"), (GridPosition{1, 2}));
    }

    void aCodeWithoutANumberIsReportedOnStandardOutput_data()
    {
        QTest::addColumn<QByteArray>("code");
        QTest::newRow("letters") << QByteArray("xy");
        QTest::newRow("letter behind the zero") << QByteArray("0x");
        QTest::newRow("zero alone") << QByteArray("0");
        QTest::newRow("empty") << QByteArray("");
    }

    void aCodeWithoutANumberIsReportedOnStandardOutput()
    {
        QFETCH(QByteArray, code);
        const CapturedOutput output;
        QCOMPARE(gridPosition(code.toStdString()), (GridPosition{-1, -1}));
        QCOMPARE(output.text(), std::string("Invalid argument: stoi\n"));
    }

    void channelsGoByTheirDigitsAndInactiveOnesByThree()
    {
        QCOMPARE(channelDigit({{}, 1, true}), std::optional('1'));
        QCOMPARE(channelDigit({{}, 2, true}), std::optional('2'));
        QCOMPARE(channelDigit({{}, 3, true}), std::optional('3'));
        QCOMPARE(channelDigit({{}, 4, true}), std::optional('4'));
        QCOMPARE(channelDigit({{}, 3, false}), std::optional('3'));
        QCOMPARE(channelDigit({{}, 4, false}), std::optional('3'));
        QCOMPARE(channelDigit({{}, 0, false}), std::optional('3'));
        QVERIFY(!channelDigit({{}, 0, true}));
        QVERIFY(!channelDigit({{}, 5, true}));
    }

    void arrangements_data()
    {
        QTest::addColumn<std::vector<PlacedDisplay>>("displays");
        QTest::addColumn<QByteArray>("command");
        QTest::addColumn<int>("neighbours");
        using List = std::vector<PlacedDisplay>;

        QTest::newRow("initial: top row")
            << List{{{0, 0}, 1}, {{0, 1}, 2}, {{0, 2}, 3}, {{0, 3}, 4}}
            << QByteArray("//FF01B01FF02B02FF03B03FF04B04") << 6;
        QTest::newRow("row 1") << List{{{1, 0}, 1}, {{1, 1}, 2}, {{1, 2}, 3}, {{1, 3}, 4}}
                               << QByteArray("//FF01B05FF02B06FF03B07FF04B08") << 6;
        QTest::newRow("row 2") << List{{{2, 0}, 1}, {{2, 1}, 2}, {{2, 2}, 3}, {{2, 3}, 4}}
                               << QByteArray("//FF01B09FF02B10FF03B11FF04B12") << 6;
        QTest::newRow("bottom row") << List{{{3, 0}, 1}, {{3, 1}, 2}, {{3, 2}, 3}, {{3, 3}, 4}}
                                    << QByteArray("//FF01B13FF02B14FF03B15FF04B16") << 6;
        QTest::newRow("left column") << List{{{0, 0}, 1}, {{1, 0}, 2}, {{2, 0}, 3}, {{3, 0}, 4}}
                                     << QByteArray("//FF01B01FF02B05FF03B09FF04B13") << 6;
        QTest::newRow("column 1") << List{{{0, 1}, 1}, {{1, 1}, 2}, {{2, 1}, 3}, {{3, 1}, 4}}
                                  << QByteArray("//FF01B02FF02B06FF03B10FF04B14") << 6;
        QTest::newRow("right column") << List{{{0, 3}, 1}, {{1, 3}, 2}, {{2, 3}, 3}, {{3, 3}, 4}}
                                      << QByteArray("//FF01B04FF02B08FF03B12FF04B16") << 6;
        QTest::newRow("top row in the other direction, as the grid is read")
            << List{{{0, 0}, 4}, {{0, 1}, 3}, {{0, 2}, 2}, {{0, 3}, 1}}
            << QByteArray("//FF01B04FF02B03FF03B02FF04B01") << 6;
        QTest::newRow("square, top left")
            << List{{{0, 0}, 1}, {{0, 1}, 2}, {{1, 0}, 3}, {{1, 1}, 4}}
            << QByteArray("//FF01B01FF02B02FF03B05FF04B06") << 8;
        QTest::newRow("square, middle") << List{{{1, 1}, 1}, {{1, 2}, 2}, {{2, 1}, 3}, {{2, 2}, 4}}
                                        << QByteArray("//FF01B06FF02B07FF03B10FF04B11") << 8;
        QTest::newRow("square, bottom right")
            << List{{{2, 2}, 1}, {{2, 3}, 2}, {{3, 2}, 3}, {{3, 3}, 4}}
            << QByteArray("//FF01B11FF02B12FF03B15FF04B16") << 8;
        QTest::newRow("L") << List{{{0, 0}, 1}, {{1, 0}, 2}, {{2, 0}, 3}, {{2, 1}, 4}}
                           << QByteArray("//FF01B01FF02B05FF03B09FF04B10") << 6;
        QTest::newRow("T") << List{{{0, 0}, 1}, {{0, 1}, 2}, {{0, 2}, 3}, {{1, 1}, 4}}
                           << QByteArray("//FF01B01FF02B02FF03B03FF04B06") << 6;
        QTest::newRow("T upside down") << List{{{2, 2}, 4}, {{3, 1}, 1}, {{3, 2}, 2}, {{3, 3}, 3}}
                                       << QByteArray("//FF01B14FF02B15FF03B16FF04B11") << 6;
        QTest::newRow("S") << List{{{0, 1}, 1}, {{0, 2}, 2}, {{1, 0}, 3}, {{1, 1}, 4}}
                           << QByteArray("//FF01B02FF02B03FF03B05FF04B06") << 6;
        QTest::newRow("Z upright") << List{{{1, 3}, 1}, {{2, 2}, 2}, {{2, 3}, 3}, {{3, 2}, 4}}
                                   << QByteArray("//FF01B08FF02B11FF03B12FF04B15") << 6;
        QTest::newRow("two pairs apart") << List{{{0, 0}, 1}, {{0, 1}, 2}, {{2, 0}, 3}, {{2, 1}, 4}}
                                         << QByteArray("//FF01B01FF02B02FF03B09FF04B10") << 4;
        QTest::newRow("the four corners")
            << List{{{0, 0}, 1}, {{0, 3}, 2}, {{3, 0}, 3}, {{3, 3}, 4}}
            << QByteArray("//FF01B01FF02B04FF03B13FF04B16") << 0;
        QTest::newRow("diagonal") << List{{{0, 0}, 1}, {{1, 1}, 2}, {{2, 2}, 3}, {{3, 3}, 4}}
                                  << QByteArray("//FF01B01FF02B06FF03B11FF04B16") << 0;
        QTest::newRow("three and one apart")
            << List{{{0, 0}, 1}, {{0, 1}, 2}, {{0, 2}, 3}, {{3, 3}, 4}}
            << QByteArray("//FF01B01FF02B02FF03B03FF04B16") << 4;
        QTest::newRow("the end of a row does not touch the start of the next")
            << List{{{0, 2}, 1}, {{0, 3}, 2}, {{1, 0}, 3}, {{1, 1}, 4}}
            << QByteArray("//FF01B03FF02B04FF03B05FF04B06") << 4;
        QTest::newRow("channel 3 in the last cell, channel 1 in the first")
            << List{{{0, 0}, 1}, {{0, 1}, 2}, {{0, 2}, 4}, {{3, 3}, 3}}
            << QByteArray("//FF01B01FF02B02FF03B16FF04B03") << 4;
        QTest::newRow("inactive channel 4 is written as 3")
            << List{{{0, 0}, 1}, {{0, 1}, 2}, {{0, 2}, 3}, {{0, 3}, 4, false}}
            << QByteArray("//FF01B01FF02B02FF03B03FF03B04") << 6;
        QTest::newRow("inactive channels 3 and 4 keep the order of the layout")
            << List{{{0, 3}, 4, false}, {{0, 2}, 4, false}, {{0, 1}, 2}, {{0, 0}, 1}}
            << QByteArray("//FF01B01FF02B02FF03B04FF03B03") << 6;
        QTest::newRow("a display of no channel is left out")
            << List{{{0, 0}, 1}, {{0, 1}, 0}, {{0, 2}, 3}, {{0, 3}, 4}}
            << QByteArray("//FF01B01FF03B03FF04B04") << 6;
        QTest::newRow("no displays") << List{} << QByteArray("//") << 0;
    }

    void arrangements()
    {
        QFETCH(std::vector<PlacedDisplay>, displays);
        QFETCH(QByteArray, command);
        QFETCH(int, neighbours);
        QCOMPARE(QByteArray::fromStdString(layoutCommand(displays)), command);
        QCOMPARE(neighboursAmong(positionsOf(displays)), neighbours);
    }

    void fourPositionsAreChannelsOneToFour()
    {
        QCOMPARE(layoutCommand(DisplayLayout{{{1, 0}, {0, 3}, {3, 3}, {2, 1}}}),
                 std::string("//FF01B05FF02B04FF03B16FF04B10"));
    }

    void sixAndEightNeighboursAreConnected()
    {
        QVERIFY(isConnected(6));
        QVERIFY(isConnected(8));
        for (const int count : {0, 2, 4, 5, 7, 10, 16})
            QVERIFY2(!isConnected(count), qPrintable(QString::number(count)));
    }

    void theFourCodesOfAReply()
    {
        const auto codes = layoutCodes("01B05, 02B06, 03B07 and 04B08");
        QCOMPARE(codes[0], std::string("05"));
        QCOMPARE(codes[1], std::string("06"));
        QCOMPARE(codes[2], std::string("07"));
        QCOMPARE(codes[3], std::string("08"));
    }

    void theFirstMarkerCountsAndTheLineEnds()
    {
        const auto codes = layoutCodes("//FF04B16\r\nFF03B09FF02B111FF01B1x\n01B02");
        QCOMPARE(codes[0], std::string("1x"));
        QCOMPARE(codes[1], std::string("11"));
        QCOMPARE(codes[2], std::string("09"));
        QCOMPARE(codes[3], std::string("16"));
    }

    void aMalformedReplyIsOutOfRange_data()
    {
        QTest::addColumn<QByteArray>("reply");
        QTest::newRow("empty") << QByteArray("");
        QTest::newRow("no key found") << QByteArray("0");
        QTest::newRow("channel 1 missing") << QByteArray("FF02B02FF03B03FF04B04");
        QTest::newRow("channel 2 missing") << QByteArray("FF01B01FF03B03FF04B04");
        QTest::newRow("channel 3 missing") << QByteArray("FF01B01FF02B02FF04B04");
        QTest::newRow("channel 4 missing") << QByteArray("FF01B01FF02B02FF03B03");
        QTest::newRow("code of one character") << QByteArray("FF01B01FF02B02FF03B03FF04B4");
        QTest::newRow("code cut by the line") << QByteArray("FF01B01FF02B02FF03B0\n3FF04B04");
    }

    void aMalformedReplyIsOutOfRange()
    {
        QFETCH(QByteArray, reply);
        try {
            layoutCodes(reply.toStdString());
        } catch (const std::out_of_range &error) {
            QCOMPARE(QByteArray(error.what()), QByteArray("basic_string::erase"));
            return;
        }
        QFAIL("a malformed reply was read");
    }
};

QTEST_GUILESS_MAIN(LayoutCommandTest)
#include "tst_layout_command.moc"
