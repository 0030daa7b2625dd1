#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QString>
#include <QTest>
#include <algorithm>

/// Texts that somebody who names devices, modules or files could choose to do harm with.

/// Markup that a label would show as something else than its letters.
inline void markupRows()
{
    QTest::addColumn<QByteArray>("markup");
    QTest::newRow("a tag") << QByteArray("<b>X</b>");
    QTest::newRow("a picture") << QByteArray("<img src=x>");
    QTest::newRow("a link") << QByteArray("<a href=x>");
    QTest::newRow("an entity") << QByteArray("&lt;b&gt;");
}

/// Characters that a terminal obeys, that begin a line, or that end a command.
inline void controlRows()
{
    QTest::addColumn<QByteArray>("control");
    QTest::newRow("an escape sequence") << QByteArray("\x1b[31m");
    QTest::newRow("a title for the terminal") << QByteArray("\x1b]0;X\x07");
    QTest::newRow("an escape sequence of one control") << QByteArray("\xC2\x9B"
                                                                     "31m");
    QTest::newRow("the same as a byte that is no UTF-8") << QByteArray("\x9B"
                                                                       "31m");
    QTest::newRow("a step back") << QByteArray("\x08\x08");
    QTest::newRow("delete") << QByteArray("\x7F");
    QTest::newRow("the line again") << QByteArray("\r");
    QTest::newRow("a next line") << QByteArray("\xC2\x85");
    QTest::newRow("a separator of lines") << QByteArray("\xE2\x80\xA8");
    QTest::newRow("the other direction") << QByteArray("\xE2\x80\xAE");
}

/// Whether `text` has nothing in it but what is shown, and line feeds.
inline bool isForEyesOnly(const QByteArray &text)
{
    const QString shown = QString::fromUtf8(text);
    if (shown.toUtf8() != text)
        return false;
    return std::none_of(shown.cbegin(), shown.cend(), [](QChar character) {
        const QChar::Category category = character.category();
        const bool turns = category == QChar::Other_Format || category == QChar::Separator_Line ||
                           category == QChar::Separator_Paragraph;
        return turns || (category == QChar::Other_Control && character != QLatin1Char('\n'));
    });
}

/// Whether each of `frames` is one command: nothing that ends it or hides a part of it before its
/// end.
inline bool areSingleCommands(const QByteArrayList &frames)
{
    return std::all_of(frames.cbegin(), frames.cend(), [](const QByteArray &frame) {
        const QString command = QString::fromUtf8(frame.chopped(1));
        return frame.startsWith("//") && frame.endsWith('\r') &&
               std::none_of(command.cbegin(), command.cend(), [](QChar character) {
                   return character.category() == QChar::Other_Control;
               });
    });
}
