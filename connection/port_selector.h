#pragma once

#include <QComboBox>

/// A list of serial ports that shows the end of a path that is longer than the field: the end is
/// what tells one port from another. The tool tip has the whole path.
class PortSelector : public QComboBox
{
    Q_OBJECT

public:
    using QComboBox::QComboBox;

    /// What the closed field shows: the current item's text, an ellipsis in place of its beginning
    /// when it is too long.
    QString shownText() const;

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
};
