#pragma once

#include <QComboBox>
#include <QHash>

/// A list of serial ports that shows the end of a path that is longer than the field: the end is
/// what tells one port from another. The tool tip has the whole path, and what is known of the
/// port.
class PortSelector : public QComboBox
{
    Q_OBJECT

public:
    using QComboBox::QComboBox;

    /// What the closed field shows: the current item's text, an ellipsis in place of its beginning
    /// when it is too long.
    QString shownText() const;

    /// Says of each entry that has a note what it is: in the entry's tool tip, and while it is the
    /// current one in the closed field's. Notes by entry; never markup.
    void setNotes(const QHash<QString, QString> &notes);

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
};
