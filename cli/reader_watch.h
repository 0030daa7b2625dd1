#pragma once

#include "cli/output.h"

#include <QObject>

/// Says that whoever reads an output has gone, also while there is nothing to be written: that
/// would tell only with the next line, for which a quiet switch may take hours. Where the system
/// does not say so (Windows), and of files and terminals, nothing is said.
class ReaderWatch : public QObject
{
    Q_OBJECT

public:
    explicit ReaderWatch(const Output &output, QObject *parent = nullptr);

Q_SIGNALS:
    /// Once.
    void gone();
};
