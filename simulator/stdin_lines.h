#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>
#include <memory>

/// Lines from standard input, without blocking the event loop.
class StdinLines : public QObject
{
    Q_OBJECT

public:
    explicit StdinLines(QObject *parent = nullptr);
    ~StdinLines() override;

    /// Whether somebody can type: standard input is a terminal.
    static bool isInteractive();

Q_SIGNALS:
    void entered(const QString &line);
    /// Standard input has ended; the last line has been delivered.
    void closed();

private:
    /// What reads, in the way of the system.
    class Reader;

    void take(const QByteArray &bytes);
    void end();

    QByteArray collected_;
    std::unique_ptr<Reader> reader_;
};
