#pragma once

#include <QByteArray>
#include <QElapsedTimer>
#include <QFile>
#include <QString>
#include <QTemporaryDir>
#include <QTest>
#include <cstdlib>
#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

/// A virtual serial cable: the test holds one end, the program opens the other by its path. The
/// path is this cable's alone: the system gives the number of one that was pulled to the next that
/// asks, which may be another test.
class PtyPair
{
public:
    PtyPair()
    {
        master_ = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK);
        if (master_ < 0 || grantpt(master_) != 0 || unlockpt(master_) != 0)
            qFatal("no pseudo-terminal to be had");
        // To be passed by tests that play another user for a moment.
        QFile::setPermissions(folder_.path(), QFile::ReadOwner | QFile::WriteOwner |
                                                  QFile::ExeOwner | QFile::ExeGroup |
                                                  QFile::ExeOther);
        path_ = folder_.filePath(QStringLiteral("cable"));
        if (!QFile::link(QString::fromLocal8Bit(ptsname(master_)), path_))
            qFatal("the pseudo-terminal cannot be given a name");
        // Held open here as well, so that the program's closing is no hang-up of the cable.
        slave_ = open(path_.toLocal8Bit().constData(), O_RDWR | O_NOCTTY);
        termios line = {};
        tcgetattr(slave_, &line);
        cfmakeraw(&line);
        tcsetattr(slave_, TCSANOW, &line);
    }
    ~PtyPair() { pull(); }
    PtyPair(const PtyPair &) = delete;
    PtyPair &operator=(const PtyPair &) = delete;

    QString path() const { return path_; }
    int masterDescriptor() const { return master_; }

    /// What the program has written since the last call; never waits.
    QByteArray read()
    {
        QByteArray bytes;
        char buffer[4096];
        for (ssize_t got = 0; (got = ::read(master_, buffer, sizeof buffer)) > 0;)
            bytes.append(buffer, static_cast<qsizetype>(got));
        return bytes;
    }

    /// Collects what the program writes until `count` bytes are there or five seconds have passed.
    QByteArray waitForBytes(qsizetype count)
    {
        QElapsedTimer clock;
        clock.start();
        QByteArray bytes = read();
        while (bytes.size() < count && clock.elapsed() < 5000) {
            QTest::qWait(2);
            bytes += read();
        }
        return bytes;
    }

    /// Sends all of `bytes` to the program, letting the event loop run while the line is full.
    void write(const QByteArray &bytes)
    {
        qsizetype sent = 0;
        while (sent < bytes.size()) {
            const ssize_t count = ::write(master_, bytes.constData() + sent,
                                          static_cast<size_t>(bytes.size() - sent));
            if (count > 0)
                sent += count;
            else
                QTest::qWait(1);
        }
    }

    /// Pulls the cable: both of the test's ends are gone.
    void pull()
    {
        QFile::remove(path_);
        for (int *end : {&slave_, &master_}) {
            if (*end >= 0)
                close(*end);
            *end = -1;
        }
    }

private:
    QTemporaryDir folder_;
    int master_ = -1;
    int slave_ = -1;
    QString path_;
};
