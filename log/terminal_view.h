#pragma once

#include <QString>

class QTextEdit;

/// The terminal: shows what the switch says, as plain text, and keeps the last 100,000 lines and
/// the one that is being written. Old lines go ten thousand at a time, so there may be that many
/// more. A line of more than 1000 characters is broken.
class TerminalView
{
public:
    /// Works on `view`, which stays the form's.
    explicit TerminalView(QTextEdit &view);

    /// Appends `chunk` behind what is shown, never as markup, and moves the cursor to the end. CR,
    /// LF and CR LF end a line, the last one also where the next chunk begins with its LF.
    /// Costs in proportion to the chunk, however much is shown already.
    void append(const QString &chunk);

    /// Moves the text cursor to the end of the document, without a selection, and into sight.
    void scrollToEnd();

    void clear();

private:
    QString withoutSecondHalf(const QString &chunk) const;
    QString withLongLinesBroken(const QString &chunk) const;
    QString inBlocks(const QString &text) const;
    void dropOldLines();

    QTextEdit &view_;
    bool endedWithReturn_ = false; ///< the last chunk, with CR
};
