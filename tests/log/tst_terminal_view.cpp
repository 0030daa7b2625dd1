#include "log/terminal_view.h"

#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <QTextDocumentFragment>
#include <QTextEdit>

namespace {
/// Lines "line `first`" to "line `last`", each with its line feed.
QString lines(int first, int last)
{
    QString text;
    for (int line = first; line <= last; ++line)
        text += QStringLiteral("line %1\n").arg(line);
    return text;
}
} // namespace

/// The terminal: plain text, the last 100,000 lines of it, the very last one in sight.
class TerminalViewTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void appendsChunksWithoutAddingLineEnds()
    {
        QTextEdit view;
        TerminalView terminal(view);
        terminal.append(QStringLiteral("Buzzer"));
        terminal.append(QStringLiteral(": on\nnext"));
        QCOMPARE(view.toPlainText(), QStringLiteral("Buzzer: on\nnext"));
    }

    void markupStaysText()
    {
        QTextEdit view;
        TerminalView terminal(view);
        terminal.append(QStringLiteral("<b>bold</b> &amp; <img src=x>"));
        QCOMPARE(view.toPlainText(), QStringLiteral("<b>bold</b> &amp; <img src=x>"));
    }

    void endsWithItsLastLineInSight()
    {
        QTextEdit view;
        view.resize(300, 120);
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        TerminalView terminal(view);
        for (int line = 0; line < 200; ++line)
            terminal.append(QStringLiteral("line %1\n").arg(line));
        view.moveCursor(QTextCursor::Start);
        terminal.scrollToEnd();
        QCOMPARE(view.verticalScrollBar()->value(), view.verticalScrollBar()->maximum());
        QVERIFY(view.verticalScrollBar()->maximum() > 0);
        QVERIFY(!view.textCursor().hasSelection());
        QVERIFY(view.textCursor().atEnd());
    }

    void appendingNeverTakesTheSelectionAlong()
    {
        QTextEdit view;
        TerminalView terminal(view);
        terminal.append(QStringLiteral("first"));
        view.selectAll();
        terminal.append(QStringLiteral(" second"));
        QCOMPARE(view.toPlainText(), QStringLiteral("first second"));
        QVERIFY(!view.textCursor().hasSelection());
        QVERIFY(view.textCursor().atEnd());
    }

    void theLast100000LinesAlwaysStay()
    {
        QTextEdit view;
        TerminalView terminal(view);
        terminal.append(lines(1, 100'000));
        QCOMPARE(view.toPlainText(), lines(1, 100'000));
        qsizetype most = 0;
        for (int line = 100'001; line <= 130'000; line += 500) {
            terminal.append(lines(line, line + 499));
            const auto kept = view.toPlainText().count(QLatin1Char('\n'));
            QVERIFY2(kept >= 100'000, qPrintable(QString::number(line)));
            most = std::max(most, kept);
        }
        QVERIFY2(most <= 110'010, qPrintable(QString::number(most)));
        QVERIFY(view.toPlainText().endsWith(lines(30'001, 130'000)));
    }

    void muchMoreAtOnceIsCutToTheLast100000Lines()
    {
        QTextEdit view;
        TerminalView terminal(view);
        terminal.append(lines(1, 250'000) + QStringLiteral("begun"));
        QCOMPARE(view.toPlainText(), lines(150'001, 250'000) + QStringLiteral("begun"));
        QVERIFY(view.textCursor().atEnd());
    }

    void theEndStaysInSightWhenOldLinesGo()
    {
        QTextEdit view;
        view.resize(300, 120);
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        TerminalView terminal(view);
        terminal.append(lines(1, 100'000));
        for (int line = 100'001; line <= 111'000; line += 1000) {
            terminal.append(lines(line, line + 999));
            terminal.scrollToEnd();
            QCOMPARE(view.verticalScrollBar()->value(), view.verticalScrollBar()->maximum());
            const QTextCursor top = view.cursorForPosition(QPoint(2, 2));
            QVERIFY(top.blockNumber() > view.document()->blockCount() - 4);
        }
    }

    void textWithoutALineFeedIsBroken_data()
    {
        QTest::addColumn<int>("chunk");
        QTest::newRow("byte by byte") << 1;
        QTest::newRow("in pieces") << 700;
        QTest::newRow("at once") << 2500;
    }

    void textWithoutALineFeedIsBroken()
    {
        QFETCH(int, chunk);
        const QString text(2500, QLatin1Char('x'));
        QTextEdit view;
        TerminalView terminal(view);
        terminal.append(QStringLiteral("before\n"));
        for (int at = 0; at < text.size(); at += chunk)
            terminal.append(text.mid(at, chunk));
        terminal.append(QStringLiteral("\nafter"));
        QCOMPARE(view.toPlainText().split(QLatin1Char('\n')),
                 (QStringList{QStringLiteral("before"), QString(1000, QLatin1Char('x')),
                              QString(1000, QLatin1Char('x')), QString(500, QLatin1Char('x')),
                              QStringLiteral("after")}));
    }

    void aLineOfExactlyTheLongestLengthIsNotBroken()
    {
        QTextEdit view;
        TerminalView terminal(view);
        const QString longest = QString(1000, QLatin1Char('x')) + QLatin1Char('\n');
        terminal.append(longest + longest.left(600));
        terminal.append(longest.mid(600) + QStringLiteral("end"));
        QCOMPARE(view.toPlainText(), longest + longest + QStringLiteral("end"));
    }

    void aBreakSplitsNoCharacter()
    {
        const QString screen = QString::fromUtf8("\xf0\x9f\x96\xa5"); // two units in UTF-16
        QTextEdit view;
        TerminalView terminal(view);
        terminal.append(QString(999, QLatin1Char('x')) + screen + screen);
        QCOMPARE(view.toPlainText(),
                 QString(999, QLatin1Char('x')) + screen + QLatin1Char('\n') + screen);
    }

    void normalLinesInOneGoShowInFull()
    {
        QTextEdit view;
        TerminalView terminal(view);
        terminal.append(lines(1, 20'000)); // more than 200 kB
        QCOMPARE(view.toPlainText(), lines(1, 20'000));
    }

    void everyLineEndIsALineFeedToWhoeverCopiesIt()
    {
        QTextEdit view;
        TerminalView terminal(view);
        for (int line = 0; line < 15; ++line)
            terminal.append(QStringLiteral("a\r\nb\n\nc"));
        view.selectAll();
        const QString copied = view.textCursor().selection().toPlainText();
        QCOMPARE(copied, QStringLiteral("a\nb\n\nc").repeated(15));
        QCOMPARE(view.toPlainText(), copied);
    }

    void aLineEndThatComesInTwoPiecesIsOne_data()
    {
        QTest::addColumn<QByteArrayList>("chunks");
        QTest::addColumn<QString>("shown");
        QTest::newRow("between its two characters")
            << QByteArrayList{"on\r", "\noff\r", "\n"} << QStringLiteral("on\noff\n");
        QTest::newRow("byte by byte")
            << QByteArrayList{"a", "\r", "\n", "b", "\r", "\n", "c"} << QStringLiteral("a\nb\nc");
        QTest::newRow("with nothing between")
            << QByteArrayList{"a\r", "", "\nb"} << QStringLiteral("a\nb");
        QTest::newRow("an empty line behind it")
            << QByteArrayList{"a\r", "\n\nb"} << QStringLiteral("a\n\nb");
        QTest::newRow("line feeds alone")
            << QByteArrayList{"a\n", "\nb"} << QStringLiteral("a\n\nb");
        QTest::newRow("carriage returns alone")
            << QByteArrayList{"a\r", "\rb\r", "c"} << QStringLiteral("a\n\nb\nc");
    }

    void aLineEndThatComesInTwoPiecesIsOne()
    {
        QFETCH(QByteArrayList, chunks);
        QTextEdit view;
        TerminalView terminal(view);
        for (const QByteArray &chunk : std::as_const(chunks))
            terminal.append(QString::fromLatin1(chunk));
        QTEST(view.toPlainText(), "shown");
    }

    void aLineFeedBehindAClearedViewIsALineEnd()
    {
        QTextEdit view;
        TerminalView terminal(view);
        terminal.append(QStringLiteral("the last switch\r"));
        terminal.clear();
        terminal.append(QStringLiteral("\nthis one"));
        QCOMPARE(view.toPlainText(), QStringLiteral("\nthis one"));
    }

    void controlAndStrayCharactersDoNotBreakIt()
    {
        QTextEdit view;
        TerminalView terminal(view);
        terminal.append(QString::fromUtf8(QByteArray("a\0b\x1b[31m\xff\xfe\x7f", 11)));
        terminal.append(QString(QChar(0xFDD0)) + QString(QChar(0xFFFC)) + QStringLiteral("end"));
        QVERIFY(view.toPlainText().startsWith(QLatin1Char('a')));
        QVERIFY(view.toPlainText().endsWith(QStringLiteral("end")));
    }
};

QTEST_MAIN(TerminalViewTest)
#include "tst_terminal_view.moc"
