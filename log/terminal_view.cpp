#include "log/terminal_view.h"

#include <QScrollBar>
#include <QTextCursor>
#include <QTextEdit>

TerminalView::TerminalView(QTextEdit &view) : view_(view)
{
    view_.setUndoRedoEnabled(false); // an undo stack would hold every chunk a second time
}

void TerminalView::append(const QString &chunk)
{
    QTextCursor cursor(view_.document());
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(chunk);
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
