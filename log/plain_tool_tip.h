#pragma once

#include <QObject>

/// `text` for a tool tip that shows it as it stands, whatever markup it holds.
QString plainTip(const QString &text);

/// Shows tool tips in the program's own colours. A tool tip otherwise takes over the style sheet of
/// its widget, and is black on red where that paints the widget red.
///
/// An event filter for any number of widgets: install it on each. The text and how long it stays
/// are the widget's own (`toolTip()`, `toolTipDuration()`); a widget without a text shows no tip.
/// The text is never markup.
class PlainToolTip : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    bool eventFilter(QObject *watched, QEvent *event) override;
};
