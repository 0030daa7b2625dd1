#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QJsonObject>
#include <QList>
#include <QProcess>
#include <QStringList>

/// What became of one run.
struct CtlRun
{
    int status = -1; ///< -1 when it did not end by itself
    QByteArray output;
    QByteArray errors;

    /// The lines of standard output as JSON objects.
    QList<QJsonObject> objects() const;
    /// The only one.
    QJsonObject object() const;
};

/// peloractl as its user runs it. It ends with this object or with the test.
class CtlProcess
{
public:
    CtlProcess();
    ~CtlProcess();
    CtlProcess(const CtlProcess &) = delete;
    CtlProcess &operator=(const CtlProcess &) = delete;

    void start(const QStringList &arguments, const QByteArray &input = {});
    /// Handles events until it ends, so that a device in this process can answer.
    CtlRun wait();
    /// Waits until `text` stands in the output.
    bool hasSaid(const QByteArray &text);
    /// The same of standard error.
    bool hasComplained(const QByteArray &text);

    QProcess process;

private:
    void read();

    QByteArray output_;
    QByteArray errors_;
};

/// Runs it to its end. `arguments` are separated by blanks; those that hold some go into `more`.
CtlRun ctl(const QString &arguments, const QStringList &more = {}, const QByteArray &input = {});
