#include "log/terminal_view.h"

#include <QScrollBar>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextEdit>

namespace {
/// A block of the document holds this many lines. A removal at the start moves every block that
/// stays, which took a window's tenth of a second when each line was a block; a larger one would be
/// laid out anew too often while its lines come in.
constexpr int linesPerBlock = 10;
constexpr int keptBlocks = 100'000 / linesPerBlock + 1; ///< and the one that is being written
/// How many blocks more there may be, so that a removal is not for every chunk.
constexpr int spareBlocks = 10'000 / linesPerBlock;
constexpr int longestLine = 1000; ///< UTF-16 units

bool endsLine(QChar character)
{
    return character == QLatin1Char('\n') || character == QLatin1Char('\r') ||
           character == QChar::ParagraphSeparator || character == QChar::LineSeparator;
}
} // namespace

TerminalView::TerminalView(QTextEdit &view) : view_(view)
{
    view_.setUndoRedoEnabled(false); // an undo stack would hold every chunk a second time
}

void TerminalView::append(const QString &chunk)
{
    QTextCursor cursor(view_.document());
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(inBlocks(withLongLinesBroken(withoutSecondHalf(chunk))));
    if (!chunk.isEmpty())
        endedWithReturn_ = chunk.endsWith(QLatin1Char('\r'));
    dropOldLines();
    view_.setTextCursor(cursor);
}

void TerminalView::scrollToEnd()
{
    QTextCursor cursor = view_.textCursor();
    cursor.movePosition(QTextCursor::End);
    view_.setTextCursor(cursor);
    view_.verticalScrollBar()->setValue(view_.verticalScrollBar()->maximum());
}

void TerminalView::clear()
{
    view_.clear();
    endedWithReturn_ = false;
}

/// `chunk` without the line feed of a line end whose carriage return is shown already.
QString TerminalView::withoutSecondHalf(const QString &chunk) const
{
    return endedWithReturn_ && chunk.startsWith(QLatin1Char('\n')) ? chunk.mid(1) : chunk;
}

/// Nothing is lost: a line that would be too long goes on below.
QString TerminalView::withLongLinesBroken(const QString &chunk) const
{
    QString broken;
    const QString last = view_.document()->lastBlock().text();
    qsizetype length = last.size() - 1 - last.lastIndexOf(QChar::LineSeparator);
    qsizetype taken = 0;
    for (qsizetype at = 0; at < chunk.size(); ++at) {
        if (endsLine(chunk.at(at))) {
            length = 0;
            continue;
        }
        if (length >= longestLine && !chunk.at(at).isLowSurrogate()) {
            broken += QStringView(chunk).mid(taken, at - taken);
            broken += QLatin1Char('\n');
            taken = at;
            length = 0;
        }
        ++length;
    }
    return broken.isEmpty() ? chunk : broken + chunk.mid(taken);
}

/// Line ends within a block are line separators, which copied and plain text has as line feeds.
QString TerminalView::inBlocks(const QString &text) const
{
    QString blocks;
    blocks.reserve(text.size());
    qsizetype ended = view_.document()->lastBlock().text().count(QChar::LineSeparator);
    for (qsizetype at = 0; at < text.size(); ++at) {
        const QChar character = text.at(at);
        if (!endsLine(character)) {
            blocks += character;
            continue;
        }
        if (character == QLatin1Char('\r') && at + 1 < text.size() &&
            text.at(at + 1) == QLatin1Char('\n'))
            continue; // one line end, not two
        ended = (ended + 1) % linesPerBlock;
        blocks += ended == 0 ? QChar(QLatin1Char('\n')) : QChar(QChar::LineSeparator);
    }
    return blocks;
}

void TerminalView::dropOldLines()
{
    const QTextDocument &document = *view_.document();
    const int surplus = document.blockCount() - keptBlocks;
    if (surplus <= spareBlocks)
        return;
    QTextCursor old(view_.document());
    old.setPosition(document.findBlockByNumber(surplus).position(), QTextCursor::KeepAnchor);
    old.removeSelectedText();
}
