#include "ctl_process.h"

#include <QJsonDocument>
#include <QTest>

namespace {
constexpr int longest = 30000; // ms
}

QList<QJsonObject> CtlRun::objects() const
{
    QList<QJsonObject> objects;
    const QByteArrayList lines = output.split('\n');
    for (const QByteArray &line : lines) {
        if (line.isEmpty())
            continue;
        const QJsonDocument document = QJsonDocument::fromJson(line);
        if (!document.isObject())
            qFatal("no JSON object: %s", line.constData());
        objects.append(document.object());
    }
    return objects;
}

QJsonObject CtlRun::object() const
{
    const QList<QJsonObject> all = objects();
    if (all.size() != 1)
        qFatal("%d objects in: %s", static_cast<int>(all.size()), output.constData());
    return all.first();
}

CtlProcess::CtlProcess()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("PELORA_DEVICE"));
    environment.remove(QStringLiteral("DISPLAY"));
    process.setProcessEnvironment(environment);
}

CtlProcess::~CtlProcess()
{
    if (process.state() == QProcess::NotRunning)
        return;
    process.kill();
    process.waitForFinished();
}

void CtlProcess::start(const QStringList &arguments, const QByteArray &input)
{
    process.start(QStringLiteral(CTL_PROGRAM), arguments);
    if (!process.waitForStarted())
        qFatal("peloractl did not start");
    if (!process.isWritable())
        return; // its input is a terminal
    process.write(input);
    process.closeWriteChannel();
}

CtlRun CtlProcess::wait()
{
    const bool ended =
        QTest::qWaitFor([this] { return process.state() == QProcess::NotRunning; }, longest);
    read();
    const bool byItself = ended && process.exitStatus() == QProcess::NormalExit;
    return {byItself ? process.exitCode() : -1, output_, errors_};
}

bool CtlProcess::hasSaid(const QByteArray &text)
{
    return QTest::qWaitFor(
        [&] {
            read();
            return output_.contains(text);
        },
        longest);
}

bool CtlProcess::hasComplained(const QByteArray &text)
{
    return QTest::qWaitFor(
        [&] {
            read();
            return errors_.contains(text);
        },
        longest);
}

void CtlProcess::read()
{
    output_ += process.readAllStandardOutput();
    errors_ += process.readAllStandardError();
}

CtlRun ctl(const QString &arguments, const QStringList &more, const QByteArray &input)
{
    CtlProcess process;
    process.start(arguments.split(QLatin1Char(' '), Qt::SkipEmptyParts) + more, input);
    return process.wait();
}
