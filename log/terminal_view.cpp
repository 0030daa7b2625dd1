#include "log/terminal_view.h"

#include <QScrollBar>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextEdit>

namespace {
constexpr int keptBlocks = 100'000 + 1; ///< whole lines, and the one that is being written
/// How many blocks more there may be: a removal at the start moves all that follows, which takes a
/// tenth of a second and so is not for every chunk.
constexpr int spareBlocks = 10'000;
constexpr int longestLine = 1000; ///< UTF-16 units

/// Whether the view begins a new block at `character`.
bool endsLine(QChar character)
{
    return character == QLatin1Char('\n') || character == QLatin1Char('\r') ||
           character == QChar::ParagraphSeparator;
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
    cursor.insertText(withLongLinesBroken(chunk));
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
}

/// Nothing is lost: a line that would be too long goes on below.
QString TerminalView::withLongLinesBroken(const QString &chunk) const
{
    QString broken;
    qsizetype length = view_.document()->lastBlock().length() - 1;
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
