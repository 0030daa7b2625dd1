#include "log/terminal_view.h"

#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <QTextEdit>

/// The terminal: plain text, all of it, its last line in sight.
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
        view.verticalScrollBar()->setValue(0);
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
